// configuration_test.cpp - configuration files and settings files
#include "tests/pxnc/simulator/simulator_fixture.h"

#include "platform/file_system.h"
#include "platform/text.h"
#include "pxnc/simulator/configuration_reader.h"
#include "pxnc/simulator/sdk.h"

#include <fstream>

namespace simulator_tests {
namespace {

class ConfigurationTest : public testing::Test {
protected:
    void SetUp() override {
        directory = platform::CreateTemporaryDirectory("pxnc");
        path = platform::JoinPath(directory, "PxnC.xml");
    }
    void TearDown() override {
        Control("clear");
        EXPECT_EQ(pxsim::TheSdk().Current(), nullptr);
        EXPECT_TRUE(platform::RemoveDirectoryTree(directory));
    }
    void Write(const std::string& text) const { std::ofstream(path, std::ios::binary) << text; }
    PxnError Startup(const std::string& file) const {
        wchar_t wide[1024];
        EXPECT_GT(platform::NarrowToWide(file.c_str(), wide, 1024), 0u);
        return PxnStartup(wide);
    }
    /// Starts with `text` as the file, which must be refused, and returns the complaint without
    /// what stands before the file's name and with "FILE" in its place.
    std::string Complaint(const std::string& text) const {
        Write(text);
        testing::internal::CaptureStderr();
        EXPECT_EQ(Startup(path), PxnErrXml) << text;
        PxnShutdown(); // a failed startup counts
        std::string said = testing::internal::GetCapturedStderr();
        const std::string prefix = "PxnC: " + path;
        EXPECT_EQ(said.compare(0, prefix.size(), prefix), 0) << said;
        EXPECT_EQ(said.find('\n'), said.size() - 1) << "one line";
        return "FILE" + said.substr(prefix.size(), said.size() - prefix.size() - 1);
    }

