// encoder.h - arguments and results as bytes
#pragma once

#include "pxnc/trace/entry_table.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace sdktrace {

/// Bytes that are appended to; short ones need no memory from the heap. Throws std::bad_alloc.
///
/// A word has 8 bytes. A text and bytes begin with their length in 4, kNoText for a null pointer; a
/// list with its number of elements in 4. A record is its fields one after the other.
class Encoder {
public:
    static constexpr std::uint32_t kNoText = 0xFFFFFFFF;
    /// More than the values of a frame take beside its pixels.
    static constexpr std::size_t kRoomForFrame = 512;

    Encoder() = default;
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void Byte(std::uint8_t value) { Add(&value, sizeof value); }
    void Count(std::uint32_t value) { Add(&value, sizeof value); }
    void Word(std::uint64_t value) { Add(&value, sizeof value); }
    void Text(const char* text) {
        if (text) {
            Bytes(text, std::strlen(text));
        } else {
            Count(kNoText);
        }
    }
    void Bytes(const void* bytes, std::size_t length);

    std::string_view Content() const { return {begin, size}; }

private:
    void Add(const void* bytes, std::size_t length) {
        if (length > capacity - size) {
            Grow(length);
        }
        std::memcpy(begin + size, bytes, length);
        size += length;
    }
    void Grow(std::size_t length);

    static constexpr std::size_t kWithoutHeap = 1024;

    char local[kWithoutHeap];
    std::unique_ptr<char[]> heap;
    char* begin = local;
    std::size_t size = 0;
    std::size_t capacity = kWithoutHeap;
};

/// What is passed in: the value of each parameter, for places 1 byte whether there is one. The
/// first `pixels` bytes at most of a frame's buffer.
void EncodeArguments(Encoder& encoder, Entry entry, const Words& words, std::size_t pixels);
/// What is known after the call: 1 byte whether anything is, then for each place 1 byte whether
/// there is one, and its value.
void EncodeResults(Encoder& encoder, Entry entry, const Words& words, std::int32_t result,
                   std::size_t pixels);

} // namespace sdktrace
