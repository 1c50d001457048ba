// compression.h - the compression that PNG and TIFF files share
#pragma once

#include <cstddef>
#include <cstdint>

struct libdeflate_compressor;

/// Compresses into zlib's format. One thread at a time.
class Compressor {
public:
    /// `level` 0 does not compress, 9 compresses best. Throws std::bad_alloc.
    explicit Compressor(std::uint32_t level);
    ~Compressor();
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    /// The most bytes that content of `size` bytes becomes.
    std::size_t Bound(std::size_t size) const;
    /// Compresses into memory of Bound(size) bytes and returns how many there are.
    std::size_t Compress(const void* content, std::size_t size, void* compressed) const;

private:
    libdeflate_compressor* const compressor;
};