    std::string directory;
    std::string path;
};

TEST_F(ConfigurationTest, CamerasAreAsTheFileSays) {
    Write(R"(<?xml version="1.0" encoding="UTF-8"?>
<PxnC>
  <!-- a laboratory -->
  <transportLayer id="LabTL" name="Lab &quot;TL&quot;" model="LabModel" vendor="Lab" version="9" type="CXP"/>
  <interface id="Lab0" name="Laboratory" transportLayer="LabTL"/>
  <camera kind="serial" id="A" extendedId="lab|A" name="Camera A" model="M" vendor="V" serial="S"
          interface="Lab0" sensorWidth="4096" sensorHeight="3000" pattern="noise" seed="5"
          freeRunning="true" access="read" streams="3" extraFeatures="250">
    <feature name="PixelFormat" value="BayerRG8"/>
    <feature name="Width" value="4096"/>
    <feature name="DeviceUserID" value="Größe"/>
    <omit name="Gain"/>
    <omit name="StreamIsGrabbing"/>
    <port number="2" present="false"/>
    <port number="3" capability="0x01110220" device="lens" baudPaced="true"/>
  </camera>
  <camera kind="gige" id="B" plugged="false"/>
  <camera kind="usb" id="C"/>
</PxnC>
)");
    ASSERT_EQ(Startup(path), 0);
    PxnCameraInfo cameras[4] = {};
    std::uint32_t found = 0;
    EXPECT_EQ(PxnCamerasList(cameras, 4, &found, sizeof cameras[0]), 0);
    ASSERT_EQ(found, 2u);
    EXPECT_STREQ(cameras[0].cameraIdExtended, "lab|A");
    EXPECT_STREQ(cameras[0].cameraName, "Camera A");
    EXPECT_STREQ(cameras[0].modelName, "M");
    EXPECT_STREQ(cameras[0].serialString, "S");
    EXPECT_EQ(cameras[0].permittedAccess, std::uint32_t{PxnAccessModeRead});
    EXPECT_STREQ(cameras[1].cameraIdExtended, "Usb0|C");
    EXPECT_EQ(GetString(cameras[0].transportLayerHandle, "TLVendorName"), "Lab");
    EXPECT_EQ(GetString(cameras[0].transportLayerHandle, "TLDisplayName"), "Lab \"TL\"");
    EXPECT_EQ(GetString(cameras[0].transportLayerHandle, "TLType"), "CXP");
    PxnHandle camera = nullptr;
    ASSERT_EQ(PxnCameraOpen("A", PxnAccessModeRead, &camera), 0);
    EXPECT_EQ(GetEnum(camera, "PixelFormat"), "BayerRG8");
    EXPECT_EQ(GetInt(camera, "Width"), 4096);
    EXPECT_EQ(GetInt(camera, "SensorHeight"), 3000);
    EXPECT_EQ(GetString(camera, "DeviceUserID"), "Größe");
    EXPECT_EQ(GetEnum(camera, "TestPattern"), "Noise");
    EXPECT_TRUE(GetBool(camera, "SimulatorFreeRunning"));
    EXPECT_EQ(GetInt(camera, "SimulatorExtra0"), 0);
    EXPECT_EQ(GetString(camera, "SimulatorExtra248"), "SimulatorExtra248");
    EXPECT_GE(ListFeatures(camera).size(), 400u);
    double gain = 0;
    EXPECT_EQ(PxnFeatureFloatGet(camera, "Gain", &gain), PxnErrNotFound);
    const PxnCameraInfo info = InfoOf(camera);
    ASSERT_EQ(info.streamCount, 3u);
    PxnBool flag = 0;
    EXPECT_EQ(PxnFeatureBoolGet(info.streamHandles[2], "StreamIsGrabbing", &flag), PxnErrNotFound);
    EXPECT_EQ(GetInt(info.streamHandles[2], "StreamIndex"), 2);
    char bytes[4] = {};
    std::uint32_t done = 0;
    EXPECT_EQ(PxnMemoryRead(camera, 0x61000, 4, bytes, &done), 0);
    EXPECT_EQ(bytes[3], 0) << "the port is absent";
    EXPECT_EQ(PxnMemoryRead(camera, 0x62100, 4, bytes, &done), 0);
    EXPECT_EQ(std::string(bytes, 4), std::string("\x01\x11\x02\x20", 4));
    EXPECT_EQ(PxnCameraClose(camera), 0);
    Control("plug B");
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof cameras[0]), 0);
    EXPECT_EQ(found, 3u);
    PxnShutdown();
}

TEST_F(ConfigurationTest, TenThousandFeaturesArePossible) {
    Write("<PxnC><camera kind='usb' id='Many' extraFeatures='10000'/></PxnC>");
    ASSERT_EQ(Startup(path), 0);
    PxnHandle camera = nullptr;
    ASSERT_EQ(PxnCameraOpen("Many", PxnAccessModeFull, &camera), 0);
    EXPECT_GE(ListFeatures(camera).size(), 10150u);
    EXPECT_EQ(PxnFeatureIntSet(camera, "SimulatorExtra9995", 7), 0);
    EXPECT_EQ(GetInt(camera, "SimulatorExtra9995"), 7);
    EXPECT_EQ(PxnCameraClose(camera), 0);
    PxnShutdown();
}

TEST_F(ConfigurationTest, AnEmptyConfigurationHasNoCameras) {
    Write("<PxnC/>");
    ASSERT_EQ(Startup(path), 0);
    std::uint32_t found = 9;
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), 0);
    EXPECT_EQ(found, 0u);
    EXPECT_EQ(PxnInterfacesList(nullptr, 0, &found, sizeof(PxnInterfaceInfo)), 0);
    EXPECT_EQ(found, 3u);
    PxnShutdown();
}

TEST_F(ConfigurationTest, ScriptsRunAfterTheStartup) {
    Write("<PxnC><camera id='A'/><faults>\n"
          "<script>fail PxnCamerasList 1 -24</script>\n"
          "<script>\n# another one\n\nfail PxnCamerasList 2 -20\n</script>"
          "</faults></PxnC>");
    ASSERT_EQ(Startup(path), 0);
    std::uint32_t found = 9;
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), PxnErrBusy);
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), -20);
    EXPECT_EQ(PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)), 0);
    PxnShutdown();
}

