// pixel_format_test.cpp - the table of pixel formats
#include "imaging/pixel_format.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

using namespace pyxen;

namespace {

struct FormatRow {
    const char* name;
    std::uint32_t code;
    unsigned components;
    unsigned allocatedBits;
    unsigned bits;
    int colorCoding;
    unsigned cfaX;
    unsigned cfaY;
    const char* conversion;
};

constexpr FormatRow kRows[] = {
    {"Mono8", 0x01080001, 1, 8, 8, 0, 0, 0, nullptr},
    {"Mono10", 0x01100003, 1, 16, 10, 0, 0, 0, nullptr},
    {"Mono10p", 0x010A0046, 1, 16, 10, 0, 0, 0, "Unpack10p"},
    {"Mono10Packed", 0x010C0004, 1, 16, 10, 0, 0, 0, "Unpack10Packed"},
    {"Mono12", 0x01100005, 1, 16, 12, 0, 0, 0, nullptr},
    {"Mono12p", 0x010C0047, 1, 16, 12, 0, 0, 0, "Unpack12p"},
    {"Mono12Packed", 0x010C0006, 1, 16, 12, 0, 0, 0, "Unpack12Packed"},
    {"Mono14", 0x01100025, 1, 16, 14, 0, 0, 0, nullptr},
    {"Mono16", 0x01100007, 1, 16, 16, 0, 0, 0, nullptr},
    {"BayerGR8", 0x01080008, 1, 8, 8, 1, 0, 0, nullptr},
    {"BayerRG8", 0x01080009, 1, 8, 8, 1, 1, 0, nullptr},
    {"BayerGB8", 0x0108000A, 1, 8, 8, 1, 1, 1, nullptr},
    {"BayerBG8", 0x0108000B, 1, 8, 8, 1, 0, 1, nullptr},
    {"BayerGR10", 0x0110000C, 1, 16, 10, 1, 0, 0, nullptr},
    {"BayerRG10", 0x0110000D, 1, 16, 10, 1, 1, 0, nullptr},
    {"BayerGB10", 0x0110000E, 1, 16, 10, 1, 1, 1, nullptr},
    {"BayerBG10", 0x0110000F, 1, 16, 10, 1, 0, 1, nullptr},
    {"BayerGR10p", 0x010A0056, 1, 16, 10, 1, 0, 0, "Unpack10p"},
    {"BayerRG10p", 0x010A0058, 1, 16, 10, 1, 1, 0, "Unpack10p"},
    {"BayerGB10p", 0x010A0054, 1, 16, 10, 1, 1, 1, "Unpack10p"},
    {"BayerBG10p", 0x010A0052, 1, 16, 10, 1, 0, 1, "Unpack10p"},
    {"BayerGR10Packed", 0x010C0026, 1, 16, 10, 1, 0, 0, "Unpack10Packed"},
    {"BayerRG10Packed", 0x010C0027, 1, 16, 10, 1, 1, 0, "Unpack10Packed"},
    {"BayerGB10Packed", 0x010C0028, 1, 16, 10, 1, 1, 1, "Unpack10Packed"},
    {"BayerBG10Packed", 0x010C0029, 1, 16, 10, 1, 0, 1, "Unpack10Packed"},
    {"BayerGR12", 0x01100010, 1, 16, 12, 1, 0, 0, nullptr},
    {"BayerRG12", 0x01100011, 1, 16, 12, 1, 1, 0, nullptr},
    {"BayerGB12", 0x01100012, 1, 16, 12, 1, 1, 1, nullptr},
    {"BayerBG12", 0x01100013, 1, 16, 12, 1, 0, 1, nullptr},
    {"BayerGR12p", 0x010C0057, 1, 16, 12, 1, 0, 0, "Unpack12p"},
    {"BayerRG12p", 0x010C0059, 1, 16, 12, 1, 1, 0, "Unpack12p"},
    {"BayerGB12p", 0x010C0055, 1, 16, 12, 1, 1, 1, "Unpack12p"},
    {"BayerBG12p", 0x010C0053, 1, 16, 12, 1, 0, 1, "Unpack12p"},
    {"BayerGR12Packed", 0x010C002A, 1, 16, 12, 1, 0, 0, "Unpack12Packed"},
    {"BayerRG12Packed", 0x010C002B, 1, 16, 12, 1, 1, 0, "Unpack12Packed"},
    {"BayerGB12Packed", 0x010C002C, 1, 16, 12, 1, 1, 1, "Unpack12Packed"},
    {"BayerBG12Packed", 0x010C002D, 1, 16, 12, 1, 0, 1, "Unpack12Packed"},
    {"BayerGR16", 0x0110002E, 1, 16, 16, 1, 0, 0, nullptr},
    {"BayerRG16", 0x0110002F, 1, 16, 16, 1, 1, 0, nullptr},
    {"BayerGB16", 0x01100030, 1, 16, 16, 1, 1, 1, nullptr},
    {"BayerBG16", 0x01100031, 1, 16, 16, 1, 0, 1, nullptr},
    {"Rgb8Packed", 0x02180014, 3, 8, 8, 3, 0, 0, nullptr},
    {"Bgr8Packed", 0x02180015, 3, 8, 8, 8, 0, 0, nullptr},
    {"Argb8Packed", 0x00000000, 4, 8, 8, 4, 0, 0, nullptr},
    {"Rgba8Packed", 0x02200016, 4, 8, 8, 7, 0, 0, nullptr},
    {"Bgra8Packed", 0x02200017, 4, 8, 8, 12, 0, 0, nullptr},
    {"RGB8", 0x02180014, 3, 8, 8, 3, 0, 0, nullptr},
    {"RGBa8", 0x02200016, 4, 8, 8, 7, 0, 0, nullptr},
    {"RGB10", 0x02300018, 3, 16, 10, 3, 0, 0, nullptr},
    {"RGBa10", 0x0240005F, 4, 16, 10, 7, 0, 0, nullptr},
    {"RGB10p", 0x021E005C, 3, 16, 10, 3, 0, 0, "Unpack10p"},
    {"RGBa10p", 0x02280060, 4, 16, 10, 7, 0, 0, "Unpack10p"},
    {"RGB12", 0x0230001A, 3, 16, 12, 3, 0, 0, nullptr},
    {"RGBa12", 0x02400061, 4, 16, 12, 7, 0, 0, nullptr},
    {"RGB12p", 0x0224005D, 3, 16, 12, 3, 0, 0, "Unpack12p"},
    {"RGBa12p", 0x02300062, 4, 16, 12, 7, 0, 0, "Unpack12p"},
    {"RGB14", 0x0230005E, 3, 16, 14, 3, 0, 0, nullptr},
    {"RGB16", 0x02300033, 3, 16, 16, 3, 0, 0, nullptr},
    {"BGR8", 0x02180015, 3, 8, 8, 8, 0, 0, nullptr},
    {"BGRa8", 0x02200017, 4, 8, 8, 12, 0, 0, nullptr},
    {"BGR10", 0x02300019, 3, 16, 10, 8, 0, 0, nullptr},
    {"BGRa10", 0x0240004C, 4, 16, 10, 12, 0, 0, nullptr},
    {"BGR10p", 0x021E0048, 3, 16, 10, 8, 0, 0, "Unpack10p"},
    {"BGRa10p", 0x0228004D, 4, 16, 10, 12, 0, 0, "Unpack10p"},
    {"BGR12", 0x0230001B, 3, 16, 12, 8, 0, 0, nullptr},
    {"BGRa12", 0x0240004E, 4, 16, 12, 12, 0, 0, nullptr},
    {"BGR12p", 0x02240049, 3, 16, 12, 8, 0, 0, "Unpack12p"},
    {"BGRa12p", 0x0230004F, 4, 16, 12, 12, 0, 0, "Unpack12p"},
    {"BGR14", 0x0230004A, 3, 16, 14, 8, 0, 0, nullptr},
    {"BGR16", 0x0230004B, 3, 16, 16, 8, 0, 0, nullptr},
    {"YUV444", 0x02180020, 3, 8, 8, 3, 0, 0, "ConvertYUV444"},
    {"YUV444_8", 0x02180020, 3, 8, 8, 3, 0, 0, "ConvertYUV444"},
    {"YUV422", 0x0210001F, 3, 8, 8, 3, 0, 0, "ConvertYUV422"},
    {"YUV422_8", 0x0210001F, 3, 8, 8, 3, 0, 0, "ConvertYUV422"},
    {"YUV411", 0x020C001E, 3, 8, 8, 3, 0, 0, "ConvertYUV411"},
    {"YUV411_8", 0x020C001E, 3, 8, 8, 3, 0, 0, "ConvertYUV411"},
};

const std::map<std::string, ConvertFunction> kConversions = {
    {"Unpack10p", Unpack10p},           {"Unpack12p", Unpack12p},
    {"Unpack10Packed", Unpack10Packed}, {"Unpack12Packed", Unpack12Packed},
    {"ConvertYUV422", ConvertYUV422},   {"ConvertYUV444", ConvertYUV444},
    {"ConvertYUV411", ConvertYUV411},
};

TEST(PixelFormatTable, HoldsTheSeventySixFormatsInOrder) {
    ASSERT_EQ(std::size(kRows), 76u);
    ASSERT_EQ(PixelFormatTable().size(), std::size(kRows));
    for (std::size_t index = 0; index < std::size(kRows); ++index) {
        const FormatRow& row = kRows[index];
        const PixelFormat& format = PixelFormatTable()[index];
        EXPECT_STREQ(format.name, row.name);
        EXPECT_EQ(format.code, row.code) << row.name;
        EXPECT_EQ(format.components, row.components) << row.name;
        EXPECT_EQ(format.allocatedBits, row.allocatedBits) << row.name;
        EXPECT_EQ(format.bits, row.bits) << row.name;
        EXPECT_EQ(static_cast<int>(format.colorCoding), row.colorCoding) << row.name;
        EXPECT_EQ(format.cfaX, row.cfaX) << row.name;
        EXPECT_EQ(format.cfaY, row.cfaY) << row.name;
        EXPECT_STREQ(format.conversionName, row.conversion) << row.name;
        EXPECT_EQ(format.convert, row.conversion ? kConversions.at(row.conversion) : nullptr)
            << row.name;
    }
}

TEST(PixelFormatTable, OnlyTheFormatsOfPaddedLinesHaveARowAddress) {
    for (const PixelFormat& format : PixelFormatTable()) {
        RowAddressFunction expected = nullptr;
        if (format.convert == Unpack10p) {
            expected = RowAddress10p;
        } else if (format.convert == Unpack12p) {
            expected = RowAddress12p;
        }
        EXPECT_EQ(format.rowAddress, expected) << format.name;
    }
}

TEST(PixelFormatSearch, FindsTheFirstOfACode) {
    std::map<std::uint32_t, const PixelFormat*> first;
    for (const PixelFormat& format : PixelFormatTable()) {
        if (format.code != 0) {
            first.emplace(format.code, &format);
        }
    }
    EXPECT_EQ(first.size(), 76u - 1 - 7);
    for (const auto& [code, format] : first) {
        EXPECT_EQ(FindPixelFormatByCode(code), format) << format->name;
    }
    EXPECT_STREQ(FindPixelFormatByCode(0x02180014)->name, "Rgb8Packed");
    EXPECT_STREQ(FindPixelFormatByCode(0x020C001E)->name, "YUV411");
}

TEST(PixelFormatSearch, FindsNoUnknownCode) {
    EXPECT_EQ(FindPixelFormatByCode(0x01080002), nullptr);
    EXPECT_EQ(FindPixelFormatByCode(0xFFFFFFFF), nullptr);
}

TEST(PixelFormatSearch, FindsNothingByCodeZero) {
    EXPECT_EQ(FindPixelFormatByCode(0), nullptr);
    EXPECT_STREQ(FindPixelFormatByName("Argb8Packed")->name, "Argb8Packed");
}

TEST(PixelFormatSearch, FindsEveryNameWithoutRegardToCase) {
    for (const PixelFormat& format : PixelFormatTable()) {
        EXPECT_EQ(FindPixelFormatByName(format.name), &format);
    }
    EXPECT_STREQ(FindPixelFormatByName("mono12P")->name, "Mono12p");
    EXPECT_STREQ(FindPixelFormatByName("RGBA8")->name, "RGBa8");
    EXPECT_STREQ(FindPixelFormatByName("rgb8packed")->name, "Rgb8Packed");
}

TEST(PixelFormatSearch, FindsNoUnknownName) {
    EXPECT_EQ(FindPixelFormatByName("Mono"), nullptr);
    EXPECT_EQ(FindPixelFormatByName("Mono88"), nullptr);
    EXPECT_EQ(FindPixelFormatByName(""), nullptr);
    EXPECT_EQ(FindPixelFormatByName(nullptr), nullptr);
}

TEST(ImageConversion, OfLinesWithoutPixelsEndsAtOnce) {
    static unsigned calls = 0;
    PixelFormat format = *FindPixelFormatByName("Mono12p");
    format.convert = [](const void*, void*, std::uint64_t) {
        ++calls;
    };
    std::uint8_t byte = 0;
    ConvertImage(format, &byte, &byte, 0, 0xFFFFFFFF);
    EXPECT_EQ(calls, 0u);
    ConvertImage(format, &byte, &byte, 0, 0);
    EXPECT_EQ(calls, 0u);
}

} // namespace
