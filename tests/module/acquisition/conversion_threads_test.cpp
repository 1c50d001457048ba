// conversion_threads_test.cpp - the threads that help the frame callback, from first to last
#include "imaging/pixel_format.h"
#include "tests/module/acquisition/acquisition_insides.h"
#include "tests/module/acquisition/snap_fixture.h"

#include <cstring>

using namespace pyxen;

namespace {

class ConversionThreads : public SnapFixture {
protected:
    static constexpr std::uint32_t kWidth = 1024;
    static constexpr std::uint32_t kHeight = 768;
    static constexpr std::size_t kImageBytes = std::size_t{kWidth} * kHeight * 3;

    void SetUp() override {
        SnapFixture::SetUp();
        ChooseFormat("YUV422_8", kWidth * kHeight * 2);
    }
    void ChooseFormat(const char* name, std::int64_t payload) {
        Camera()["Width"].intValue = kWidth;
        Camera()["Height"].intValue = kHeight;
        Camera()["PixelFormat"].text = name;
        Camera()["PayloadSize"].intValue = payload;
    }
    void OpenWith(const char* ini) {
        WriteIni(ini);
        ASSERT_EQ(Grabber().LoadGrabberConfig(), MV_OK);
        Open();
    }
    std::size_t Helpers() { return AcquisitionInsides::Helpers(Grabber()).Count(); }

    const char* const three = "[Grabber_0]\nConversionThreads=3\n";
};

TEST_F(ConversionThreads, AreOneWithoutTheKey) {
    OpenWith("");
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Helpers(), 0u);
}

TEST_F(ConversionThreads, AreMadeByPreparingAndEndWithTheCamera) {
    OpenWith(three);
    EXPECT_EQ(Helpers(), 0u);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Helpers(), 2u);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_EQ(Grabber().StopSnap(), MV_OK);
    EXPECT_EQ(Helpers(), 2u); // for the next snap
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(Helpers(), 0u);
}

TEST_F(ConversionThreads, EndWithACameraThatTheSdkRefusesToClose) {
    OpenWith(three);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    sdk.Fail("PxnCameraClose", PxnErrIO);
    Grabber().CloseActCamera();
    EXPECT_EQ(Helpers(), 0u);
}

TEST_F(ConversionThreads, EndWithTheSdk) {
    OpenWith(three);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(Helpers(), 0u);
}

TEST_F(ConversionThreads, EndWithTheGrabberWhateverItDoes) {
    OpenWith(three);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusComplete, 1));
    Destroy();
}

TEST_F(ConversionThreads, FollowTheImagesThatAreConverted) {
    OpenWith(three);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Helpers(), 2u);
    ChooseFormat("Mono8", kWidth * kHeight); // as the camera delivers it
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Helpers(), 0u);
    ChooseFormat("Mono12p", kWidth * kHeight * 3 / 2);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Helpers(), 2u);
    Camera()["Height"].intValue = 16; // too small to be worth it
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_EQ(Helpers(), 0u);
    Camera()["Height"].intValue = kHeight;
    ASSERT_EQ(Grabber().PrepareFrameBuffers(0), MV_OK);
    EXPECT_EQ(Helpers(), 0u);
}

TEST_F(ConversionThreads, ConvertEveryFrameAndLogWhatOneDoes) {
    OpenWith(three);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    for (std::uint64_t frame = 0; frame < 6; ++frame) {
        auto* const host = static_cast<std::uint8_t*>(Grabber().GetFrameBuffer(frame % 2));
        std::memset(host, 0xEE, kImageBytes);
        Forget();
        ASSERT_TRUE(sdk.Deliver(frame % 2, PxnFrameStatusComplete, frame));
        std::vector<std::uint8_t> expected(kImageBytes);
        ConvertImage(*FindPixelFormatByName("YUV422_8"), sdk.FrameOf(frame % 2)->buffer,
                     expected.data(), kWidth, kHeight);
        EXPECT_EQ(std::memcmp(host, expected.data(), kImageBytes), 0);
        const Texts log = Log();
        ASSERT_EQ(log.size(), 2u);
        EXPECT_EQ(log[1], "1 CMivoraKVNPyxenClass::FrameCallback: Image conversion done.");
    }
}

TEST_F(ConversionThreads, AreLeftAloneByAStopInsideTheCallback) {
    OpenWith(three);
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    Grabber().InstPostProcessCallBack(
        [](uint64_t, uint32_t, void* own) {
            EXPECT_EQ(static_cast<CMivoraKVNPyxenClass*>(own)->StopSnap(), MV_OK);
        },
        &Grabber());
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(Grabber().Snap(1), MV_OK);
        ASSERT_TRUE(sdk.Deliver(0, PxnFrameStatusComplete, 1));
        EXPECT_EQ(Grabber().GetAcquisitionState(), 0u);
    }
    EXPECT_EQ(Helpers(), 2u);
    Grabber().InstPostProcessCallBack(nullptr, nullptr);
}

} // namespace