TEST_F(ConfigurationTest, AMissingFileIsNotFound) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(Startup(platform::JoinPath(directory, "nothing.xml")), PxnErrNotFound);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("nothing.xml: cannot be read"), std::string::npos) << said;
    PxnShutdown();
    EXPECT_EQ(PxnStartup(nullptr), 0) << "the next startup works";
    PxnShutdown();
}

TEST_F(ConfigurationTest, EveryMistakeIsNamedWithItsLine) {
    EXPECT_EQ(Complaint("<PxnC>\n<camera id='A'>\n</PxnC>"), "FILE:3: Start-end tags mismatch");
    EXPECT_EQ(Complaint("\n<Other/>"), "FILE:2: the root element is <Other>, expected <PxnC>");
    EXPECT_EQ(Complaint("<PxnC>\n\n<kamera/></PxnC>"),
              "FILE:3: unknown element <kamera> in <PxnC>");
    EXPECT_EQ(Complaint("<PxnC>\n<camera id='A' colour='red'/></PxnC>"),
              "FILE:2: unknown attribute \"colour\" of <camera>");
    EXPECT_EQ(Complaint("<PxnC>hello</PxnC>"), "FILE:1: text is not expected in <PxnC>");
    EXPECT_EQ(Complaint("<PxnC>\n<camera/></PxnC>"), "FILE:2: <camera> needs the attribute \"id\"");
    EXPECT_EQ(Complaint("<PxnC><camera id='A' kind='phone'/></PxnC>"),
              "FILE:1: \"kind\" is \"phone\", expected one of gige, usb, serial");
    EXPECT_EQ(Complaint("<PxnC><camera id='A' sensorWidth='wide'/></PxnC>"),
              "FILE:1: \"sensorWidth\" is not a number: \"wide\"");
    EXPECT_EQ(Complaint("<PxnC><camera id='A' sensorWidth='10'/></PxnC>"),
              "FILE:1: \"sensorWidth\" must lie between 64 and 16384");
    EXPECT_EQ(Complaint("<PxnC><camera id='A' plugged='perhaps'/></PxnC>"),
              "FILE:1: \"plugged\" must be true or false");
    EXPECT_EQ(Complaint("<PxnC><camera id='A' interface='Eth7'/></PxnC>"),
              "FILE:1: there is no interface \"Eth7\"");
    EXPECT_EQ(Complaint("<PxnC>\n<interface id='I' transportLayer='T'/></PxnC>"),
              "FILE:2: there is no transport layer \"T\"");
    EXPECT_EQ(Complaint("<PxnC><camera id='A'/>\n<camera id='B' extendedId='A'/></PxnC>"),
              "FILE:2: another camera already has the identifier \"A\"");
    EXPECT_EQ(Complaint("<PxnC><camera id='A'>\n<port number='0'/></camera></PxnC>"),
              "FILE:2: only cameras of kind \"serial\" have ports");
    EXPECT_EQ(Complaint("<PxnC><camera id='A' kind='serial'>\n<port/></camera></PxnC>"),
              "FILE:2: <port> needs the attribute \"number\"");
    EXPECT_EQ(Complaint("<PxnC><camera id='A' kind='serial'><port number='5'/></camera></PxnC>"),
              "FILE:1: \"number\" must lie between 0 and 4");
    EXPECT_EQ(
        Complaint("<PxnC><camera id='A' kind='serial'>\n"
                  "<port number='0' device='toaster'/></camera></PxnC>"),
        "FILE:2: there is no serial device \"toaster\", expected one of loopback, lens, none");
    EXPECT_EQ(
        Complaint("<PxnC>\n<camera id='A'>\n<feature name='Girth' value='1'/></camera></PxnC>"),
        "FILE:3: camera A: there is no feature \"Girth\"");
    EXPECT_EQ(Complaint("<PxnC><camera id='A'>\n<feature name='Width' value='7'/></camera></PxnC>"),
              "FILE:2: camera A: the feature \"Width\" refuses the value \"7\"");
    EXPECT_EQ(Complaint("<PxnC><camera id='A'>\n\n<omit name='Girth'/></camera></PxnC>"),
              "FILE:3: camera A: there is no feature \"Girth\" to omit");
    EXPECT_EQ(Complaint("<PxnC><faults>\n<script>fly</script></faults></PxnC>"),
              "FILE:2: no command \"fly\"; try help");
    EXPECT_EQ(Complaint("<PxnC><faults>\n<script>\nclear\nfly</script></faults></PxnC>"),
              "FILE:4: no command \"fly\"; try help");
    EXPECT_EQ(Complaint("<PxnC><faults><script/></faults></PxnC>"),
              "FILE:1: <script> needs a command as its text");
    EXPECT_EQ(Complaint(""), "FILE:1: No document element found");
    EXPECT_EQ(PxnStartup(nullptr), 0) << "the next startup works";
    PxnShutdown();
}

