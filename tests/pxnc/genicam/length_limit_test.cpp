// length_limit_test.cpp - registers whose length another node names
#include "pxnc/genicam/length_limit.h"

#include "pxnc/genicam/description_check.h"
#include "pxnc/genicam/feature_tree.h"
#include "pxnc/skeleton/text_pool.h"
#include "tests/pxnc/genicam/memory_device.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace genicam_test {
namespace {

/// A register of that kind, whose length is a number in the camera's first register.
class LimitedDevice {
public:
    explicit LimitedDevice(std::uint32_t length, const std::string& kind = "Register",
                           const std::string& more = "", const std::string& link = "Length")
        : text("<RegisterDescription ModelName=\"M\" VendorName=\"V\">"
               "<Category Name=\"Root\"><pFeature>A</pFeature></Category><" +
               kind + " Name=\"A\"><Address>16</Address><pLength>" + link + "</pLength>" +
               "<AccessMode>RW</AccessMode><pPort>Device</pPort></" + kind +
               "><IntReg Name=\"Length\"><Address>0</Address><Length>4</Length>"
               "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>"
               "<Endianess>BigEndian</Endianess></IntReg><Port Name=\"Device\"/>" +
               more + "</RegisterDescription>"),
          device(MakeMemoryDevice(text, Bytes(length))) {
        genicam::LimitRegisterLengths(Description());
        EXPECT_EQ(genicam::CheckDescription(Description(), text), PxnErrSuccess);
        genicam::AppendDescribedFeatures(texts, Description(), features);
        EXPECT_EQ(features.size(), 1u);
    }

    ArvGc* Description() const { return arv_device_get_genicam(device.get()); }
    genicam::Feature& Feature() const { return *features.at(0); }
    std::uint32_t Length() const {
        std::uint32_t length = 77;
        EXPECT_EQ(Feature().GetRawLength(length), PxnErrSuccess);
        return length;
    }

private:
    static std::string Bytes(std::uint32_t number) {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes += static_cast<char>(number >> shift);
        }
        return bytes;
    }

    const std::string text;
    const genicam::ObjectOwner<ArvDevice> device;
    skeleton::TextPool texts;
    std::vector<std::unique_ptr<genicam::Feature>> features;
};

TEST(LengthLimit, LeavesLengthsThatMemoryHolds) {
    EXPECT_EQ(LimitedDevice(8).Length(), 8u);
    EXPECT_EQ(LimitedDevice(0).Length(), 0u);
    EXPECT_EQ(LimitedDevice(0x1000000).Length(), 0x1000000u);
    std::vector<char> bytes;
    EXPECT_EQ(LimitedDevice(8).Feature().GetRaw(bytes), PxnErrSuccess);
    EXPECT_EQ(bytes, (std::vector<char>{0, 0, 0, 8, 0, 0, 0, 8}));
}

TEST(LengthLimit, TakesAnyOtherForNone) {
    for (const std::uint32_t length : {0x1000001u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(LimitedDevice(length).Length(), 0u) << length;
    }
}

TEST(LengthLimit, HoldsWhenTheCameraChangesTheLength) {
    const LimitedDevice device(8);
    EXPECT_EQ(device.Length(), 8u);
    ArvGcNode* const length = arv_gc_get_node(device.Description(), "Length");
    arv_gc_integer_set_value(ARV_GC_INTEGER(length), 0x7FFFFFFF, nullptr);
    EXPECT_EQ(device.Length(), 0u);
    arv_gc_integer_set_value(ARV_GC_INTEGER(length), 4, nullptr);
    EXPECT_EQ(device.Length(), 4u);
}

TEST(LengthLimit, LetsNoReadAskForMoreMemory) {
    for (const char* const kind : {"Register", "StringReg", "IntReg", "FloatReg"}) {
        const LimitedDevice device(0x7FFFFFF0, kind);
        std::vector<char> bytes;
        std::string text;
        std::int64_t number = 0;
        double real = 0;
        device.Feature().GetRaw(bytes);
        device.Feature().GetString(text);
        device.Feature().GetInt(number);
        device.Feature().GetFloat(real);
        EXPECT_EQ(bytes.size() + text.size(), 0u) << kind;
    }
}

// The parser passes on what character references stand for as texts of their own.
TEST(LengthLimit, TakesALinkInSeveralTextsWhole) {
    EXPECT_EQ(LimitedDevice(8, "Register", "", "&#76;ength").Length(), 8u);
    EXPECT_EQ(LimitedDevice(8, "Register", "", "&#32;-1").Length(), 0u);
}

TEST(LengthLimit, IsNotLedAroundInCircles) {
    // A node with the name that the limit of a length would have.
    const LimitedDevice device(8, "Register",
                               "<Integer Name=\"Length, limited\"><pValue>Length</pValue>"
                               "</Integer>");
    EXPECT_EQ(device.Length(), 8u);
}

} // namespace
} // namespace genicam_test
