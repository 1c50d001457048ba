// recovery_test.cpp - failures return their documented code and are logged, and a retry works
#include "tests/scenario/program_test.h"
#include "tests/scenario/shell_session.h"

#include <filesystem>
#include <sstream>

namespace scenario {
namespace {

namespace fs = std::filesystem;

class Recovery : public ProgramTest {
protected:
    ShellSession StartShell(const std::string& home = {}) const {
        auto start = support::ProgramStart("mivora", WithConfig({"--log", PathOf("log"), "shell"}));
        start.environment.emplace_back("PYXEN_HOME", home);
        return ShellSession(start);
    }
    /// Replaces the simulator's library by the one in the directory "sdk".
    void PutLibrary(const std::string& from) {
        const std::string name = platform::LibraryFileName("PxnC");
        ASSERT_TRUE(platform::CreateDirectories(PathOf("sdk/Bin")));
        // Replaced, not overwritten: processes that have loaded the file keep using it.
        fs::remove(PathOf("sdk/Bin/" + name));
        fs::copy_file(support::BuiltFile(from + "/Bin/" + name), PathOf("sdk/Bin/" + name));
    }
    static void ExpectAnswers(ShellSession& shell, const std::string& lines,
                              const std::string& answers) {
        std::istringstream asked(lines);
        std::string given;
        for (std::string line; std::getline(asked, line);) {
            given += shell.Ask(line) + "\n";
        }
        EXPECT_EQ(given, answers);
    }
    static void ExpectACameraServes(ShellSession& shell, const std::string& camera = "0") {
        ExpectAnswers(shell,
                      "SetActCameraIndex " + camera +
                          "\nOpenActCamera\nPrepareFrameBuffers 2\nSnap 3\nCloseActCamera\n",
                      "SetActCameraIndex = 0\nOpenActCamera = 0\nPrepareFrameBuffers = 0\n"
                      "Snap = 0\nCloseActCamera = 0\n");
    }
    /// Expects that the shell succeeds with this on standard error, and that its log contains these
    /// lines in order.
    void ExpectEnd(ShellSession& shell, const std::vector<std::string>& lines,
                   const std::string& errors = {}) const {
        EXPECT_EQ(shell.Ask("DeInit"), "DeInit = 0");
        const auto result = shell.End();
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, errors);
        const std::string log = directory.Read("log");
        std::size_t at = 0;
        for (const std::string& line : lines) {
            at = log.find(line + "\n", at);
            if (at == std::string::npos) {
                ADD_FAILURE() << "the log lacks: " << line << "\n" << log;
                return;
            }
        }
    }
    std::string LibraryDirectory() const {
        return PathOf("sdk") + platform::kPathSeparator + "Bin" + platform::kPathSeparator;
    }