// ---- settings ----

class SettingsTest : public ConfigurationTest {
protected:
    void SetUp() override {
        ConfigurationTest::SetUp();
        ASSERT_EQ(PxnStartup(nullptr), 0);
        ASSERT_EQ(PxnCameraOpen(kUsbCamera, PxnAccessModeFull, &camera), 0);
        ASSERT_GT(platform::NarrowToWide(platform::JoinPath(directory, "settings.xml").c_str(),
                                         wide, 1024),
                  0u);
    }
    void TearDown() override {
        EXPECT_EQ(PxnCameraClose(camera), 0);
        PxnShutdown();
        ConfigurationTest::TearDown();
    }
    void WriteSettings(const std::string& text) const {
        std::ofstream(platform::JoinPath(directory, "settings.xml"), std::ios::binary) << text;
    }

    PxnHandle camera = nullptr;
    wchar_t wide[1024] = {};
};

TEST_F(SettingsTest, SavedValuesComeBackForEverySelector) {
    EXPECT_EQ(PxnFeatureEnumSet(camera, "PixelFormat", "BayerGB12p"), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "OffsetX", 1000), 0);
    EXPECT_EQ(PxnFeatureIntSet(camera, "Width", 1500), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "ExposureAuto", "Continuous"), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "GainSelector", "DigitalRed"), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", 1.0 / 3.0), 0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "GainSelector", "DigitalBlue"), 0);
    EXPECT_EQ(PxnFeatureFloatSet(camera, "Gain", 5.0), 0);
    EXPECT_EQ(PxnFeatureStringSet(camera, "DeviceUserID", "<&\"é>"), 0);
    ASSERT_EQ(PxnSettingsSave(camera, wide, nullptr, 0), 0);
    EXPECT_EQ(GetEnum(camera, "GainSelector"), "DigitalBlue") << "saving changes nothing";

    EXPECT_EQ(PxnFeatureCommandRun(camera, "DeviceReset"), 0);
    EXPECT_EQ(GetInt(camera, "Width"), 640);
    ASSERT_EQ(PxnSettingsLoad(camera, wide, nullptr, 0), 0);
    EXPECT_EQ(GetEnum(camera, "PixelFormat"), "BayerGB12p");
    EXPECT_EQ(GetInt(camera, "OffsetX"), 1000);
    EXPECT_EQ(GetInt(camera, "Width"), 1500);
    EXPECT_EQ(GetEnum(camera, "ExposureAuto"), "Continuous");
    EXPECT_EQ(GetString(camera, "DeviceUserID"), "<&\"é>");
    EXPECT_EQ(GetEnum(camera, "GainSelector"), "DigitalBlue");
    EXPECT_EQ(GetFloat(camera, "Gain"), 5.0);
    EXPECT_EQ(PxnFeatureEnumSet(camera, "GainSelector", "DigitalRed"), 0);
    EXPECT_EQ(GetFloat(camera, "Gain"), 1.0 / 3.0) << "exactly";
}

