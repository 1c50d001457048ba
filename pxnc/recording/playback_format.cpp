// playback_format.cpp - the pixel formats in which recorded images are sent
#include "pxnc/recording/playback_format.h"

namespace playback {
namespace {

struct Row {
    PixelFormat format;
    std::uint32_t bits;
    MV_COLORCODING coding;
    std::uint32_t cfaX = 0;
    std::uint32_t cfaY = 0;
};

constexpr Row kRows[] = {
    {{"Mono8", 0x01080001}, 8, MVCC_MONO},
    {{"Mono10", 0x01100003}, 10, MVCC_MONO},
    {{"Mono12", 0x01100005}, 12, MVCC_MONO},
    {{"Mono14", 0x01100025}, 14, MVCC_MONO},
    {{"Mono16", 0x01100007}, 16, MVCC_MONO},
    {{"BayerGR8", 0x01080008}, 8, MVCC_RAW_CFA, 0, 0},
    {{"BayerRG8", 0x01080009}, 8, MVCC_RAW_CFA, 1, 0},
    {{"BayerGB8", 0x0108000A}, 8, MVCC_RAW_CFA, 1, 1},
    {{"BayerBG8", 0x0108000B}, 8, MVCC_RAW_CFA, 0, 1},
    {{"BayerGR10", 0x0110000C}, 10, MVCC_RAW_CFA, 0, 0},
    {{"BayerRG10", 0x0110000D}, 10, MVCC_RAW_CFA, 1, 0},
    {{"BayerGB10", 0x0110000E}, 10, MVCC_RAW_CFA, 1, 1},
    {{"BayerBG10", 0x0110000F}, 10, MVCC_RAW_CFA, 0, 1},
    {{"BayerGR12", 0x01100010}, 12, MVCC_RAW_CFA, 0, 0},
    {{"BayerRG12", 0x01100011}, 12, MVCC_RAW_CFA, 1, 0},
    {{"BayerGB12", 0x01100012}, 12, MVCC_RAW_CFA, 1, 1},
    {{"BayerBG12", 0x01100013}, 12, MVCC_RAW_CFA, 0, 1},
    {{"BayerGR16", 0x0110002E}, 16, MVCC_RAW_CFA, 0, 0},
    {{"BayerRG16", 0x0110002F}, 16, MVCC_RAW_CFA, 1, 0},
    {{"BayerGB16", 0x01100030}, 16, MVCC_RAW_CFA, 1, 1},
    {{"BayerBG16", 0x01100031}, 16, MVCC_RAW_CFA, 0, 1},
    {{"RGB8", 0x02180014}, 8, MVCC_RGB},
    {{"RGB10", 0x02300018}, 10, MVCC_RGB},
    {{"RGB12", 0x0230001A}, 12, MVCC_RGB},
    {{"RGB14", 0x0230005E}, 14, MVCC_RGB},
    {{"RGB16", 0x02300033}, 16, MVCC_RGB},
    {{"BGR8", 0x02180015}, 8, MVCC_BGR},
    {{"BGR10", 0x02300019}, 10, MVCC_BGR},
    {{"BGR12", 0x0230001B}, 12, MVCC_BGR},
    {{"BGR14", 0x0230004A}, 14, MVCC_BGR},
    {{"BGR16", 0x0230004B}, 16, MVCC_BGR},
    {{"RGBa8", 0x02200016}, 8, MVCC_RGBA},
    {{"RGBa10", 0x0240005F}, 10, MVCC_RGBA},
    {{"RGBa12", 0x02400061}, 12, MVCC_RGBA},
    {{"BGRa8", 0x02200017}, 8, MVCC_BGRA},
    {{"BGRa10", 0x0240004C}, 10, MVCC_BGRA},
    {{"BGRa12", 0x0240004E}, 12, MVCC_BGRA},
    {{"Argb8Packed", 0}, 8, MVCC_ARGB},
};

std::uint32_t ComponentsOf(MV_COLORCODING coding) {
    switch (coding) {
    case MVCC_RGB:
    case MVCC_BGR:
        return 3;
    case MVCC_ARGB:
    case MVCC_RGBA:
    case MVCC_BGRA:
        return 4;
    default:
        return 1;
    }
}

} // namespace

const PixelFormat* FindPixelFormat(const ImageLayout& layout) {
    const std::uint32_t allocated = layout.bits > 8 ? 16 : 8;
    if (layout.allocatedBits != allocated ||
        layout.components != ComponentsOf(layout.colorCoding)) {
        return nullptr;
    }
    const bool isFilter = layout.colorCoding == MVCC_RAW_CFA;
    for (const Row& row : kRows) {
        if (row.bits == layout.bits && row.coding == layout.colorCoding &&
            (!isFilter || (row.cfaX == layout.cfaX && row.cfaY == layout.cfaY))) {
            return &row.format;
        }
    }
    return nullptr;
}

} // namespace playback
