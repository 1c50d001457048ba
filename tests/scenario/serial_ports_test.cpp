// serial_ports_test.cpp - devices connected to a camera's serial ports
#include "tests/scenario/program_test.h"

#include <cstdint>
#include <random>

namespace scenario {
namespace {

class SerialPorts : public ProgramTest {
protected:
    void SetUp() override { UsePorts(""); }

    /// A camera with a loopback at port 0, a lens at port 1, nothing at port 2, and one more
    /// element.
    void UsePorts(const std::string& behind, const std::string& inside = {}) {
        UseCamera(
            "<port number=\"0\" device=\"loopback\"/><port number=\"1\" device=\"lens\"/>"
            "<port number=\"2\" device=\"none\"/><port number=\"3\" capability=\"0x011100A0\"/>"
            "<port number=\"4\" baudPaced=\"true\"/>" +
                inside,
            behind, "serial");
    }

    // Opens the camera and a channel at a port.
    static std::string Opening(const std::string& port) {
        return "Init\nSetActCameraIndex 0\nOpenActCamera\nCreateCmdChannel 1\n"
               "ChannelConfig PYXENSERIALPORT" +
               port + " - - - -\nCMDOpen\n";
    }
    static constexpr const char* kOpened = "Init = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\n"
                                           "CreateCmdChannel = channel\nChannelConfig = 0\n"
                                           "CMDOpen = 0\n";
    static constexpr const char* kDone = "SdkControl = 0 answer=\"ok\"\n";
};

TEST_F(SerialPorts, CarryAConversationWithALens) {
    const auto result = Mivora(
        {"serial", "1"}, "ID?\nFOCUS?\nFOCUS 1300\r\nfocus?\rFOCUS 5000\nFOCUS\nFOCUS 1 2\n"
                         "FOCUS? 1\nIRIS?\nIRIS 28\nIRIS?\nIRIS -1\nIRIS f\nZOOM?\n\nWARP 9\n");
    ExpectDone(result);
    EXPECT_EQ(result.output, "ID PYXEN LENS 1.0\r\nFOCUS 1200\r\nOK\r\nFOCUS 1300\r\n"
                             "ERR OUT OF RANGE\r\nERR BAD VALUE\r\nERR TOO MANY ARGUMENTS\r\n"
                             "ERR TOO MANY ARGUMENTS\r\nIRIS 56\r\nOK\r\nIRIS 28\r\n"
                             "ERR OUT OF RANGE\r\nERR BAD VALUE\r\nZOOM 100\r\n"
                             "ERR UNKNOWN COMMAND\r\n");
}

TEST_F(SerialPorts, CarryHexadecimalBytes) {
    auto result = Mivora({"serial", "0", "--hex"}, "00 ff 0a\n");
    ExpectDone(result);
    // Data that arrives in two parts is printed as two lines.
    std::erase(result.output, '\n');
    EXPECT_EQ(result.output, "00FF0A");
    result = Mivora({"serial", "pyxenserialport1", "--hex"}, "49 44 3F 0D\nxy\n0\n");
    EXPECT_EQ(result.status, 2) << "the rest has been sent";
    EXPECT_EQ(result.errors, "mivora: \"xy\" is no sequence of hexadecimal bytes\n"
                             "mivora: \"0\" is no sequence of hexadecimal bytes\n");
    std::erase(result.output, '\n');
    EXPECT_EQ(result.output, "494420505958454E204C454E5320312E300D0A");
}

TEST_F(SerialPorts, CarryAMebibyteUnchanged) {
    std::mt19937 random{20240611};
    std::string content(1 << 20, '\0');
    for (char& byte : content) {
        byte = static_cast<char>(random());
    }
    const auto result = Mivora({"serial", "0"}, content);
    ExpectDone(result);
    EXPECT_EQ(result.output.size(), content.size());
    EXPECT_TRUE(result.output == content);
}

TEST_F(SerialPorts, TakeTheSettingsTheyHave) {
    // Port 3 supports 9600 and 38400 baud without parity, with 5 bits and one stop bit.
    ExpectDone(Mivora({"serial", "3", "--baud", "9600", "--bytesize", "5", "--linger", "0"}));
    for (const Arguments& options :
         {Arguments{"--baud", "19200", "--bytesize", "5"}, Arguments{"--baud", "9600"},
          Arguments{"--baud", "9600", "--bytesize", "5", "--parity", "even"},
          Arguments{"--baud", "9600", "--bytesize", "5", "--stopbits", "1.5"}}) {
        Arguments all{"serial", "3"};
        all.insert(all.end(), options.begin(), options.end());
        ExpectFailure(Mivora(all), 1, {"CMDOpen failed with 18", "PYXENSERIALPORT3"});
    }
    ExpectFailure(Mivora({"serial", "9"}), 1, {"CMDOpen failed with 18", "PYXENSERIALPORT9"});
    ExpectFailure(Mivora({"serial", "0", "--parity", "Mark"}), 2, {"--parity"});
    ExpectFailure(Mivora({"serial", "0", "--baud", "9601"}), 2, {"--baud"});
}

TEST_F(SerialPorts, AreFilledAtTheirOwnPace) {
    // Ten bits of a byte at 300 baud take 33.3 ms, so 24 bytes are out after 800 ms. The second
    // write waits for that: the last millisecond passes while it looks at the port.
    const std::string first = "616263646566676869616263646566676869616263646566";
    ExpectShell("mivora",
                Opening("4") +
                    "ChannelConfig - 300 - - -\nCMDClose\nCMDOpen\nSdkControl clock stop\n"
                    "CMDWriteBuffer " +
                    first +
                    "\nCMDReadBuffer 100\nSdkControl clock advance 799\nCMDReadBuffer 100\n"
                    "SdkControl at-call PxnMemoryRead 10 clock advance 1\nCMDWriteCString xyz\n"
                    "SdkControl clock advance 33\nCMDReadBuffer 100\n"
                    "SdkControl clock advance 1\nCMDReadBuffer 100\n"
                    "SdkControl clock advance 766\nCMDReadBuffer 100\n",
                std::string(kOpened) + "ChannelConfig = 0\nCMDClose = 0\nCMDOpen = 0\n" + kDone +
                    "CMDWriteBuffer = 0 count=24\nCMDReadBuffer = 0 count=0 data=\n" + kDone +
                    "CMDReadBuffer = 0 count=0 data=\n" + kDone + "CMDWriteCString = 0 count=3\n" +
                    kDone + "CMDReadBuffer = 0 count=0 data=\n" + kDone +
                    "CMDReadBuffer = 0 count=1 data=61\n" + kDone +
                    "CMDReadBuffer = 0 count=26 data=" + first.substr(2) + "78797A\n");
}

TEST_F(SerialPorts, CarryEverythingWhenTheyAreSlow) {
    ExpectShell("mivora",
                Opening("0") + "SdkControl uart 0 slow\nSdkControl clock stop\n"
                               "CMDWriteCString abc\n"
                               "SdkControl at-call PxnMemoryRead 10 clock advance 100\n"
                               "CMDWriteCString def\nSdkControl clock advance 199\n"
                               "CMDReadBuffer 100\nSdkControl clock advance 1\n"
                               "CMDReadBuffer 100\n",
                std::string(kOpened) + kDone + kDone + "CMDWriteCString = 0 count=3\n" + kDone +
                    "CMDWriteCString = 0 count=3\n" + kDone +
                    "CMDReadBuffer = 0 count=5 data=6162636465\n" + kDone +
                    "CMDReadBuffer = 0 count=1 data=66\n");
}

TEST_F(SerialPorts, AreWaitedForWhileTheyAreStuck) {
    ExpectShell("mivora",
                Opening("0") + "SdkControl uart 0 stuck\n"
                               "SdkControl at-call PxnMemoryRead 100 uart 0 ok\n"
                               "CMDWriteCString abc\nCMDReadBuffer 100\n",
                std::string(kOpened) + kDone + kDone +
                    "CMDWriteCString = 0 count=3\nCMDReadBuffer = 0 count=3 data=616263\n");
}

TEST_F(SerialPorts, EndAWriteWhenTheCameraIsUnplugged) {
    // Two pieces of 1024 bytes; the first is never out, and the second waits for that.
    const std::string content(4096, '5');
    ExpectShell("mivora",
                Opening("4") +
                    "ChannelConfig - 4800 - - -\nCMDClose\nCMDOpen\nSdkControl clock stop\n"
                    "SdkControl at-call PxnMemoryRead 100 unplug A\nCMDWriteBuffer " +
                    content +
                    "\nCMDReadByte\nCMDReadBuffer 10\nCMDWriteByte 00\nCMDPurge 1\n"
                    "CMDPurge 2\nCMDClose\nCMDOpen\nCMDOpen\nCMDClose\nCloseActCamera\nCMDOpen\n"
                    "CMDPurge 3\nCMDClose\nSdkControl plug A\nRefreshCameraList\n"
                    "SetActCameraIndex 0\nOpenActCamera\nCMDOpen\nCMDWriteByte AA\n"
                    "SdkControl clock advance 5\nCMDReadByte\n",
                std::string(kOpened) + "ChannelConfig = 0\nCMDClose = 0\nCMDOpen = 0\n" + kDone +
                    kDone +
                    "CMDWriteBuffer = 20 count=1024\n"
                    "CMDReadByte = 19 count=0 data=\nCMDReadBuffer = 19 count=0 data=\n"
                    "CMDWriteByte = 20 count=0\nCMDPurge = 21\nCMDPurge = 21\nCMDClose = 0\n"
                    "CMDOpen = 18\nCMDOpen = 16\nCMDClose = 0\nCloseActCamera = 0\nCMDOpen = 18\n"
                    "CMDPurge = 20\nCMDClose = 0\n" +
                    kDone +
                    "RefreshCameraList = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\n"
                    "CMDOpen = 0\nCMDWriteByte = 0 count=1\n" +
                    kDone + "CMDReadByte = 0 count=1 data=AA\n");
}

TEST_F(SerialPorts, EndATerminalWhenTheCameraIsUnplugged) {
    // Opening the port writes four registers, sending its bytes and their number two.
    UsePorts(Faults("at-call PxnMemoryWrite 6 at-call PxnMemoryRead 10 unplug A"));
    ExpectFailure(Mivora({"serial", "2", "--linger", "60000"}, "abc"), 1,
                  {"CMDReadBuffer failed with 19", "PYXENSERIALPORT2"});
    // Far more reads than the terminal makes before it writes.
    UsePorts(Faults("uart 2 stuck") + Faults("at-call PxnMemoryRead 5000 unplug A"));
    ExpectFailure(Mivora({"serial", "2"}, "abc"), 1, {"CMDWriteBuffer failed with 20"});
}

TEST_F(SerialPorts, LoseWhatWasReceivedInAPurge) {
    ExpectShell("mivora",
                Opening("0") + "CMDWriteCString abc\nCMDPurge 2\nCMDReadByte\nCMDPurge 1\n"
                               "CMDReadByte\nCMDPurge 0\nCMDWriteCString d\nCMDReadByte\n",
                std::string(kOpened) +
                    "CMDWriteCString = 0 count=3\nCMDPurge = 0\nCMDReadByte = 0 count=1 data=61\n"
                    "CMDPurge = 0\nCMDReadByte = 19 count=0 data=\nCMDPurge = 0\n"
                    "CMDWriteCString = 0 count=1\nCMDReadByte = 0 count=1 data=64\n");
}

TEST_F(SerialPorts, KeepTheirConfigurationForTheNextRun) {
    ExpectShell("mivora",
                "LoadGrabberConfig\nCreateCmdChannel 1\n"
                "ChannelConfig PYXENSERIALPORT1 19200 Odd 7 2\nCreateCmdChannel 0\n"
                "GetActCmdChannelIndex\nSetActCmdChannelIndex 0\nSaveGrabberConfig\n",
                "LoadGrabberConfig = 0\nCreateCmdChannel = channel\nChannelConfig = 0\n"
                "CreateCmdChannel = channel\nGetActCmdChannelIndex = 1\n"
                "SetActCmdChannelIndex = 0\nSaveGrabberConfig = 0\n");
    const std::string saved = directory.Read("host.ini");
    EXPECT_PRED2(Contains, saved,
                 "PORTNAME=PYXENSERIALPORT1\nBAUD=19200\nPARITY=Odd\nBYTESIZE=7\nSTOPBITS=2\n");
    const auto result = Mivora({"channels"});
    ExpectDone(result);
    EXPECT_PRED2(Contains, result.output,
                 "* configured 0  Pyxen Serial Port  (19200 Baud, Parity = Odd, Bytesize = 7, "
                 "Stopbits = 2)\n  configured 1  Serial Port  (");
    // The lens responds, so the port was kept as well.
    ExpectShell("mivora",
                "LoadGrabberConfig\nInit\nSetActCameraIndex 0\nOpenActCamera\nCMDOpen\n"
                "CMDWriteBuffer 49443F0D\nCMDReadBuffer 2\n",
                "LoadGrabberConfig = 0\nInit = 0\nSetActCameraIndex = 0\nOpenActCamera = 0\n"
                "CMDOpen = 0\nCMDWriteBuffer = 0 count=4\nCMDReadBuffer = 0 count=2 data=4944\n");
}

TEST_F(SerialPorts, AreNotThereWithoutACameraThatHasThem) {
    UseCamera();
    ExpectFailure(Mivora({"serial", "0"}), 1,
                  {"CMDOpen failed with 18", "for PYXENSERIALPORT0 of camera 0 (Camera A, "});
    directory.Write("PxnC.xml", "<PxnC/>");
    ExpectFailure(Mivora({"serial", "0"}), 1, {"there is no camera"});
}

TEST_F(SerialPorts, OfTheCamerasOwnLinkRunAtTheFastestCommonRate) {
    const std::string tag = "1 CMivoraKVNPyxenClass::SetOptimumSerialPortBaudRate: ";
    const auto read = [&](const std::string& feature) {
        return Mivora({"--log", PathOf("log"), "get", feature}).output;
    };
    EXPECT_EQ(read("Localdevice/DeviceSerialPortBaudRate"), "Baud115200\n");
    EXPECT_PRED2(Contains, directory.Read("log"),
                 tag +
                     "Found optimum common DeviceSerialPortBaudrate for grabber and camera as "
                     "Baud115200.\n" +
                     tag + "Switched to optimum DeviceSerialPortBaudrate of Baud115200.\n");
    // The camera keeps its own rate.
    EXPECT_EQ(read("Camera/DeviceSerialPortBaudRate"), "Baud9600\n");
    const auto again = Mivora({"--log", PathOf("again"), "shell"},
                              "Init\nSetActCameraIndex 0\nOpenActCamera\nCloseActCamera\n"
                              "Log again\nOpenActCamera\n");
    ExpectDone(again);
    const std::string log = directory.Read("again");
    EXPECT_PRED2(Contains, log.substr(log.find("1 again\n")),
                 tag +
                     "Found optimum common DeviceSerialPortBaudrate for grabber and camera as "
                     "Baud115200.\n" +
                     tag +
                     "Optimum DeviceSerialPortBaudrate of Baud115200 already set. No need to "
                     "change it.\n");
    // Without a list on both sides no rate is negotiated.
    UsePorts("", "<omit name=\"DeviceSerialPortBaudRate\"/>");
    ExpectDone(Mivora({"--log", PathOf("omitted"), "info"}));
    EXPECT_FALSE(Contains(directory.Read("omitted"), "SetOptimumSerialPortBaudRate"));
}

} // namespace
} // namespace scenario