TEST_F(SettingsTest, ARefusedFileChangesNothing) {
    WriteSettings("<PxnSettings version='1'><feature name='Width' value='320'/>"
                  "<feature name='Height' value='7'/></PxnSettings>");
    EXPECT_EQ(PxnSettingsLoad(camera, wide, nullptr, 0), PxnErrInvalidValue);
    EXPECT_EQ(GetInt(camera, "Width"), 640);
    WriteSettings("<PxnSettings version='1'><feature name='Girth' value='320'/></PxnSettings>");
    EXPECT_EQ(PxnSettingsLoad(camera, wide, nullptr, 0), PxnErrInvalidValue);
    WriteSettings("<PxnSettings>\n<future/></PxnSettings>");
    testing::internal::CaptureStderr();
    EXPECT_EQ(PxnSettingsLoad(camera, wide, nullptr, 0), PxnErrXml);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("settings.xml:2: unknown element"),
              std::string::npos);
}

TEST_F(SettingsTest, BadCallsAreRefused) {
    EXPECT_EQ(PxnSettingsLoad(camera, wide, nullptr, 0), PxnErrNotFound) << "no file yet";
    EXPECT_EQ(PxnSettingsSave(camera, nullptr, nullptr, 0), PxnErrBadParameter);
    EXPECT_EQ(PxnSettingsLoad(camera, nullptr, nullptr, 0), PxnErrBadParameter);
    EXPECT_EQ(PxnSettingsSave(camera, wide, nullptr, 4), PxnErrBadParameter);
    EXPECT_EQ(PxnSettingsSave(camera, wide, wide, 4), PxnErrStructSize);
    EXPECT_EQ(PxnSettingsLoad(camera, wide, wide, 4), PxnErrStructSize);
    wchar_t nowhere[1024];
    platform::NarrowToWide(platform::JoinPath(directory, "no/such/place.xml").c_str(), nowhere,
                           1024);
    EXPECT_EQ(PxnSettingsSave(camera, nowhere, nullptr, 0), PxnErrIO);
    ASSERT_EQ(PxnSettingsSave(camera, wide, nullptr, 0), 0);
    ASSERT_EQ(PxnCaptureStart(camera), 0);
    EXPECT_EQ(PxnSettingsLoad(camera, wide, nullptr, 0), PxnErrInvalidAccess);
    ASSERT_EQ(PxnCaptureEnd(camera), 0);
    PxnHandle reader = nullptr;
    ASSERT_EQ(PxnCameraOpen(kUsbCamera, PxnAccessModeRead, &reader), 0);
    EXPECT_EQ(PxnSettingsSave(reader, wide, nullptr, 0), 0);
    EXPECT_EQ(PxnSettingsLoad(reader, wide, nullptr, 0), PxnErrInvalidAccess);
    EXPECT_EQ(PxnCameraClose(reader), 0);
}

TEST_F(SettingsTest, LoadingInvalidatesTheFeatures) {
    ASSERT_EQ(PxnSettingsSave(camera, wide, nullptr, 0), 0);
    Counter calls;
    const auto callback = [](PxnHandle, const char*, void* context) {
        static_cast<Counter*>(context)->Add();
    };
    ASSERT_EQ(PxnFeatureInvalidationRegister(camera, "Width", callback, &calls), 0);
    ASSERT_EQ(PxnSettingsLoad(camera, wide, nullptr, 0), 0);
    EXPECT_TRUE(calls.WaitFor(1));
    EXPECT_EQ(PxnFeatureInvalidationUnregister(camera, "Width", callback), 0);
}

TEST_F(SettingsTest, OtherModulesHaveSettingsToo) {
    const PxnHandle local = InfoOf(camera).localDeviceHandle;
    EXPECT_EQ(PxnFeatureIntSet(local, "DeviceMessageTimeout", 500), 0);
    ASSERT_EQ(PxnSettingsSave(local, wide, nullptr, 0), 0);
    EXPECT_EQ(PxnFeatureIntSet(local, "DeviceMessageTimeout", 600), 0);
    ASSERT_EQ(PxnSettingsLoad(local, wide, nullptr, 0), 0);
    EXPECT_EQ(GetInt(local, "DeviceMessageTimeout"), 500);
}

