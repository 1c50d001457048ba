// text_output.h - a bounded buffer that counts what did not fit
#pragma once

#include "format_spec.h"

#include <cstddef>
#include <string_view>

/// Writes into a caller's buffer as far as it goes and counts everything.
class TextOutput {
public:
    TextOutput(char* target, std::size_t targetCapacity)
        : buffer(target), capacity(target ? targetCapacity : 0) {}

    void Append(std::string_view text);
    void Fill(char character, std::size_t count);
    /// Terminates the text; returns the length of the whole.
    std::size_t Finish();

private:
    std::size_t Room() const;

    char* const buffer;
    const std::size_t capacity;
    std::size_t length = 0;
};

/// A converted number: sign or base, digits, and zeros between the digits and what follows them.
struct NumberText {
    std::string_view prefix;
    std::size_t leadingZeros = 0;
    std::string_view digits;
    std::size_t innerZeros = 0;
    std::string_view tail;
};

/// Pads `text` to the width of `spec` with blanks.
void AppendPadded(TextOutput& output, const FormatSpec& spec, std::string_view text);
/// Pads a number to the width of `spec`, with zeros after the prefix where `padWithZeros`.
void AppendNumber(TextOutput& output, const FormatSpec& spec, const NumberText& number,
                  bool padWithZeros);
/// Formats a floating-point number by conversion f, e or g.
void AppendFloat(TextOutput& output, const FormatSpec& spec, double value);
