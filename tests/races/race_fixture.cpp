// race_fixture.cpp - grabbers with small, fast cameras of the simulator
#include "race_fixture.h"

#include "platform/file_system.h"

namespace {

constexpr const char* kRaceCameras = R"(<PxnC>
<camera id="A" kind="serial" sensorWidth="64" sensorHeight="64" freeRunning="true"/>
<camera id="B" kind="usb" sensorWidth="64" sensorHeight="64" freeRunning="true">
  <feature name="PixelFormat" value="BayerRG12p"/>
</camera>
</PxnC>
)";

} // namespace

void RaceFixture::SetUp() {
    directory.Write("PxnC.xml", kRaceCameras);
    std::string error;
    const std::string path =
        platform::JoinPath(platform::JoinPath(support::BuiltFile("simulator"), "Bin"),
                           platform::LibraryFileName("PxnC"));
    ASSERT_TRUE(simulator.Load(path, true, &error)) << error;
    MivoraInstallLogSink(&sink);
}

void RaceFixture::TearDown() {
    MivoraInstallLogSink(nullptr);
    TryControl("clear");
}

std::unique_ptr<CMivoraKVNPyxenClass> RaceFixture::MakeGrabber(const std::string& name) {
    auto grabber = std::make_unique<CMivoraKVNPyxenClass>(nullptr);
    EXPECT_EQ(grabber->SetGrabberIni(directory.PathOf(name + ".ini").c_str(), 0), MV_OK);
    return grabber;
}

void RaceFixture::Open(CMivoraKVNPyxenClass& grabber, std::int32_t camera) {
    ASSERT_EQ(grabber.Init(), MV_OK);
    ASSERT_EQ(grabber.SetActCameraIndex(camera), MV_OK);
    ASSERT_EQ(grabber.OpenActCamera(), MV_OK);
}

void RaceFixture::Reopen(CMivoraKVNPyxenClass& grabber, const std::string& id,
                         std::int32_t camera) {
    TryControl("access " + id + " full");
    TryControl("plug " + id);
    if (grabber.IsCameraOpen() != 0) {
        EXPECT_EQ(grabber.CloseActCamera(), MV_OK);
    }
    ASSERT_EQ(grabber.RefreshCameraList(), MV_OK);
    ASSERT_EQ(grabber.SetActCameraIndex(camera), MV_OK);
    ASSERT_EQ(grabber.OpenActCamera(), MV_OK);
}

std::string RaceFixture::Ask(const std::string& command) {
    std::string answer(1 << 16, '\0');
    EXPECT_EQ(Control(command, answer.data(), 1 << 16), 0) << command << answer.c_str();
    return answer.c_str();
}

std::int32_t RaceFixture::Control(const std::string& command, char* answer, std::uint32_t size) {
    using Function = std::int32_t (*)(const char*, char*, std::uint32_t);
    const auto control = reinterpret_cast<Function>(simulator.FindSymbol("PxnControl"));
    return control(command.c_str(), answer, size);
}