/// A document with every element and every attribute, one element a line.
const std::vector<std::string> kWholeDocument = {
    "<PxnC>",
    "<transportLayer id=\"TL\" name=\"N\" model=\"M\" vendor=\"V\" version=\"1\" path=\"P\" "
    "type=\"CXP\"/>",
    "<interface id=\"If\" name=\"N\" type=\"CXP\" transportLayer=\"TL\"/>",
    "<camera kind=\"serial\" id=\"A\" extendedId=\"If|A\" name=\"N\" model=\"M\" vendor=\"V\" "
    "serial=\"S\" interface=\"If\" sensorWidth=\"640\" sensorHeight=\"480\" pattern=\"bars\" "
    "seed=\"5\" freeRunning=\"true\" plugged=\"true\" access=\"full\" streams=\"2\" "
    "extraFeatures=\"3\">",
    "<feature name=\"Width\" value=\"320\"/>",
    "<omit name=\"Gain\"/>",
    "<port number=\"1\" present=\"true\" capability=\"1\" device=\"lens\" baudPaced=\"true\"/>",
    "</camera>",
    "<faults>",
    "<script>frame drop 3</script>",
    "</faults>",
    "</PxnC>",
};

/// What the reader says of a document, without the file's name; empty when it takes it.
std::string ReaderComplaint(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    pxsim::Configuration configuration;
    const pxsim::ConfigurationError error = pxsim::ParseConfiguration(text, "FILE", configuration);
    EXPECT_EQ(error.code == 0, error.message.empty());
    return error.message.empty() ? "" : error.message.substr(std::string("FILE").size());
}

/// ":LINE: " of an index into the document.
std::string At(std::size_t index) {
    return ":" + std::to_string(index + 1) + ": ";
}

TEST(ConfigurationReader, NamesTheLineOfEveryElementThatIsMalformed) {
    ASSERT_EQ(ReaderComplaint(kWholeDocument), "");
    for (std::size_t i = 0; i < kWholeDocument.size(); ++i) {
        const std::string& line = kWholeDocument[i];
        const std::string element = line.substr(1, line.find_first_of(" >", 1) - 1);
        if (element.front() == '/') {
            continue;
        }
        std::vector<std::string> broken = kWholeDocument;
        const auto with = [&](std::string changed) {
            broken[i] = std::move(changed);
            return ReaderComplaint(broken);
        };
        const std::size_t nameEnd = 1 + element.size();
        EXPECT_EQ(with(line.substr(0, nameEnd) + " bogus=\"1\"" + line.substr(nameEnd)),
                  At(i) + "unknown attribute \"bogus\" of <" + element + ">");
        // Lines before the mistake are right, so it is found at its own line or where the parser
        // noticed it, never before.
        for (const std::string& changed :
             {"<" + line, line.substr(1), line.substr(0, nameEnd) + " =" + line.substr(nameEnd),
              line.substr(0, line.size() - 1), line.substr(0, nameEnd) + "<" + line.substr(nameEnd),
              "<" + line.substr(0, nameEnd - 1) + "&" + line.substr(nameEnd)}) {
            const std::string complaint = with(changed);
            ASSERT_FALSE(complaint.empty()) << changed;
            ASSERT_EQ(complaint.front(), ':') << complaint;
            EXPECT_GE(std::stoul(complaint.substr(1)), i + 1) << changed << complaint;
            EXPECT_LE(std::stoul(complaint.substr(1)), kWholeDocument.size() + 1) << complaint;
        }
        if (i > 0) {
            EXPECT_EQ(with("<bogus/>" + line).substr(0, At(i).size()), At(i)) << line;
            EXPECT_EQ(with("text" + line).find(": text is not expected in <") == std::string::npos,
                      false)
                << line;
        }
    }
}

