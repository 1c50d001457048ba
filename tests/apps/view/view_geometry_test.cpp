// view_geometry_test.cpp - tests of zoom and position of an image
#include "apps/view/view_geometry.h"

#include <gtest/gtest.h>

namespace {

ViewGeometry Of(std::uint32_t imageWidth, std::uint32_t imageHeight, int clientWidth,
                int clientHeight) {
    ViewGeometry geometry;
    geometry.SetClientSize(clientWidth, clientHeight);
    geometry.SetImageSize(imageWidth, imageHeight);
    return geometry;
}

TEST(ViewGeometry, FitsAWideImageByItsWidth) {
    const ViewGeometry geometry = Of(800, 200, 400, 300);
    EXPECT_TRUE(geometry.IsFit());
    EXPECT_DOUBLE_EQ(geometry.Factor(), 0.5);
    EXPECT_EQ(geometry.Place(), (ClientRect{0, 100, 400, 100}));
}

TEST(ViewGeometry, FitsATallImageByItsHeight) {
    const ViewGeometry geometry = Of(100, 300, 400, 600);
    EXPECT_DOUBLE_EQ(geometry.Factor(), 2);
    EXPECT_EQ(geometry.Place(), (ClientRect{100, 0, 200, 600}));
}

TEST(ViewGeometry, DoesNotEnlargeWithoutLimit) {
    EXPECT_DOUBLE_EQ(Of(2, 2, 400, 300).Factor(), 32);
}

TEST(ViewGeometry, RefitsWhenTheWindowOrTheImageChanges) {
    ViewGeometry geometry = Of(800, 200, 400, 300);
    geometry.SetClientSize(800, 300);
    EXPECT_DOUBLE_EQ(geometry.Factor(), 1);
    geometry.SetImageSize(400, 600);
    EXPECT_DOUBLE_EQ(geometry.Factor(), 0.5);
}

TEST(ViewGeometry, CentresAnImageThatIsSmallerThanTheWindow) {
    ViewGeometry geometry = Of(100, 50, 400, 300);
    geometry.SetFactor(1);
    EXPECT_FALSE(geometry.IsFit());
    EXPECT_EQ(geometry.Place(), (ClientRect{150, 125, 100, 50}));
    geometry.Pan(40, 40);
    EXPECT_EQ(geometry.Place(), (ClientRect{150, 125, 100, 50}));
}

TEST(ViewGeometry, KeepsThePixelAtTheAnchor) {
    ViewGeometry geometry = Of(1000, 1000, 400, 300);
    geometry.SetFactor(2);
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    ASSERT_TRUE(geometry.PixelAt(37, 211, x, y));
    for (const double factor : {3.0, 8.0, 32.0, 2.0}) {
        geometry.SetFactor(factor, 37, 211);
        std::uint32_t zoomedX = 0;
        std::uint32_t zoomedY = 0;
        ASSERT_TRUE(geometry.PixelAt(37, 211, zoomedX, zoomedY));
        EXPECT_EQ(zoomedX, x) << factor;
        EXPECT_EQ(zoomedY, y) << factor;
    }
}

TEST(ViewGeometry, LeavesNoRoomBesideALargeImage) {
    ViewGeometry geometry = Of(1000, 1000, 400, 300);
    geometry.SetFactor(1);
    geometry.Pan(5000, 5000);
    EXPECT_EQ(geometry.Place(), (ClientRect{0, 0, 1000, 1000}));
    geometry.Pan(-5000, -5000);
    EXPECT_EQ(geometry.Place(), (ClientRect{-600, -700, 1000, 1000}));
}

TEST(ViewGeometry, StepsThroughTheUsualFactors) {
    ViewGeometry geometry = Of(640, 480, 512, 384);
    ASSERT_DOUBLE_EQ(geometry.Factor(), 0.8);
    geometry.Step(1);
    EXPECT_DOUBLE_EQ(geometry.Factor(), 1);
    geometry.Step(2);
    EXPECT_DOUBLE_EQ(geometry.Factor(), 2);
    geometry.Step(-3);
    EXPECT_DOUBLE_EQ(geometry.Factor(), 2.0 / 3);
    geometry.Step(100);
    EXPECT_DOUBLE_EQ(geometry.Factor(), 32);
    geometry.Step(-100);
    EXPECT_DOUBLE_EQ(geometry.Factor(), 1.0 / 32);
}

TEST(ViewGeometry, FindsThePixelAtAPosition) {
    ViewGeometry geometry = Of(100, 50, 400, 300);
    geometry.SetFactor(2);
    std::uint32_t x = 99;
    std::uint32_t y = 99;
    ASSERT_TRUE(geometry.PixelAt(100, 100, x, y));
    EXPECT_EQ(x, 0u);
    EXPECT_EQ(y, 0u);
    ASSERT_TRUE(geometry.PixelAt(299, 199, x, y));
    EXPECT_EQ(x, 99u);
    EXPECT_EQ(y, 49u);
    EXPECT_FALSE(geometry.PixelAt(99, 100, x, y));
    EXPECT_FALSE(geometry.PixelAt(300, 199, x, y));
    EXPECT_FALSE(geometry.PixelAt(299, 200, x, y));
}

TEST(ViewGeometry, ShowsWholePixelsThatCoverTheWindow) {
    ViewGeometry geometry = Of(1000, 1000, 100, 90);
    geometry.SetFactor(8, 0, 0);
    geometry.Pan(-803, -1605);
    const VisiblePart part = geometry.Visible();
    const ClientRect place = geometry.Place();
    EXPECT_LE(part.client.left, 0);
    EXPECT_LE(part.client.top, 0);
    EXPECT_GE(part.client.left + part.client.width, 100);
    EXPECT_GE(part.client.top + part.client.height, 90);
    EXPECT_EQ(part.client.width, static_cast<int>(part.image.width) * 8);
    EXPECT_EQ(part.client.left, place.left + static_cast<int>(part.image.left) * 8);
    EXPECT_LE(part.image.width, 14u);
    EXPECT_LE(part.image.height, 13u);
}

TEST(ViewGeometry, ShowsTheWholeOfAFittedImage) {
    const VisiblePart part = Of(640, 480, 333, 222).Visible();
    EXPECT_EQ(part.image, (ImageRect{0, 0, 640, 480}));
}

TEST(ViewGeometry, HasNothingToShowWithoutImageOrRoom) {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    EXPECT_TRUE(Of(0, 0, 400, 300).IsEmpty());
    EXPECT_FALSE(Of(0, 0, 400, 300).PixelAt(1, 1, x, y));
    EXPECT_EQ(Of(10, 10, 0, 0).Visible().image, (ImageRect{0, 0, 0, 0}));
}

} // namespace
