#include "pxnc/simulator/chunk_data.h"

#include "pxnc/simulator/big_endian.h"
#include "pxnc/simulator/pixel_formats.h"

#include <bit>
#include <iterator>

namespace pxsim {
namespace {

std::uint8_t* WriteTail(std::uint32_t id, std::uint32_t bytes, std::uint8_t* out) {
    StoreBigEndian(id, out);
    StoreBigEndian(bytes, out + 4);
    return out + kChunkTailBytes;
}

} // namespace

std::uint32_t ChunkListBytes(std::size_t count) {
    return kChunkTailBytes +
           static_cast<std::uint32_t>(count) * (kChunkValueBytes + kChunkTailBytes);
}

void WriteChunkList(std::uint32_t imageBytes, std::span<const ChunkValue> values,
                    std::uint8_t* out) {
    out = WriteTail(kImageChunkId, imageBytes, out);
    for (const ChunkValue& value : values) {
        StoreBigEndian(static_cast<std::uint32_t>(value.bits >> 32), out);
        StoreBigEndian(static_cast<std::uint32_t>(value.bits), out + 4);
        out = WriteTail(kFirstChunkId + static_cast<std::uint32_t>(value.chunk), kChunkValueBytes,
                        out + kChunkValueBytes);
    }
}

bool ReadChunkList(const std::uint8_t* payload, std::size_t size, std::vector<ChunkValue>& values) {
    values.clear();
    while (size >= kChunkTailBytes) {
        const std::uint8_t* tail = payload + size - kChunkTailBytes;
        const std::uint32_t id = LoadBigEndian(tail);
        const std::size_t bytes = LoadBigEndian(tail + 4);
        size -= kChunkTailBytes;
        if (id == kImageChunkId) {
            return bytes == size;
        }
        const std::uint32_t index = id - kFirstChunkId;
        if (index >= std::size(kChunkNames) || bytes != kChunkValueBytes || bytes > size) {
            return false;
        }
        size -= bytes;
        const std::uint64_t high = LoadBigEndian(payload + size);
        values.push_back(
            {static_cast<Chunk>(index), (high << 32) | LoadBigEndian(payload + size + 4)});
    }
    return false;
}

ChunkModule::ChunkModule(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher,
                         const std::vector<ChunkValue>& values)
    : Module(pool, dispatcher, std::make_shared<platform::Mutex>()) {
    constexpr const char* kCategory = "/ChunkDataControl";
    for (const ChunkValue& value : values) {
        const std::string name =
            std::string("Chunk") + kChunkNames[static_cast<std::size_t>(value.chunk)];
        const auto number = static_cast<std::int64_t>(value.bits);
        if (value.chunk == Chunk::kExposureTime || value.chunk == Chunk::kGain) {
            Float(name.c_str())
                .Value(std::bit_cast<double>(value.bits))
                .Unit(value.chunk == Chunk::kGain ? "dB" : "µs")
                .In(kCategory)
                .ReadOnly()
                .Text("Value when the frame was taken.");
        } else if (value.chunk == Chunk::kPixelFormat) {
            // By code: of two names for one layout the first is shown.
            EnumFeature& format =
                Enum(name.c_str()).In(kCategory).ReadOnly().Text("Layout of the frame.");
            for (const PixelFormat& one : AllPixelFormats()) {
                format.EntriesWithValues({{one.name, std::int64_t{one.code}}});
                if (one.code == value.bits && format.IntValue() != number) {
                    format.Value(one.name);
                }
            }
        } else {
            Int(name.c_str())
                .Value(number)
                .In(kCategory)
                .ReadOnly()
                .Text("Value when the frame was taken.");
        }
    }
}

} // namespace pxsim