    static constexpr const char* kLoad = "CPyxenAPIAccess::CPyxenAPIAccess: ";
};

TEST_F(Recovery, FromAMissingLibrary) {
    UseCamera();
    ShellSession shell = StartShell(PathOf("sdk"));
    EXPECT_EQ(shell.Ask("Init"), "Init = 4");
    EXPECT_EQ(shell.Ask("OpenActCamera"), "OpenActCamera = 2");
    PutLibrary("simulator");
    EXPECT_EQ(shell.Ask("Init"), "Init = 0");
    ExpectACameraServes(shell);
    const std::string name = platform::LibraryFileName("PxnC");
    ExpectEnd(shell,
              {std::string("1 ") + kLoad + "Trying to load " + LibraryDirectory() + name,
               std::string("1 ") + kLoad + "Loading " + LibraryDirectory() + name + " failed",
               std::string("1 ") + kLoad + "Trying to load " + name + " (default path)",
               std::string("0 ") + kLoad + "Loading " + name + " (default path) failed. Giving up.",
               std::string("0 ") + kLoad + "PyxenAPI is invalid!",
               std::string("1 ") + kLoad + "calling PxnStartup..."});
}

TEST_F(Recovery, FromALibraryThatLacksEntries) {
    UseCamera();
    PutLibrary("incomplete");
    ShellSession shell = StartShell(PathOf("sdk"));
    EXPECT_EQ(shell.Ask("Init"), "Init = 4");
    PutLibrary("simulator");
    EXPECT_EQ(shell.Ask("Init"), "Init = 0");
    ExpectACameraServes(shell);
    ExpectEnd(shell, {"0 PyxenApi: Could not find PxnFeatureEnumAsInt",
                      "0 PyxenApi: Could not find PxnChunkDataAccess",
                      std::string("0 ") + kLoad + "PyxenAPI is invalid!",
                      std::string("1 ") + kLoad + "calling PxnStartup..."});
}

TEST_F(Recovery, FromABrokenSdkConfiguration) {
    directory.Write("PxnC.xml", "<PxnC><camera></PxnC>");
    ShellSession shell = StartShell();
    EXPECT_EQ(shell.Ask("Init"), "Init = 4");
    UseCamera();
    EXPECT_EQ(shell.Ask("Init"), "Init = 0");
    ExpectACameraServes(shell);
    ExpectEnd(shell,
              {"1 CMivoraKVNPyxenClass::Init: Using Pyxen config file: " + PathOf("PxnC.xml"),
               std::string("0 ") + kLoad + "PxnStartup returned error: Error parsing XML",
               "1 CMivoraKVNPyxenClass::OpenActCamera"},
              "PxnC: " + PathOf("PxnC.xml") + ":1: Start-end tags mismatch\n");
}

TEST_F(Recovery, FromAConfigurationThatMayNotBeWritten) {
    UseCamera();
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|B\n");
    const auto allow = [this](fs::perm_options how) {
        fs::permissions(PathOf("host.ini"), fs::perms::owner_write, how);
    };
    allow(fs::perm_options::remove);
    fs::permissions(PathOf("host.ini"), fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    ShellSession shell = StartShell();
    ExpectAnswers(shell, "LoadGrabberConfig\nInit\nSetActCameraIndex 0\nSaveGrabberConfig\n",
                  "LoadGrabberConfig = 0\nInit = 0\nSetActCameraIndex = 0\n"
                  "SaveGrabberConfig = 22\n");
    EXPECT_PRED2(Contains, directory.Read("host.ini"), "UniqueId=Eth0|B\n");
    allow(fs::perm_options::add);
    EXPECT_EQ(shell.Ask("SaveGrabberConfig"), "SaveGrabberConfig = 0");
    EXPECT_PRED2(Contains, directory.Read("host.ini"), "UniqueId=Eth0|A\n");
    ExpectEnd(shell, {"1 CMivoraKVNPyxenClass::SaveGrabberConfig"});
}

TEST_F(Recovery, FromARememberedCameraThatIsNotThere) {
    UseCamera();
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|B\n");
    ShellSession shell = StartShell();
    ExpectAnswers(shell,
                  "LoadGrabberConfig\nInit\nGetActCameraIndex\nOpenActCamera\n"
                  "SetActCameraIndex 1\nOpenActCamera\nPrepareFrameBuffers 1\nSnap 3\n",
                  "LoadGrabberConfig = 0\nInit = 0\nGetActCameraIndex = -1\nOpenActCamera = 8\n"
                  "SetActCameraIndex = 8\nOpenActCamera = 8\nPrepareFrameBuffers = 10\n"
                  "Snap = 8\n");
    ExpectACameraServes(shell);
    ExpectEnd(shell, {"1 CMivoraKVNPyxenClass::OpenActCamera"});
}

TEST_F(Recovery, FromImagesWithoutPixels) {
    UseCamera("<omit name=\"Width\"/>\n", "<camera kind=\"gige\" id=\"B\"/>");
    ShellSession shell = StartShell();
    ExpectAnswers(shell,
                  "Init\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 2\n"
                  "GetFrameBuffer 0\nMode\nCloseActCamera\n",
                  "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\nPrepareFrameBuffers = 0\n"
                  "GetFrameBuffer = null\n"
                  "Mode = ok xRes=0 yRes=48 components=1 allocatedBits=8 bitStart=0 bits=8 "
                  "colorCoding=0 cfaX=0 cfaY=0 numPixels=0 imageSize=0\n"
                  "CloseActCamera = 0\n");
    ExpectACameraServes(shell, "1");
    ExpectEnd(shell, {"0 CMivoraGfxModeKVNPyxen::GetxRes: PxnFeatureIntGet reports error -> cannot "
                      "get width"});
}

TEST_F(Recovery, FromAnUnknownPixelFormat) {
    UseCamera("<omit name=\"PixelFormat\"/>\n", "<camera kind=\"gige\" id=\"B\"/>");
    ShellSession shell = StartShell();
    ExpectAnswers(shell,
                  "Init\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 2\nSnap 1\n"
                  "CloseActCamera\n",
                  "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\nPrepareFrameBuffers = 4\n"
                  "Snap = 12\nCloseActCamera = 0\n");
    ExpectACameraServes(shell, "1");
    ExpectEnd(shell, {"0 CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: "
                      "PxnFeatureEnumGet reports error -> cannot get pixelformat",
                      "0   ERROR: could not allocate memory for frame buffers 0"});
}

TEST_F(Recovery, FromTooManyBuffers) {
    UseCamera();
    ShellSession shell = StartShell();
    ExpectAnswers(shell,
                  "Init\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 101\nSnap 3\n"
                  "PrepareFrameBuffers 100\nGetFrameBuffer 99\nGetFrameBuffer 100\nSnap 3\n"
                  "CloseActCamera\n",
                  "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\nPrepareFrameBuffers = 4\n"
                  "Snap = 12\nPrepareFrameBuffers = 0\nGetFrameBuffer = set\n"
                  "GetFrameBuffer = null\nSnap = 0\nCloseActCamera = 0\n");
    ExpectEnd(shell, {"0   ERROR: Requested 101 buffers, but device supports only 100"});
}

TEST_F(Recovery, FromACameraThatIsGone) {
    UseCamera();
    ShellSession shell = StartShell();
    ExpectAnswers(shell,
                  "Init\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 3\n"
                  "SdkControl clock stop\nSnap 1\nSdkControl clock advance 20\n"
                  "WaitFrames 5\nSdkControl unplug A\nStopSnap\nSnap 3\nGetAcquisitionState\n"
                  "CloseActCamera\nOpenActCamera\nRefreshCameraList\nGetNumCameras\n"
                  "SdkControl plug A\nRefreshCameraList\nSdkControl clock start\n",
                  "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\nPrepareFrameBuffers = 0\n"
                  "SdkControl = 0 answer=\"ok\"\nSnap = 0\nSdkControl = 0 answer=\"ok\"\n"
                  "WaitFrames = 5\nSdkControl = 0 answer=\"ok\"\nStopSnap = 0\n"
                  "Snap = 29\nGetAcquisitionState = 0\nCloseActCamera = 0\nOpenActCamera = 4\n"
                  "RefreshCameraList = 0\nGetNumCameras = 0\nSdkControl = 0 answer=\"ok\"\n"
                  "RefreshCameraList = 0\nSdkControl = 0 answer=\"ok\"\n");
    ExpectACameraServes(shell);
    ExpectEnd(shell,
              {"0 CMivoraKVNPyxenClass::StopSnap: Sending acquisition stop command to camera "
               "failed: The given handle is not valid",
               "0 CMivoraKVNPyxenClass::Snap: PxnFrameAnnounce failed: The given handle is not "
               "valid"});
}

TEST_F(Recovery, FromACameraThatGoesWhileASnapWaits) {
    UseCamera("", Faults("unplug-at 0 A"));
    ShellSession shell = StartShell();
    ExpectAnswers(shell,
                  "Init\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 1\nSnap 3\n"
                  "GetAcquisitionState\nCloseActCamera\nSdkControl clear\nSdkControl plug A\n"
                  "RefreshCameraList\n",
                  "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\nPrepareFrameBuffers = 0\n"
                  "Snap = 29\nGetAcquisitionState = 0\nCloseActCamera = 0\n"
                  "SdkControl = 0 answer=\"ok\"\nSdkControl = 0 answer=\"ok\"\n"
                  "RefreshCameraList = 0\n");
    ExpectACameraServes(shell);
    ExpectEnd(shell, {"1 CMivoraKVNPyxenClass::Snap: started camera acquisition"});
    // Whether the camera disconnects before or during the wait is left to chance.
    const std::string log = directory.Read("log");
    const std::string failed = "0 CMivoraKVNPyxenClass::Snap: PxnCaptureFrameWait failed: ";
    EXPECT_TRUE(Contains(log, failed + "Something is not available\n") ||
                Contains(log, failed + "The given handle is not valid\n"))
        << log;
}

} // namespace
} // namespace scenario
