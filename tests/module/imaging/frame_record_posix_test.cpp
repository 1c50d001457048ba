// frame_record_posix_test.cpp - what becomes of a frame record's memory
//
// The sanitizers' allocators tell what is allocated; the suite always runs with one of them.
#if defined(MIVORA_SANITIZED)

#include "grabber/mode_layout.h"
#include "tests/module/grabber_fixture.h"
#include "tests/module/memory_limit_posix.h"

// Not every compiler brings the header that declares it.
extern "C" int __sanitizer_get_ownership(const volatile void* address);

using namespace pyxen;

namespace {

class FrameMemory : public GrabberFixture {
protected:
    void SetUp() override {
        GrabberFixture::SetUp();
        Open();
    }
    bool Allocate(const char* format, int64_t width, int64_t height) {
        Camera()["PixelFormat"].text = format;
        Camera()["Width"].intValue = width;
        Camera()["Height"].intValue = height;
        ModeLayout layout(
            static_cast<CMivoraGfxModeKVNPyxen&>(*Grabber().GetActCamera()->GetActGfxMode()));
        return record.Allocate(layout);
    }

    // Small blocks might be given to others as soon as they are free.
    static constexpr int64_t kSide = 1024;
    FrameRecord record{static_cast<CPyxenGrabber*>(&Grabber()), 0};
};

TEST_F(FrameMemory, TheRawImageIsFreedWhenTheFormatBecomesDirect) {
    ASSERT_TRUE(Allocate("Mono12p", kSide, kSide));
    const void* const raw = record.Frame()->buffer;
    EXPECT_NE(__sanitizer_get_ownership(raw), 0);
    ASSERT_TRUE(Allocate("Mono8", kSide, kSide));
    EXPECT_EQ(__sanitizer_get_ownership(raw), 0);
}

TEST_F(FrameMemory, AHostImageOfSizeZeroIsFreed) {
    ASSERT_TRUE(Allocate("Mono8", kSide, kSide));
    const void* const host = record.GetHostBuffer();
    EXPECT_NE(__sanitizer_get_ownership(host), 0);
    ASSERT_TRUE(Allocate("Mono8", kSide, 0));
    EXPECT_EQ(__sanitizer_get_ownership(host), 0);
}

TEST_F(FrameMemory, EveryImageMayBeTooLarge) {
    ASSERT_TRUE(Allocate("Mono12p", 16, 4));
    const MemoryLimit limit(256);
    EXPECT_FALSE(Allocate("Mono12p", 1 << 16, 1 << 13)); // the raw one: 768 MiB
    EXPECT_FALSE(Allocate("Mono12p", 1 << 16, 2000));    // the host's: 250 MiB beside 187
    ConversionHelpers alone;
    EXPECT_FALSE(record.Convert(alone));               // it would run past the host's memory
    EXPECT_FALSE(Allocate("Mono8", 1 << 16, 1 << 13)); // the only one: 512 MiB
    EXPECT_TRUE(Allocate("Mono8", 16, 4));
}

} // namespace

#endif
