// frame_record_test.cpp - one acquisition buffer
#include "imaging/frame_record.h"

#include "grabber/mode_layout.h"
#include "tests/module/grabber_fixture.h"

using namespace pyxen;

namespace {

class FrameRecords : public GrabberFixture {
protected:
    ConversionHelpers alone;

    void SetUp() override {
        GrabberFixture::SetUp();
        Open();
        Camera()["Width"].intValue = 16;
        Camera()["Height"].intValue = 4;
    }
    CPyxenGrabber* Owner() { return &Grabber(); }
    bool Allocate(FrameRecord& record) {
        ModeLayout layout(
            static_cast<CMivoraGfxModeKVNPyxen&>(*Grabber().GetActCamera()->GetActGfxMode()));
        return record.Allocate(layout);
    }
    void Format(const char* name, int64_t payload) {
        Camera()["PixelFormat"].text = name;
        Camera()["PayloadSize"].intValue = payload;
    }
};

TEST_F(FrameRecords, KnowWhoTheyAreAndHoldNothingAtFirst) {
    FrameRecord record(Owner(), 7);
    EXPECT_EQ(record.Frame()->context[0], Owner());
    EXPECT_EQ(record.Frame()->context[1], &record);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(record.Frame()->context[2]), 7u);
    EXPECT_EQ(record.Frame()->buffer, nullptr);
    EXPECT_EQ(record.Frame()->bufferSize, 0u);
    EXPECT_EQ(static_cast<void*>(record.Frame()), &record);
    EXPECT_EQ(record.GetHostBuffer(), nullptr);
    EXPECT_EQ(record.GetHostBufferSize(), 0u);
    EXPECT_FALSE(record.Convert(alone));
}

TEST_F(FrameRecords, NeedAModeAndAKnownFormat) {
    FrameRecord record(Owner(), 0);
    CMivoraGfxModeKVNPyxen without(nullptr);
    ModeLayout nothing(without);
    EXPECT_FALSE(record.Allocate(nothing));
    Format("Mono9", 64);
    EXPECT_FALSE(Allocate(record));
}

TEST_F(FrameRecords, LetTheSdkFillADirectImageInPlace) {
    FrameRecord record(Owner(), 0);
    Format("Mono12", 128);
    ASSERT_TRUE(Allocate(record));
    EXPECT_EQ(record.GetHostBufferSize(), 128u);
    EXPECT_EQ(record.Frame()->buffer, record.GetHostBuffer());
    EXPECT_EQ(record.Frame()->bufferSize, 128u);
    EXPECT_FALSE(record.Convert(alone));
}

TEST_F(FrameRecords, KeepAConvertedImageApart) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 100);
    ASSERT_TRUE(Allocate(record));
    EXPECT_EQ(record.GetHostBufferSize(), 128u);
    EXPECT_NE(record.Frame()->buffer, record.GetHostBuffer());
    EXPECT_EQ(record.Frame()->bufferSize, 100u);
}

TEST_F(FrameRecords, PreferTheImageSizeToThePayloadSize) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 100);
    Camera().Put(scripted::IntFeature("ImageSize", 96, 0, 1000));
    ASSERT_TRUE(Allocate(record));
    EXPECT_EQ(record.Frame()->bufferSize, 96u);
}

TEST_F(FrameRecords, ConvertLineByLineWhereLinesArePadded) {
    Camera()["Width"].intValue = 3; // 36 bits, padded to 5 bytes
    Camera()["Height"].intValue = 2;
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 10);
    ASSERT_TRUE(Allocate(record));
    const uint8_t raw[10] = {0x01, 0x20, 0x00, 0x03, 0x00, 0x04, 0x50, 0x00, 0x06, 0x00};
    std::copy(std::begin(raw), std::end(raw), static_cast<uint8_t*>(record.Frame()->buffer));
    EXPECT_TRUE(record.Convert(alone));
    const auto* const pixels = static_cast<const uint16_t*>(record.GetHostBuffer());
    EXPECT_EQ(std::vector<uint16_t>(pixels, pixels + 6), (std::vector<uint16_t>{1, 2, 3, 4, 5, 6}));
}

TEST_F(FrameRecords, ConvertInOneGoWhereLinesAreNot) {
    Camera()["Width"].intValue = 2;
    Camera()["Height"].intValue = 2;
    FrameRecord record(Owner(), 0);
    Format("YUV422_8", 8);
    ASSERT_TRUE(Allocate(record));
    EXPECT_EQ(record.GetHostBufferSize(), 12u);
    const uint8_t raw[8] = {128, 255, 128, 0, 128, 16, 128, 200};
    std::copy(std::begin(raw), std::end(raw), static_cast<uint8_t*>(record.Frame()->buffer));
    EXPECT_TRUE(record.Convert(alone));
    uint8_t expected[12] = {};
    ConvertYUV422(raw, expected, 4);
    const auto* const pixels = static_cast<const uint8_t*>(record.GetHostBuffer());
    EXPECT_EQ(std::vector<uint8_t>(pixels, pixels + 12),
              std::vector<uint8_t>(expected, expected + 12));
}

