// touched_buffers_test.cpp - no frame waits for the system to find memory
#include "tests/module/grabber_fixture.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

namespace {

class TouchedBuffers : public GrabberFixture {};

// Whether each whole page of a block has memory behind it.
bool IsResident(void* block, std::size_t size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t begin = (address + page - 1) / page * page;
    const std::size_t pages = (address + size - begin) / page;
    std::vector<unsigned char> resident(pages);
    EXPECT_GT(pages, 0u);
    EXPECT_EQ(mincore(reinterpret_cast<void*>(begin), pages * page, resident.data()), 0);
    return std::all_of(resident.begin(), resident.end(),
                       [](unsigned char state) { return (state & 1u) != 0; });
}

TEST_F(TouchedBuffers, HaveTheirMemoryBeforeTheFirstFrame) {
    Open();
    Camera()["Width"].intValue = 1000;
    Camera()["Height"].intValue = 1000;
    Camera()["PixelFormat"].text = "Mono12p";
    Camera()["PayloadSize"].intValue = 1500000;
    ASSERT_EQ(Grabber().PrepareFrameBuffers(2), MV_OK);
    EXPECT_TRUE(IsResident(Grabber().GetFrameBuffer(0), 2000000));
    EXPECT_TRUE(IsResident(Grabber().GetFrameBuffer(1), 2000000));
    ASSERT_EQ(Grabber().Snap(1), MV_OK);
    EXPECT_TRUE(sdk.Deliver(1, 0, 1, 0));
}

TEST_F(TouchedBuffers, KeepTheImageWhenTheyArePreparedAgain) {
    Open();
    Camera()["PixelFormat"].text = "Mono12p";
    Camera()["PayloadSize"].intValue = 640 * 480 * 3 / 2;
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    std::fill_n(static_cast<std::uint8_t*>(Grabber().GetFrameBuffer(0)), 640 * 480 * 2,
                std::uint8_t{7});
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    const auto* const image = static_cast<const std::uint8_t*>(Grabber().GetFrameBuffer(0));
    EXPECT_EQ(std::count(image, image + 640 * 480 * 2, 7), 640 * 480 * 2);
}

} // namespace