TEST(ConfigurationReader, RefusesADocumentThatEndsAnywhere) {
    std::string whole;
    for (const std::string& line : kWholeDocument) {
        whole += line + "\n";
    }
    const std::size_t last = whole.rfind('>');
    for (std::size_t length = 0; length <= last; ++length) {
        pxsim::Configuration configuration;
        const pxsim::ConfigurationError error =
            pxsim::ParseConfiguration(whole.substr(0, length), "FILE", configuration);
        ASSERT_EQ(error.code, PxnErrXml) << length;
        ASSERT_EQ(error.message.find("FILE:"), 0u) << error.message;
        ASSERT_TRUE(configuration.cameras.empty()) << "a refused document changes nothing";
    }
}

TEST(ConfigurationReader, RefusesEveryAttributeWithAnEmptyOrSenselessValue) {
    const auto replaced = [](const std::string& attribute, const std::string& value) {
        std::vector<std::string> lines = kWholeDocument;
        std::size_t at = 0;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const std::size_t begin = lines[i].find(" " + attribute + "=\"");
            if (begin != std::string::npos && at == 0) {
                const std::size_t from = begin + attribute.size() + 3;
                lines[i].replace(from, lines[i].find('"', from) - from, value);
                at = i;
            }
        }
        EXPECT_NE(at, 0u) << attribute;
        const std::string complaint = ReaderComplaint(lines);
        EXPECT_EQ(complaint.substr(0, At(at).size()), At(at)) << attribute << complaint;
    };
    for (const char* attribute :
         {"type", "kind", "pattern", "access", "freeRunning", "plugged", "present", "baudPaced",
          "device", "interface", "transportLayer"}) {
        replaced(attribute, "senseless");
    }
    for (const char* attribute : {"sensorWidth", "sensorHeight", "seed", "streams", "extraFeatures",
                                  "number", "capability"}) {
        for (const char* value : {"many", "-1", "99999999999999999999", "1.5", "0x", "7 7"}) {
            replaced(attribute, value);
        }
    }
}

TEST_F(ConfigurationTest, FeaturesThatContradictEachOtherAreNamedWithTheirLine) {
    const auto complaint = [this](const std::string& features) {
        return Complaint("<PxnC><camera id='A' sensorWidth='640' sensorHeight='480'>\n" + features +
                         "</camera></PxnC>");
    };
    const auto feature = [](const char* name, const char* value) {
        return std::string("<feature name='") + name + "' value='" + value + "'/>\n";
    };
    const auto refused = [](int line, const char* name, const char* value) {
        return "FILE:" + std::to_string(line) + ": camera A: the feature \"" + name +
               "\" refuses the value \"" + value + "\"";
    };
    EXPECT_EQ(complaint(feature("Width", "640") + feature("OffsetX", "64")),
              refused(3, "OffsetX", "64"));
    EXPECT_EQ(
        complaint(feature("Width", "320") + feature("OffsetX", "320") + feature("Width", "640")),
        refused(4, "Width", "640"));
    EXPECT_EQ(complaint(feature("BinningHorizontal", "2") + feature("Width", "640")),
              refused(3, "Width", "640"));
    EXPECT_EQ(complaint(feature("ExposureTime", "100000") + feature("AcquisitionFrameRate", "60")),
              refused(3, "AcquisitionFrameRate", "60"));
    EXPECT_EQ(complaint(feature("PixelFormat", "Mono12p") + feature("Width", "322")),
              refused(3, "Width", "322"));
    EXPECT_EQ(complaint(feature("PixelFormat", "Mono13")), refused(2, "PixelFormat", "Mono13"));
    EXPECT_EQ(complaint(feature("Width", "wide")), refused(2, "Width", "wide"));
    EXPECT_EQ(complaint(feature("SensorWidth", "800")), refused(2, "SensorWidth", "800"));
    EXPECT_EQ(
        complaint(feature("Height", "240") + "<omit name='Height'/>\n" + "<omit name='Hight'/>\n"),
        "FILE:4: camera A: there is no feature \"Hight\" to omit");
    EXPECT_EQ(Complaint("<PxnC><camera id='A' kind='serial'><port number='2'/>\n"
                        "<port number='2' present='false'/></camera></PxnC>"),
              "FILE:2: port 2 is given twice");
}

} // namespace
} // namespace simulator_tests
