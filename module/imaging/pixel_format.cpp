// pixel_format.cpp - the table of pixel formats
#include "imaging/pixel_format.h"

#include "imaging/conversion/converter_set.h"
#include "platform/processor.h"
#include "platform/text.h"

#include <algorithm>

namespace pyxen {

namespace {

struct Conversion {
    const char* name;
    ConvertFunction convert;
    RowAddressFunction rowAddress;
};

constexpr Conversion kDirect = {nullptr, nullptr, nullptr};
constexpr Conversion kUnpack10p = {"Unpack10p", Unpack10p, RowAddress10p};
constexpr Conversion kUnpack12p = {"Unpack12p", Unpack12p, RowAddress12p};
constexpr Conversion kUnpack10Packed = {"Unpack10Packed", Unpack10Packed, nullptr};
constexpr Conversion kUnpack12Packed = {"Unpack12Packed", Unpack12Packed, nullptr};
constexpr Conversion kConvertYUV444 = {"ConvertYUV444", ConvertYUV444, nullptr};
constexpr Conversion kConvertYUV422 = {"ConvertYUV422", ConvertYUV422, nullptr};
constexpr Conversion kConvertYUV411 = {"ConvertYUV411", ConvertYUV411, nullptr};

constexpr PixelFormat Format(const char* name, std::uint32_t code, std::uint8_t components,
                             std::uint8_t allocatedBits, std::uint8_t bits,
                             MV_COLORCODING colorCoding, std::uint8_t cfaX, std::uint8_t cfaY,
                             const Conversion& conversion) {
    return {name,
            code,
            components,
            allocatedBits,
            bits,
            colorCoding,
            cfaX,
            cfaY,
            conversion.name,
            conversion.convert,
            conversion.rowAddress};
}

// Compatibility: some older and newer names share a code; hosts get the properties of the first.
constexpr PixelFormat kFormats[] = {
    Format("Mono8", 0x01080001, 1, 8, 8, MVCC_MONO, 0, 0, kDirect),
    Format("Mono10", 0x01100003, 1, 16, 10, MVCC_MONO, 0, 0, kDirect),
    Format("Mono10p", 0x010A0046, 1, 16, 10, MVCC_MONO, 0, 0, kUnpack10p),
    Format("Mono10Packed", 0x010C0004, 1, 16, 10, MVCC_MONO, 0, 0, kUnpack10Packed),
    Format("Mono12", 0x01100005, 1, 16, 12, MVCC_MONO, 0, 0, kDirect),
    Format("Mono12p", 0x010C0047, 1, 16, 12, MVCC_MONO, 0, 0, kUnpack12p),
    Format("Mono12Packed", 0x010C0006, 1, 16, 12, MVCC_MONO, 0, 0, kUnpack12Packed),
    Format("Mono14", 0x01100025, 1, 16, 14, MVCC_MONO, 0, 0, kDirect),
    Format("Mono16", 0x01100007, 1, 16, 16, MVCC_MONO, 0, 0, kDirect),
    Format("BayerGR8", 0x01080008, 1, 8, 8, MVCC_RAW_CFA, 0, 0, kDirect),
    Format("BayerRG8", 0x01080009, 1, 8, 8, MVCC_RAW_CFA, 1, 0, kDirect),
    Format("BayerGB8", 0x0108000A, 1, 8, 8, MVCC_RAW_CFA, 1, 1, kDirect),
    Format("BayerBG8", 0x0108000B, 1, 8, 8, MVCC_RAW_CFA, 0, 1, kDirect),
    Format("BayerGR10", 0x0110000C, 1, 16, 10, MVCC_RAW_CFA, 0, 0, kDirect),
    Format("BayerRG10", 0x0110000D, 1, 16, 10, MVCC_RAW_CFA, 1, 0, kDirect),
    Format("BayerGB10", 0x0110000E, 1, 16, 10, MVCC_RAW_CFA, 1, 1, kDirect),
    Format("BayerBG10", 0x0110000F, 1, 16, 10, MVCC_RAW_CFA, 0, 1, kDirect),
    Format("BayerGR10p", 0x010A0056, 1, 16, 10, MVCC_RAW_CFA, 0, 0, kUnpack10p),
    Format("BayerRG10p", 0x010A0058, 1, 16, 10, MVCC_RAW_CFA, 1, 0, kUnpack10p),
    Format("BayerGB10p", 0x010A0054, 1, 16, 10, MVCC_RAW_CFA, 1, 1, kUnpack10p),
    Format("BayerBG10p", 0x010A0052, 1, 16, 10, MVCC_RAW_CFA, 0, 1, kUnpack10p),
    Format("BayerGR10Packed", 0x010C0026, 1, 16, 10, MVCC_RAW_CFA, 0, 0, kUnpack10Packed),
    Format("BayerRG10Packed", 0x010C0027, 1, 16, 10, MVCC_RAW_CFA, 1, 0, kUnpack10Packed),
    Format("BayerGB10Packed", 0x010C0028, 1, 16, 10, MVCC_RAW_CFA, 1, 1, kUnpack10Packed),
    Format("BayerBG10Packed", 0x010C0029, 1, 16, 10, MVCC_RAW_CFA, 0, 1, kUnpack10Packed),
    Format("BayerGR12", 0x01100010, 1, 16, 12, MVCC_RAW_CFA, 0, 0, kDirect),
    Format("BayerRG12", 0x01100011, 1, 16, 12, MVCC_RAW_CFA, 1, 0, kDirect),
    Format("BayerGB12", 0x01100012, 1, 16, 12, MVCC_RAW_CFA, 1, 1, kDirect),
    Format("BayerBG12", 0x01100013, 1, 16, 12, MVCC_RAW_CFA, 0, 1, kDirect),
    Format("BayerGR12p", 0x010C0057, 1, 16, 12, MVCC_RAW_CFA, 0, 0, kUnpack12p),
    Format("BayerRG12p", 0x010C0059, 1, 16, 12, MVCC_RAW_CFA, 1, 0, kUnpack12p),
    Format("BayerGB12p", 0x010C0055, 1, 16, 12, MVCC_RAW_CFA, 1, 1, kUnpack12p),
    Format("BayerBG12p", 0x010C0053, 1, 16, 12, MVCC_RAW_CFA, 0, 1, kUnpack12p),
    Format("BayerGR12Packed", 0x010C002A, 1, 16, 12, MVCC_RAW_CFA, 0, 0, kUnpack12Packed),
    Format("BayerRG12Packed", 0x010C002B, 1, 16, 12, MVCC_RAW_CFA, 1, 0, kUnpack12Packed),
    Format("BayerGB12Packed", 0x010C002C, 1, 16, 12, MVCC_RAW_CFA, 1, 1, kUnpack12Packed),
    Format("BayerBG12Packed", 0x010C002D, 1, 16, 12, MVCC_RAW_CFA, 0, 1, kUnpack12Packed),
    Format("BayerGR16", 0x0110002E, 1, 16, 16, MVCC_RAW_CFA, 0, 0, kDirect),
    Format("BayerRG16", 0x0110002F, 1, 16, 16, MVCC_RAW_CFA, 1, 0, kDirect),
    Format("BayerGB16", 0x01100030, 1, 16, 16, MVCC_RAW_CFA, 1, 1, kDirect),
    Format("BayerBG16", 0x01100031, 1, 16, 16, MVCC_RAW_CFA, 0, 1, kDirect),
    Format("Rgb8Packed", 0x02180014, 3, 8, 8, MVCC_RGB, 0, 0, kDirect),
    Format("Bgr8Packed", 0x02180015, 3, 8, 8, MVCC_BGR, 0, 0, kDirect),
    Format("Argb8Packed", 0x00000000, 4, 8, 8, MVCC_ARGB, 0, 0, kDirect),
    Format("Rgba8Packed", 0x02200016, 4, 8, 8, MVCC_RGBA, 0, 0, kDirect),
    Format("Bgra8Packed", 0x02200017, 4, 8, 8, MVCC_BGRA, 0, 0, kDirect),
    Format("RGB8", 0x02180014, 3, 8, 8, MVCC_RGB, 0, 0, kDirect),
    Format("RGBa8", 0x02200016, 4, 8, 8, MVCC_RGBA, 0, 0, kDirect),
    Format("RGB10", 0x02300018, 3, 16, 10, MVCC_RGB, 0, 0, kDirect),
    Format("RGBa10", 0x0240005F, 4, 16, 10, MVCC_RGBA, 0, 0, kDirect),
    Format("RGB10p", 0x021E005C, 3, 16, 10, MVCC_RGB, 0, 0, kUnpack10p),
    Format("RGBa10p", 0x02280060, 4, 16, 10, MVCC_RGBA, 0, 0, kUnpack10p),
    Format("RGB12", 0x0230001A, 3, 16, 12, MVCC_RGB, 0, 0, kDirect),
    Format("RGBa12", 0x02400061, 4, 16, 12, MVCC_RGBA, 0, 0, kDirect),
    Format("RGB12p", 0x0224005D, 3, 16, 12, MVCC_RGB, 0, 0, kUnpack12p),
    Format("RGBa12p", 0x02300062, 4, 16, 12, MVCC_RGBA, 0, 0, kUnpack12p),
    Format("RGB14", 0x0230005E, 3, 16, 14, MVCC_RGB, 0, 0, kDirect),
    Format("RGB16", 0x02300033, 3, 16, 16, MVCC_RGB, 0, 0, kDirect),
    Format("BGR8", 0x02180015, 3, 8, 8, MVCC_BGR, 0, 0, kDirect),
    Format("BGRa8", 0x02200017, 4, 8, 8, MVCC_BGRA, 0, 0, kDirect),
    Format("BGR10", 0x02300019, 3, 16, 10, MVCC_BGR, 0, 0, kDirect),
    Format("BGRa10", 0x0240004C, 4, 16, 10, MVCC_BGRA, 0, 0, kDirect),
    Format("BGR10p", 0x021E0048, 3, 16, 10, MVCC_BGR, 0, 0, kUnpack10p),
    Format("BGRa10p", 0x0228004D, 4, 16, 10, MVCC_BGRA, 0, 0, kUnpack10p),
    Format("BGR12", 0x0230001B, 3, 16, 12, MVCC_BGR, 0, 0, kDirect),
    Format("BGRa12", 0x0240004E, 4, 16, 12, MVCC_BGRA, 0, 0, kDirect),
    Format("BGR12p", 0x02240049, 3, 16, 12, MVCC_BGR, 0, 0, kUnpack12p),
    Format("BGRa12p", 0x0230004F, 4, 16, 12, MVCC_BGRA, 0, 0, kUnpack12p),
    Format("BGR14", 0x0230004A, 3, 16, 14, MVCC_BGR, 0, 0, kDirect),
    Format("BGR16", 0x0230004B, 3, 16, 16, MVCC_BGR, 0, 0, kDirect),
    Format("YUV444", 0x02180020, 3, 8, 8, MVCC_RGB, 0, 0, kConvertYUV444),
    Format("YUV444_8", 0x02180020, 3, 8, 8, MVCC_RGB, 0, 0, kConvertYUV444),
    Format("YUV422", 0x0210001F, 3, 8, 8, MVCC_RGB, 0, 0, kConvertYUV422),
    Format("YUV422_8", 0x0210001F, 3, 8, 8, MVCC_RGB, 0, 0, kConvertYUV422),
    Format("YUV411", 0x020C001E, 3, 8, 8, MVCC_RGB, 0, 0, kConvertYUV411),
    Format("YUV411_8", 0x020C001E, 3, 8, 8, MVCC_RGB, 0, 0, kConvertYUV411),
};

template <typename Predicate>
const PixelFormat* FindFirst(Predicate matches) {
    const std::span<const PixelFormat> formats = PixelFormatTable();
    const auto found = std::find_if(formats.begin(), formats.end(), matches);
    return found == formats.end() ? nullptr : &*found;
}

const void* RowAddress(const void* base, std::uint32_t width, std::uint32_t row, unsigned bits) {
    const std::uint64_t lineBytes = (std::uint64_t{width} * bits + 7) / 8;
    return static_cast<const std::uint8_t*>(base) + row * lineBytes;
}

} // namespace

std::span<const PixelFormat> PixelFormatTable() {
    return kFormats;
}

const PixelFormat* FindPixelFormatByCode(std::uint32_t code) {
    if (code == 0) {
        return nullptr;
    }
    return FindFirst([code](const PixelFormat& format) { return format.code == code; });
}

const PixelFormat* FindPixelFormatByName(const char* name) {
    if (!name) {
        return nullptr;
    }
    return FindFirst([name](const PixelFormat& format) {
        return platform::CompareNoCase(format.name, name) == 0;
    });
}

const void* RowAddress10p(const void* base, std::uint32_t width, std::uint32_t row) {
    return RowAddress(base, width, row, 10);
}

const void* RowAddress12p(const void* base, std::uint32_t width, std::uint32_t row) {
    return RowAddress(base, width, row, 12);
}

std::uint64_t HostRowBytes(const PixelFormat& format, std::uint32_t width) {
    return std::uint64_t{format.components} * format.allocatedBits * width / 8;
}

void ConvertRows(const PixelFormat& format, const void* raw, void* host, std::uint32_t width,
                 std::uint32_t first, std::uint32_t count, Stores stores) {
    if (format.rowAddress && width == 0) {
        return; // of however many lines
    }
    const ConvertFunction streaming =
        stores == Stores::kStreaming ? StreamingConverter(format.convert) : nullptr;
    const ConvertFunction convert = streaming ? streaming : format.convert;
    const std::uint64_t stride = HostRowBytes(format, width);
    std::uint8_t* line = static_cast<std::uint8_t*>(host) + first * stride;
    // Of one component, lines of whole groups follow one another without padding: the same pixels
    // without a beginning and an end for every line.
    if (!format.rowAddress || (format.components == 1 && width % kRowsOfWholeGroups == 0)) {
        // The bits of a pixel are part of the format's code.
        const std::uint64_t bits = format.code >> 16 & 0xFF;
        convert(static_cast<const std::uint8_t*>(raw) + bits * width * first / 8, line,
                std::uint64_t{width} * count);
        return;
    }
    for (std::uint32_t row = first; row < first + count; ++row, line += stride) {
        convert(format.rowAddress(raw, width, row), line, width);
    }
}

void ConvertImage(const PixelFormat& format, const void* raw, void* host, std::uint32_t width,
                  std::uint32_t height) {
    ConvertRows(format, raw, host, width, 0, height, StoresFor(format, width, height));
}

Stores StoresFor(const PixelFormat& format, std::uint32_t width, std::uint32_t height) {
    // What the host's image may take of the cache before the raw image and other programs push it
    // out. Unknown, nothing is too large.
    static const std::uint64_t half = platform::LargestCacheBytes() / 2;
    return half > 0 && HostRowBytes(format, width) * height > half ? Stores::kStreaming
                                                                   : Stores::kOrdinary;
}

} // namespace pyxen
