// pixel_formats.cpp - the formats the cameras can send, in their real bit layout
#include "pxnc/simulator/pixel_formats.h"

#include <cstring>

namespace pxsim {
namespace {

// clang-format off
constexpr PixelFormat kFormats[] = {
    {"Mono8", 0x01080001, Layout::kBytes, Order::kMono, 8},
    {"Mono10", 0x01100003, Layout::kWords, Order::kMono, 10},
    {"Mono10p", 0x010A0046, Layout::kLsbPacked, Order::kMono, 10},
    {"Mono10Packed", 0x010C0004, Layout::kPacked10, Order::kMono, 10},
    {"Mono12", 0x01100005, Layout::kWords, Order::kMono, 12},
    {"Mono12p", 0x010C0047, Layout::kLsbPacked, Order::kMono, 12},
    {"Mono12Packed", 0x010C0006, Layout::kPacked12, Order::kMono, 12},
    {"Mono14", 0x01100025, Layout::kWords, Order::kMono, 14},
    {"Mono16", 0x01100007, Layout::kWords, Order::kMono, 16},
    {"BayerGR8", 0x01080008, Layout::kBytes, Order::kBayerGR, 8},
    {"BayerRG8", 0x01080009, Layout::kBytes, Order::kBayerRG, 8},
    {"BayerGB8", 0x0108000A, Layout::kBytes, Order::kBayerGB, 8},
    {"BayerBG8", 0x0108000B, Layout::kBytes, Order::kBayerBG, 8},
    {"BayerGR10", 0x0110000C, Layout::kWords, Order::kBayerGR, 10},
    {"BayerRG10", 0x0110000D, Layout::kWords, Order::kBayerRG, 10},
    {"BayerGB10", 0x0110000E, Layout::kWords, Order::kBayerGB, 10},
    {"BayerBG10", 0x0110000F, Layout::kWords, Order::kBayerBG, 10},
    {"BayerGR10p", 0x010A0056, Layout::kLsbPacked, Order::kBayerGR, 10},
    {"BayerRG10p", 0x010A0058, Layout::kLsbPacked, Order::kBayerRG, 10},
    {"BayerGB10p", 0x010A0054, Layout::kLsbPacked, Order::kBayerGB, 10},
    {"BayerBG10p", 0x010A0052, Layout::kLsbPacked, Order::kBayerBG, 10},
    {"BayerGR10Packed", 0x010C0026, Layout::kPacked10, Order::kBayerGR, 10},
    {"BayerRG10Packed", 0x010C0027, Layout::kPacked10, Order::kBayerRG, 10},
    {"BayerGB10Packed", 0x010C0028, Layout::kPacked10, Order::kBayerGB, 10},
    {"BayerBG10Packed", 0x010C0029, Layout::kPacked10, Order::kBayerBG, 10},
    {"BayerGR12", 0x01100010, Layout::kWords, Order::kBayerGR, 12},
    {"BayerRG12", 0x01100011, Layout::kWords, Order::kBayerRG, 12},
    {"BayerGB12", 0x01100012, Layout::kWords, Order::kBayerGB, 12},
    {"BayerBG12", 0x01100013, Layout::kWords, Order::kBayerBG, 12},
    {"BayerGR12p", 0x010C0057, Layout::kLsbPacked, Order::kBayerGR, 12},
    {"BayerRG12p", 0x010C0059, Layout::kLsbPacked, Order::kBayerRG, 12},
    {"BayerGB12p", 0x010C0055, Layout::kLsbPacked, Order::kBayerGB, 12},
    {"BayerBG12p", 0x010C0053, Layout::kLsbPacked, Order::kBayerBG, 12},
    {"BayerGR12Packed", 0x010C002A, Layout::kPacked12, Order::kBayerGR, 12},
    {"BayerRG12Packed", 0x010C002B, Layout::kPacked12, Order::kBayerRG, 12},
    {"BayerGB12Packed", 0x010C002C, Layout::kPacked12, Order::kBayerGB, 12},
    {"BayerBG12Packed", 0x010C002D, Layout::kPacked12, Order::kBayerBG, 12},
    {"BayerGR16", 0x0110002E, Layout::kWords, Order::kBayerGR, 16},
    {"BayerRG16", 0x0110002F, Layout::kWords, Order::kBayerRG, 16},
    {"BayerGB16", 0x01100030, Layout::kWords, Order::kBayerGB, 16},
    {"BayerBG16", 0x01100031, Layout::kWords, Order::kBayerBG, 16},
    {"Rgb8Packed", 0x02180014, Layout::kBytes, Order::kRgb, 8},
    {"Bgr8Packed", 0x02180015, Layout::kBytes, Order::kBgr, 8},
    {"Argb8Packed", kArgb8PackedCode, Layout::kBytes, Order::kArgb, 8},
    {"Rgba8Packed", 0x02200016, Layout::kBytes, Order::kRgba, 8},
    {"Bgra8Packed", 0x02200017, Layout::kBytes, Order::kBgra, 8},
    {"RGB8", 0x02180014, Layout::kBytes, Order::kRgb, 8},
    {"RGBa8", 0x02200016, Layout::kBytes, Order::kRgba, 8},
    {"RGB10", 0x02300018, Layout::kWords, Order::kRgb, 10},
    {"RGBa10", 0x0240005F, Layout::kWords, Order::kRgba, 10},
    {"RGB10p", 0x021E005C, Layout::kLsbPacked, Order::kRgb, 10},
    {"RGBa10p", 0x02280060, Layout::kLsbPacked, Order::kRgba, 10},
    {"RGB12", 0x0230001A, Layout::kWords, Order::kRgb, 12},
    {"RGBa12", 0x02400061, Layout::kWords, Order::kRgba, 12},
    {"RGB12p", 0x0224005D, Layout::kLsbPacked, Order::kRgb, 12},
    {"RGBa12p", 0x02300062, Layout::kLsbPacked, Order::kRgba, 12},
    {"RGB14", 0x0230005E, Layout::kWords, Order::kRgb, 14},
    {"RGB16", 0x02300033, Layout::kWords, Order::kRgb, 16},
    {"BGR8", 0x02180015, Layout::kBytes, Order::kBgr, 8},
    {"BGRa8", 0x02200017, Layout::kBytes, Order::kBgra, 8},
    {"BGR10", 0x02300019, Layout::kWords, Order::kBgr, 10},
    {"BGRa10", 0x0240004C, Layout::kWords, Order::kBgra, 10},
    {"BGR10p", 0x021E0048, Layout::kLsbPacked, Order::kBgr, 10},
    {"BGRa10p", 0x0228004D, Layout::kLsbPacked, Order::kBgra, 10},
    {"BGR12", 0x0230001B, Layout::kWords, Order::kBgr, 12},
    {"BGRa12", 0x0240004E, Layout::kWords, Order::kBgra, 12},
    {"BGR12p", 0x02240049, Layout::kLsbPacked, Order::kBgr, 12},
    {"BGRa12p", 0x0230004F, Layout::kLsbPacked, Order::kBgra, 12},
    {"BGR14", 0x0230004A, Layout::kWords, Order::kBgr, 14},
    {"BGR16", 0x0230004B, Layout::kWords, Order::kBgr, 16},
    {"YUV444", 0x02180020, Layout::kYuv444, Order::kRgb, 8},
    {"YUV444_8", 0x02180020, Layout::kYuv444, Order::kRgb, 8},
    {"YUV422", 0x0210001F, Layout::kYuv422, Order::kRgb, 8},
    {"YUV422_8", 0x0210001F, Layout::kYuv422, Order::kRgb, 8},
    {"YUV411", 0x020C001E, Layout::kYuv411, Order::kRgb, 8},
    {"YUV411_8", 0x020C001E, Layout::kYuv411, Order::kRgb, 8},
};
// clang-format on

} // namespace

std::span<const PixelFormat> AllPixelFormats() {
    return kFormats;
}

const PixelFormat* FindPixelFormat(const char* name) {
    for (const PixelFormat& format : kFormats) {
        if (std::strcmp(format.name, name) == 0) {
            return &format;
        }
    }
    return nullptr;
}

unsigned ComponentsOf(const PixelFormat& format) {
    switch (format.order) {
    case Order::kMono:
    case Order::kBayerGR:
    case Order::kBayerRG:
    case Order::kBayerGB:
    case Order::kBayerBG:
        return 1;
    case Order::kRgb:
    case Order::kBgr:
        return 3;
    case Order::kRgba:
    case Order::kBgra:
    case Order::kArgb:
        return 4;
    }
    return 0;
}

unsigned BitsPerPixel(const PixelFormat& format) {
    // The third byte of every code holds it.
    return (format.code >> 16) & 0xFF;
}

unsigned WidthGroup(const PixelFormat& format) {
    switch (format.layout) {
    case Layout::kBytes:
    case Layout::kWords:
    case Layout::kYuv444:
        return 1;
    case Layout::kLsbPacked:
        if (ComponentsOf(format) == 1) {
            return 1;
        }
        return BitsPerPixel(format) % 8 == 0 ? 1 : BitsPerPixel(format) % 4 == 0 ? 2 : 4;
    case Layout::kPacked10:
    case Layout::kPacked12:
    case Layout::kYuv422:
        return 2;
    case Layout::kYuv411:
        return 4;
    }
    return 1;
}

std::uint32_t LineBytes(const PixelFormat& format, std::uint32_t width) {
    return (width * BitsPerPixel(format) + 7) / 8;
}

} // namespace pxsim
