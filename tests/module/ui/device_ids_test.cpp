#include "ui/device_ids.h"

#include <gtest/gtest.h>

using namespace pyxen;

namespace {

TEST(DeviceIds, AreNumberedInTheOrderOfAdding) {
    DeviceIds ids;
    EXPECT_EQ(ids.Find("a"), DeviceIds::kNone);
    EXPECT_EQ(ids.At(0), nullptr);
    EXPECT_EQ(ids.Add("a"), 0);
    EXPECT_EQ(ids.Add("b"), 1);
    EXPECT_EQ(ids.Find("a"), 0);
    EXPECT_EQ(ids.Find("b"), 1);
    ASSERT_NE(ids.At(1), nullptr);
    EXPECT_EQ(*ids.At(1), "b");
    EXPECT_EQ(ids.At(2), nullptr);
    EXPECT_EQ(ids.At(-1), nullptr);
}

TEST(DeviceIds, AreComparedAsWholeTexts) {
    DeviceIds ids;
    ids.Add("camera-10");
    for (const char* other : {"camera-1", "camera-100", "Camera-10", ""}) {
        EXPECT_EQ(ids.Find(other), DeviceIds::kNone) << other;
    }
}

TEST(DeviceIds, CloseTheGapOfARemovedOne) {
    DeviceIds ids;
    for (const char* id : {"a", "b", "c", "d"}) {
        ids.Add(id);
    }
    ids.Remove(1);
    EXPECT_EQ(ids.Find("a"), 0);
    EXPECT_EQ(ids.Find("b"), DeviceIds::kNone);
    EXPECT_EQ(ids.Find("c"), 1);
    EXPECT_EQ(ids.Find("d"), 2);
    EXPECT_EQ(ids.Add("b"), 3);
}

TEST(DeviceIds, KeepAllWhenNoneOfThatNumberIsThere) {
    DeviceIds ids;
    ids.Add("a");
    ids.Remove(1);
    ids.Remove(DeviceIds::kNone);
    EXPECT_EQ(ids.Find("a"), 0);
}

} // namespace
