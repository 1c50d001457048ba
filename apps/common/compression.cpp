// compression.cpp - the compression that PNG and TIFF files share
#include "apps/common/compression.h"

#include <libdeflate.h>

#include <new>

Compressor::Compressor(std::uint32_t level)
    : compressor(libdeflate_alloc_compressor(static_cast<int>(level))) {
    if (!compressor) {
        throw std::bad_alloc();
    }
}

Compressor::~Compressor() {
    libdeflate_free_compressor(compressor);
}

std::size_t Compressor::Bound(std::size_t size) const {
    return libdeflate_zlib_compress_bound(compressor, size);
}

std::size_t Compressor::Compress(const void* content, std::size_t size, void* compressed) const {
    return libdeflate_zlib_compress(compressor, content, size, compressed, Bound(size));
}
