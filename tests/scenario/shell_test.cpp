// shell_test.cpp - the shell of both programs
#include "tests/scenario/program_test.h"

#include <regex>
#include <sstream>

namespace scenario {
namespace {

class Shell : public ProgramTest {
protected:
    std::vector<std::string> LogOf(const std::string& lines) {
        const auto result = Mivora({"--log", PathOf("log"), "shell"}, lines);
        EXPECT_EQ(result.status, 0) << result.output;
        std::vector<std::string> log;
        std::istringstream stream(directory.Read("log"));
        for (std::string line; std::getline(stream, line);) {
            log.push_back(line);
        }
        return log;
    }
};

TEST_F(Shell, RunsNothingByItself) {
    UseCamera();
    directory.Write("host.ini", "[Grabber_0]\nUniqueId=Eth0|A\n");
    EXPECT_EQ(LogOf(""), std::vector<std::string>());
    EXPECT_EQ(LogOf("Log before\nGetNumCameras\nLog \"the end\"\n"),
              (std::vector<std::string>{"1 before", "1 the end"}));
    // Without LoadGrabberConfig the configured camera is unknown.
    ExpectShell("mivora", "Init\nGetActCameraIndex\n", "Init = 0\nGetActCameraIndex = -1\n");
    ExpectShell("mivora", "LoadGrabberConfig\nInit\nGetActCameraIndex\n",
                "LoadGrabberConfig = 0\nInit = 0\nGetActCameraIndex = 0\n");
}

TEST_F(Shell, ReturnsTheDocumentedCodesBeforeAndAfterInit) {
    UseCamera();
    for (const char* program : {"mivora", "pyxen-tool"}) {
        ExpectShell(program,
                    "OpenActCamera\nSnap 1\nStopSnap\nPrepareFrameBuffers 1\nRefreshCameraList\n"
                    "SelectCameraDialog\nGetGrabberParam 257\nInit\nInit\nOpenActCamera\nSnap 1\n"
                    "GetGrabberParam 257\nCamCntrlDialog\nCloseActCamera\nDeInit\n",
                    "OpenActCamera = 2\nSnap = 2\nStopSnap = 2\nPrepareFrameBuffers = 2\n"
                    "RefreshCameraList = 2\nSelectCameraDialog = 2 exitCode=0\n"
                    "GetGrabberParam = 2 value1=0 value2=0\nInit = 0\nInit = 1\nOpenActCamera = 8\n"
                    "Snap = 8\nGetGrabberParam = 10 value1=0 value2=0\nCamCntrlDialog = 8\n"
                    "CloseActCamera = 10\nDeInit = 0\n");
    }
}

TEST_F(Shell, ShowsCameraAndMode) {
    UseCamera(Format("BayerBG10p"));
    const auto key = support::RunProgram("pyxen-tool", {"camera-key", "Eth0|A"});
    const std::string id = std::to_string(std::stoul(key.output, nullptr, 16));
    ExpectShell("mivora",
                "Init\nGetNumCameras\nCamera 0\nCamera 1\nMode\nSetActCameraIndex 1\n"
                "SetActCameraIndex 0\nOpenActCamera\nIsCameraOpen\nMode\n"
                "GetCameraIndexByCameraUniqueID " +
                    id + "\nGetCameraIndexByCameraUniqueID 0x1\n",
                "Init = 0\nGetNumCameras = 1\nCamera = ok name=\"Camera A\" uniqueId=" + id +
                    " section=-1\nCamera = null\nMode = null\nSetActCameraIndex = 8\n"
                    "SetActCameraIndex = 0\nOpenActCamera = 0\nIsCameraOpen = 1\n"
                    "Mode = ok xRes=64 yRes=48 components=1 allocatedBits=16 bitStart=0 bits=10 "
                    "colorCoding=1 cfaX=0 cfaY=1 numPixels=3072 imageSize=6144\n"
                    "GetCameraIndexByCameraUniqueID = 0\nGetCameraIndexByCameraUniqueID = -1\n");
}

TEST_F(Shell, GrabsWaitsAndReportsEvents) {
    UseCamera();
    ExpectShell(
        "mivora",
        "Init\nSetActCameraIndex 0\nEvents\nOpenActCamera\nEvents\nPrepareFrameBuffers 101\n"
        "PrepareFrameBuffers 2\nGetFrameBuffer 1\nGetFrameBuffer 2\nSnap 6\nSnap 2\n"
        "WaitFrames 1\nWaitIdle\nEvents\nGetGrabberParam 4096\nGetLastFilledBuffer\n"
        "GetLastFilledBuffer\nReleaseFrameBuffer 0\nWaitFrames 9 10\nStopSnap\n",
        "Init = 0\nSetActCameraIndex = 0\n"
        "Events = ok postProcess=0 lastBuffer=-1 camCfgChange=0 camCntrl=[] dialogs=[]\n"
        "OpenActCamera = 0\n"
        "Events = ok postProcess=0 lastBuffer=-1 camCfgChange=0 camCntrl=[] "
        "dialogs=[4294967295]\n"
        "PrepareFrameBuffers = 4\nPrepareFrameBuffers = 0\nGetFrameBuffer = set\n"
        "GetFrameBuffer = null\nSnap = 14\nSnap = 0\nWaitFrames = 1\nWaitIdle = 0\n"
        "Events = ok postProcess=1 lastBuffer=0 camCfgChange=0 camCntrl=[] dialogs=[]\n"
        "GetGrabberParam = 0 value1=1 value2=1\nGetLastFilledBuffer = 0 index=0\n"
        "GetLastFilledBuffer = 25 index=0\nReleaseFrameBuffer = 0\nWaitFrames = 1\n"
        "StopSnap = 0\n");
}

TEST_F(Shell, CountsFramesFromTheLastSnapOn) {
    UseCamera();
    ExpectShell("mivora",
                "Init\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 1\nSnap 3\n"
                "WaitFrames 1\nSnap 3\nWaitFrames 1\nSaveBuffer 0 " +
                    PathOf("a.raw") + "\n",
                "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\nPrepareFrameBuffers = 0\n"
                "Snap = 0\nWaitFrames = 1\nSnap = 0\nWaitFrames = 1\nSaveBuffer = ok\n");
    EXPECT_EQ(directory.Read("a.raw").size(), 64u * 48);
}

TEST_F(Shell, SavesAnImageAsItWasWhenTheBuffersWerePrepared) {
    UseCamera();
    ExpectShell(
        "mivora",
        "SaveBuffer 0 x.raw\nInit\nSetActCameraIndex 0\nOpenActCamera\nPrepareFrameBuffers 1\n"
        "Snap 3\nSdkControl set A PixelFormat RGB8\nSaveBuffer 0 " +
            PathOf("a.raw") + "\n",
        "SaveBuffer ? there is no such image\nInit = 0\nSetActCameraIndex = 0\n"
        "OpenActCamera = 0\nPrepareFrameBuffers = 0\nSnap = 0\n"
        "SdkControl = 0 answer=\"ok\"\nSaveBuffer = ok\n",
        2);
    EXPECT_EQ(directory.Read("a.raw").size(), 64u * 48);
}

TEST_F(Shell, ReportsWhenTheOpenCameraComesAndGoes) {
    UseCamera();
    for (const char* program : {"mivora", "pyxen-tool"}) {
        ExpectShell(
            program,
            "Init\nSetActCameraIndex 0\nOpenActCamera\nEvents\nSdkControl unplug A\n"
            "SdkControl drain\nSdkControl plug A\nSdkControl drain\nEvents\n",
            "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\n"
            "Events = ok postProcess=0 lastBuffer=-1 camCfgChange=0 camCntrl=[] "
            "dialogs=[4294967295]\n"
            "SdkControl = 0 answer=\"ok\"\nSdkControl = 0 answer=\"ok\"\n"
            "SdkControl = 0 answer=\"ok\"\nSdkControl = 0 answer=\"ok\"\n"
            "Events = ok postProcess=0 lastBuffer=-1 camCfgChange=2 camCntrl=[] dialogs=[]\n");
    }
}

TEST_F(Shell, ReachesTheSdkBeforeItIsStarted) {
    UseCamera();
    for (const char* program : {"mivora", "pyxen-tool"}) {
        ExpectShell(program, "SdkControl fail PxnStartup 1 -13\nInit\nInit\nSdkControl nonsense\n",
                    "SdkControl = 0 answer=\"ok\"\nInit = 4\nInit = 0\n"
                    "SdkControl = -7 answer=\"no command \\\"nonsense\\\"; try help\"\n");
    }
}

TEST_F(Shell, HandlesCommandChannels) {
    UseCamera("<port number=\"1\" device=\"loopback\"/>", "", "serial");
    ExpectShell(
        "mivora",
        "GetNumCmdChannelTypes\nChannelInfo\nCMDOpen\nCreateCmdChannel 2\nCreateCmdChannel 1\n"
        "ChannelInfo\nChannelConfig PYXENSERIALPORT1 9600 Even 7 1.5\nChannelInfo\n"
        "ChannelConfig - 300 - - -\nChannelInfo\nCMDOpen\nInit\nSetActCameraIndex 0\n"
        "OpenActCamera\nCMDOpen\nCMDOpen\nCMDReadByte\nCMDReadBuffer 4\nCMDWriteByte A5\n"
        "CMDWriteBuffer 0001fe\nCMDWriteCString \"a b\"\nCMDReadByte\nCMDReadBuffer 100\n"
        "CMDPurge 3\nCMDClose\nDeleteCmdChannelList\nGetActCmdChannelIndex\n",
        "GetNumCmdChannelTypes = 2\nChannelInfo = null\nCMDOpen = 17\n"
        "CreateCmdChannel = null\nCreateCmdChannel = channel\n"
        "ChannelInfo = ok type=\"Pyxen Serial Port\" config=\"115200 Baud, Parity = No, "
        "Bytesize = 8, Stopbits = 1\" kind=2147483648\n"
        "ChannelConfig = 0\n"
        "ChannelInfo = ok type=\"Pyxen Serial Port\" config=\"9600 Baud, Parity = Even, "
        "Bytesize = 7, Stopbits = 1.5\" kind=2147483648\n"
        "ChannelConfig = 0\n"
        "ChannelInfo = ok type=\"Pyxen Serial Port\" config=\"300 Baud, Parity = Even, "
        "Bytesize = 7, Stopbits = 1.5\" kind=2147483648\n"
        "CMDOpen = 18\nInit = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\nCMDOpen = 0\n"
        "CMDOpen = 16\nCMDReadByte = 19 count=0 data=\nCMDReadBuffer = 0 count=0 data=\n"
        "CMDWriteByte = 0 count=1\nCMDWriteBuffer = 0 count=3\nCMDWriteCString = 0 count=3\n"
        "CMDReadByte = 0 count=1 data=A5\nCMDReadBuffer = 0 count=6 data=0001FE612062\n"
        "CMDPurge = 0\nCMDClose = 0\nDeleteCmdChannelList = ok\nGetActCmdChannelIndex = -1\n");
    EXPECT_PRED2(Contains, directory.Read("host.ini"), "PORTNAME=PYXENSERIALPORT1");
}

TEST_F(Shell, KeepsConfigurationInTheIniFile) {
    UseCamera();
    directory.Write("host.ini", "; mine\n[Grabber_0]\nExtra=1\n");
    ExpectShell(
        "mivora",
        "LoadGrabberConfig\nInit\nSetActCameraIndex 0\nSaveGrabberInt32 Number -5\n"
        "SaveGrabberHex32 Hex 255\nSaveGrabberString Text \"a b\"\nGetGrabberInt32 Number 0\n"
        "GetGrabberInt32 Missing 7\nGetGrabberString Text \"\"\n"
        "GetGrabberString Missing none\nSaveGrabberConfig\n",
        "LoadGrabberConfig = 0\nInit = 0\nSetActCameraIndex = 0\nSaveGrabberInt32 = 0\n"
        "SaveGrabberHex32 = 0\nSaveGrabberString = 0\nGetGrabberInt32 = -5\n"
        "GetGrabberInt32 = 7\nGetGrabberString = 3 text=\"a b\"\n"
        "GetGrabberString = 4 text=\"none\"\nSaveGrabberConfig = 0\n");
    const std::string saved = directory.Read("host.ini");
    for (const char* part : {"; mine\n", "Extra=1\n", "Number=-5\n", "Hex=0x000000FF\n",
                             "Text=a b\n", "UniqueId=Eth0|A\n"}) {
        EXPECT_PRED2(Contains, saved, part);
    }
}

TEST_F(Shell, SwitchesBitsAndFeatures) {
    ExpectShell(
        "mivora",
        "SetGrabberBit 3 1\nGetGrabberBit 3\nGetGrabberBit 32\nSetFeature 1 0\nGetFeature 1\n"
        "GetFeatureStatus 0\nGetFeatureStatus 1\nGetFeatureStatus 99\nGetFeatureMask\n",
        "SetGrabberBit = 0\nGetGrabberBit = 0 value=1\nGetGrabberBit = 14 value=0\n"
        "SetFeature = 0\nGetFeature = 0 on=0\nGetFeatureStatus = 2\nGetFeatureStatus = 1\n"
        "GetFeatureStatus = 0\nGetFeatureMask = 13\n");
}

TEST_F(Shell, SignalsReachTheirReceivers) {
    ExpectShell("mivora",
                "SignalCamCfgChange\nSignalCamCntrlDlgEvent 1\nSignalCamCntrlDlgEvent 4096\n"
                "UpdateCamCntrlDialogs 3\nEvents\nEvents\n",
                "SignalCamCfgChange = ok\nSignalCamCntrlDlgEvent = 1\nSignalCamCntrlDlgEvent = 1\n"
                "UpdateCamCntrlDialogs = ok\n"
                "Events = ok postProcess=0 lastBuffer=-1 camCfgChange=1 camCntrl=[1,4096] "
                "dialogs=[3]\n"
                "Events = ok postProcess=0 lastBuffer=-1 camCfgChange=0 camCntrl=[] dialogs=[]\n");
}

TEST_F(Shell, RefusesUnknownOperationsAndEndsWithStatusTwo) {
    ExpectShell("mivora", "Snap\nGetFeatureCache 0\nSleep 1\n\n# done\n",
                "Snap ? expects MODE\nGetFeatureCache ? unknown operation\nSleep = ok\n", 2);
}

TEST_F(Shell, WritesEveryLineOfTheLogInOrder) {
    UseCamera();
    const std::vector<std::string> log = LogOf("Init\nLog mark\nInit\n");
    ASSERT_GE(log.size(), 4u);
    EXPECT_EQ(log.front(), "1 CMivoraKVNPyxenClass::Init");
    EXPECT_EQ(log[1],
              "1 CMivoraKVNPyxenClass::Init: Using Pyxen config file: " + PathOf("PxnC.xml"));
    const auto mark = std::find(log.begin(), log.end(), "1 mark");
    ASSERT_NE(mark, log.end());
    ASSERT_NE(mark + 1, log.end());
    EXPECT_EQ(*(mark + 1), "1 CMivoraKVNPyxenClass::Init");
    const std::regex form("[0-9] .*");
    for (const std::string& line : log) {
        EXPECT_TRUE(std::regex_match(line, form)) << line;
    }
}

TEST_F(Shell, OfThePyxenToolHasTheModulesOperations) {
    UseCamera("", "", "serial");
    ExpectShell(
        "pyxen-tool",
        "GetNumFeatureCaches\nGetFeatureCache 3\nReadRegister32 0x16000 1\nGetExposureTime\n"
        "NotifyBufferImpact 0\nInit\nSetActCameraIndex 0\nOpenActCamera\nGetFeatureCache 0\n"
        "GetFeatureCache 4\nGetFeatureCache 5\nGetFeatureCacheByName camera\n"
        "GetFeatureCacheByName PxnSystem\nGetExposureTime\nGetFrameInterval\n"
        "ReadRegister32 0x16124 1\nWriteRegister32 0x16104 9 1\nReadRegister32 0x16104 1\n"
        "CheckSyncPath Camera Width 32\nCheckSyncPath Camera Width 9999\n"
        "CheckSyncPath Camera Nope 1\nSyncModuleFeatures Camera 1\n"
        "SyncDependentFeatures Camera Width 1\nPrintParameters Stream0\nNotifyBufferImpact 0\n"
        "NotifyBufferImpact 1\nOnTimingFeatureChanged Camera ExposureTime\nEvents\n",
        "GetNumFeatureCaches = 5\nGetFeatureCache = null\nReadRegister32 = 0 value=0\n"
        "GetExposureTime = 0 value=0\nNotifyBufferImpact = 1\nInit = 0\n"
        "SetActCameraIndex = 0\nOpenActCamera = 0\nGetFeatureCache = \"Interface\"\n"
        "GetFeatureCache = \"Stream0\"\nGetFeatureCache = null\n"
        "GetFeatureCacheByName = \"Camera\"\nGetFeatureCacheByName = null\n"
        "GetExposureTime = 1 value=1000\nGetFrameInterval = 1 value=5000\n"
        "ReadRegister32 = 1 value=1\nWriteRegister32 = 1\nReadRegister32 = 1 value=9\n"
        "CheckSyncPath = 1 feature=\"- unkown -\" reason=\"General error\" bufferImpact=1\n"
        "CheckSyncPath = 0 feature=\"/Camera/ImageFormatControl/Width\" "
        "reason=\"Out of range\" bufferImpact=1\n"
        "CheckSyncPath ? module Camera has no feature \"Nope\"\nSyncModuleFeatures = 1\n"
        "SyncDependentFeatures = 1\nPrintParameters = ok\nNotifyBufferImpact = 1\n"
        "NotifyBufferImpact = 1\nOnTimingFeatureChanged = ok\n"
        "Events = ok postProcess=0 lastBuffer=-1 camCfgChange=0 camCntrl=[4096,4096,4097,3] "
        "dialogs=[4294967295,1]\n",
        2);
}

} // namespace
} // namespace scenario