TEST_F(FrameRecords, FreeTheRawMemoryWhenTheFormatBecomesDirect) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 96);
    ASSERT_TRUE(Allocate(record));
    Format("Mono8", 64);
    ASSERT_TRUE(Allocate(record));
    EXPECT_EQ(record.Frame()->buffer, record.GetHostBuffer());
    EXPECT_EQ(record.Frame()->bufferSize, 64u);
    EXPECT_FALSE(record.Convert(alone));
    Format("Mono12p", 96);
    ASSERT_TRUE(Allocate(record));
    EXPECT_NE(record.Frame()->buffer, record.GetHostBuffer());
}

TEST_F(FrameRecords, HaveNoRawMemoryWithoutPayload) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 0);
    ASSERT_TRUE(Allocate(record));
    EXPECT_EQ(record.Frame()->buffer, nullptr);
    EXPECT_EQ(record.Frame()->bufferSize, 0u);
    EXPECT_FALSE(record.Convert(alone));
}

TEST_F(FrameRecords, ConvertACompleteImageThoughThePayloadIsTooSmall) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 10);
    ASSERT_TRUE(Allocate(record));
    EXPECT_EQ(record.Frame()->bufferSize, 10u);
    std::fill_n(static_cast<uint8_t*>(record.Frame()->buffer), 96, uint8_t{0});
    EXPECT_TRUE(record.Convert(alone));
}

TEST_F(FrameRecords, RefuseADirectImageThatTheSdkCannotTell) {
    FrameRecord record(Owner(), 0);
    Camera()["Width"].intValue = 65536;
    Camera()["Height"].intValue = 65536;
    EXPECT_FALSE(Allocate(record));
}

TEST_F(FrameRecords, RefuseAPayloadThatTheSdkCannotTell) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", int64_t{1} << 32);
    EXPECT_FALSE(Allocate(record));
}

TEST_F(FrameRecords, RefuseAnImageThatGrowsWhileItIsAskedFor) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 96);
    int asked = 0;
    sdk.OnCall("PxnFeatureIntGet", [&] {
        // Width and height for the image's size, the two payload sizes, then the width once more.
        if (++asked == 5) {
            sdk.Edit([](scripted::Model& model) { model.cameras[0]["Width"].intValue = 640; });
        }
    });
    EXPECT_FALSE(Allocate(record));
}

TEST_F(FrameRecords, TakeADirectImageThatGrowsWhileItIsAskedForAtItsFirstSize) {
    FrameRecord record(Owner(), 0);
    Format("Mono8", 64);
    int asked = 0;
    sdk.OnCall("PxnFeatureIntGet", [&] {
        if (++asked == 3) {
            sdk.Edit([](scripted::Model& model) { model.cameras[0]["Width"].intValue = 640; });
        }
    });
    EXPECT_TRUE(Allocate(record));
    EXPECT_EQ(record.GetHostBufferSize(), 64u);
    EXPECT_EQ(record.Frame()->bufferSize, 64u);
}

TEST_F(FrameRecords, ConvertNothingOnceAllocatingHasFailed) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 96);
    ASSERT_TRUE(Allocate(record));
    ASSERT_TRUE(record.Convert(alone));
    Format("Mono12p", int64_t{1} << 32);
    ASSERT_FALSE(Allocate(record));
    EXPECT_FALSE(record.Convert(alone));
    Format("Mono12p", 96);
    ASSERT_TRUE(Allocate(record));
    EXPECT_TRUE(record.Convert(alone));
}

TEST_F(FrameRecords, ConvertNothingWithoutAHostImage) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 96);
    Camera()["Height"].intValue = 0;
    ASSERT_TRUE(Allocate(record));
    EXPECT_NE(record.Frame()->buffer, nullptr);
    EXPECT_EQ(record.GetHostBuffer(), nullptr);
    EXPECT_FALSE(record.Convert(alone));
}

TEST_F(FrameRecords, RefuseAnImageWhoseSizeOverflows) {
    FrameRecord record(Owner(), 0);
    Format("Mono12p", 96);
    Camera()["Width"].intValue = 0xFFFFFFFF;
    Camera()["Height"].intValue = 0xFFFFFFFF;
    EXPECT_FALSE(Allocate(record));
}

TEST_F(FrameRecords, RefuseAnImageThatGrowsUntilItsSizeOverflows) {
    FrameRecord record(Owner(), 0);
    Format("Mono12Packed", 96);
    int asked = 0;
    sdk.OnCall("PxnFeatureIntGet", [&] {
        // Width and height for the image's size, the two payload sizes, then both once more.
        if (++asked == 5) {
            sdk.Edit([](scripted::Model& model) {
                model.cameras[0]["Width"].intValue = 0x80000000;
                model.cameras[0]["Height"].intValue = 0x80000000;
            });
        }
    });
    ASSERT_FALSE(Allocate(record));
    EXPECT_EQ(record.GetHostBuffer(), nullptr);
    EXPECT_FALSE(record.Convert(alone));
}

} // namespace
