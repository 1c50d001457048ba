// value.h - arguments and results as they are read from a trace
#pragma once

#include "pxnc/trace/entry_table.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sdktrace {

/// One argument, result, field of a record or element of a list.
struct Value {
    enum class Type : std::uint8_t {
        kNone, ///< a null pointer, or nothing is known
        kWord, ///< a number, handle or pointer; of a frame with its parts
        kText,
        kBytes,
        kList ///< elements of a list, or fields of a record
    };

    Type type = Type::kNone;
    std::uint64_t word = 0;
    std::string text; ///< also bytes
    /// Of a frame that is announced: its buffer's size. Of one that is filled: its record, or
    /// nothing, and its pixels.
    std::vector<Value> parts;

    bool operator==(const Value& other) const = default;
};

/// A value for each parameter of the entry: what EncodeArguments wrote, kWord 1 for a place that is
/// given; nullopt when the bytes are damaged.
std::optional<std::vector<Value>> DecodeArguments(Entry entry, std::string_view bytes);
/// A value for each parameter: what EncodeResults wrote, kNone for one without a result.
std::optional<std::vector<Value>> DecodeResults(Entry entry, std::string_view bytes);

} // namespace sdktrace
