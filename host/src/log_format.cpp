// log_format.cpp - the formatter of log lines, the same on every platform
#include "mivora/log_sink.h"

#include "format_spec.h"
#include "text_output.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace {

struct ArgumentList {
    va_list list;
};

std::int64_t NextSigned(ArgumentList& arguments, ArgumentLength length) {
    switch (length) {
    case ArgumentLength::kChar:
        return static_cast<signed char>(va_arg(arguments.list, int));
    case ArgumentLength::kShort:
        return static_cast<short>(va_arg(arguments.list, int));
    case ArgumentLength::kLong:
        return va_arg(arguments.list, long);
    case ArgumentLength::kLongLong:
        return va_arg(arguments.list, long long);
    case ArgumentLength::kSize:
        return va_arg(arguments.list, std::ptrdiff_t);
    case ArgumentLength::kPlain:
    case ArgumentLength::kInt32:
        break;
    }
    return va_arg(arguments.list, int);
}

std::uint64_t NextUnsigned(ArgumentList& arguments, ArgumentLength length) {
    switch (length) {
    case ArgumentLength::kChar:
        return static_cast<unsigned char>(va_arg(arguments.list, unsigned));
    case ArgumentLength::kShort:
        return static_cast<unsigned short>(va_arg(arguments.list, unsigned));
    case ArgumentLength::kLong:
        return va_arg(arguments.list, unsigned long);
    case ArgumentLength::kLongLong:
        return va_arg(arguments.list, unsigned long long);
    case ArgumentLength::kSize:
        return va_arg(arguments.list, std::size_t);
    case ArgumentLength::kPlain:
    case ArgumentLength::kInt32:
        break;
    }
    return va_arg(arguments.list, unsigned);
}

void AppendInteger(TextOutput& output, const FormatSpec& spec, std::uint64_t magnitude,
                   std::string_view prefix) {
    const bool hexadecimal = spec.conversion == 'x' || spec.conversion == 'X';
    const char* const letters = spec.conversion == 'x' ? "0123456789abcdef" : "0123456789ABCDEF";
    const std::uint64_t base = hexadecimal ? 16 : 10;
    char digits[24];
    char* const end = digits + sizeof digits;
    char* first = end;
    for (std::uint64_t rest = magnitude; rest > 0; rest /= base) {
        *--first = letters[rest % base];
    }
    NumberText number;
    number.prefix = prefix;
    number.digits = {first, static_cast<std::size_t>(end - first)};
    const std::size_t wanted = spec.precision < 0 ? 1 : static_cast<std::size_t>(spec.precision);
    if (wanted > number.digits.size()) {
        number.leadingZeros = wanted - number.digits.size();
    }
    AppendNumber(output, spec, number, spec.zero && spec.precision < 0);
}

// Compatibility: always 16 upper-case digits without a prefix; log texts supply their own "0x".
void AppendPointer(TextOutput& output, const FormatSpec& spec, const void* pointer) {
    FormatSpec whole = spec;
    whole.conversion = 'X';
    whole.precision = 16;
    AppendInteger(output, whole, reinterpret_cast<std::uintptr_t>(pointer), {});
}

// With a precision no more bytes than that are read, so the text may lack a terminator.
void AppendText(TextOutput& output, const FormatSpec& spec, const char* text) {
    if (!text) {
        text = "(null)";
    }
    std::size_t length = 0;
    if (spec.precision < 0) {
        length = std::strlen(text);
    } else {
        const std::size_t limit = static_cast<std::size_t>(spec.precision);
        while (length < limit && text[length] != '\0') {
            ++length;
        }
    }
    AppendPadded(output, spec, {text, length});
}

// Encodes a character as UTF-8 and returns the number of bytes.
std::size_t EncodeCharacter(std::uint32_t character, char (&bytes)[4]) {
    const auto following = [character](unsigned shift) {
        return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
    };
    if (character < 0x80) {
        bytes[0] = static_cast<char>(character);
        return 1;
    }
    if (character < 0x800) {
        bytes[0] = static_cast<char>(0xC0 | (character >> 6));
        bytes[1] = following(0);
        return 2;
    }
    if (character < 0x10000) {
        bytes[0] = static_cast<char>(0xE0 | (character >> 12));
        bytes[1] = following(6);
        bytes[2] = following(0);
        return 3;
    }
    bytes[0] = static_cast<char>(0xF0 | (character >> 18));
    bytes[1] = following(12);
    bytes[2] = following(6);
    bytes[3] = following(0);
    return 4;
}

// Decodes the next character of a UTF-16 or UTF-32 text and advances `text`. Invalid units become
// the replacement character.
std::uint32_t NextCharacter(const wchar_t*& text) {
    constexpr std::uint32_t kReplacement = 0xFFFD;
    const auto unit = std::uint32_t{static_cast<std::make_unsigned_t<wchar_t>>(*text++)};
    if (unit >= 0xD800 && unit < 0xDC00 && *text >= 0xDC00 && *text < 0xE000) {
        return 0x10000 + ((unit - 0xD800) << 10) + (static_cast<std::uint32_t>(*text++) - 0xDC00);
    }
    return (unit >= 0xD800 && unit < 0xE000) || unit > 0x10FFFF ? kReplacement : unit;
}

void AppendWideText(TextOutput& output, const FormatSpec& spec, const wchar_t* text) {
    if (!text) {
        text = L"(null)";
    }
    const std::size_t limit =
        spec.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(spec.precision);
    char bytes[4];
    std::size_t length = 0;
    const wchar_t* end = text;
    while (length < limit && *end != L'\0') {
        const wchar_t* next = end;
        const std::size_t encoded = EncodeCharacter(NextCharacter(next), bytes);
        if (encoded > limit - length) {
            break;
        }
        length += encoded;
        end = next;
    }
    const std::size_t width = static_cast<std::size_t>(spec.width);
    const std::size_t padding = width > length ? width - length : 0;
    if (!spec.left) {
        output.Fill(' ', padding);
    }
    while (text != end) {
        output.Append({bytes, EncodeCharacter(NextCharacter(text), bytes)});
    }
    if (spec.left) {
        output.Fill(' ', padding);
    }
}

void AppendCharacter(TextOutput& output, const FormatSpec& spec, std::uint32_t character) {
    if (spec.length == ArgumentLength::kLong) {
        const wchar_t text[2] = {static_cast<wchar_t>(character), L'\0'};
        AppendWideText(output, spec, text);
        return;
    }
    const char byte = static_cast<char>(character);
    AppendPadded(output, spec, {&byte, 1});
}

// As in C, a negative width means left-aligned and a negative precision counts as absent.
void TakeStars(FormatSpec& spec, ArgumentList& arguments) {
    if (spec.widthFromArgument) {
        const int width = va_arg(arguments.list, int);
        spec.left = spec.left || width < 0;
        spec.width = width >= 0 ? width : width == INT32_MIN ? INT32_MAX : -width;
    }
    if (spec.precisionFromArgument) {
        const int precision = va_arg(arguments.list, int);
        spec.precision = precision < 0 ? -1 : precision;
    }
}

void AppendConversion(TextOutput& output, FormatSpec spec, ArgumentList& arguments) {
    TakeStars(spec, arguments);
    const bool wide = spec.length == ArgumentLength::kLong;
    switch (spec.conversion) {
    case 'd':
    case 'i': {
        const std::int64_t value = NextSigned(arguments, spec.length);
        const std::uint64_t bits = static_cast<std::uint64_t>(value);
        AppendInteger(output, spec, value < 0 ? 0 - bits : bits,
                      value < 0   ? "-"
                      : spec.plus ? "+"
                                  : "");
        break;
    }
    case 'u':
        AppendInteger(output, spec, NextUnsigned(arguments, spec.length), {});
        break;
    case 'x':
    case 'X': {
        const std::uint64_t value = NextUnsigned(arguments, spec.length);
        const std::string_view prefix = spec.conversion == 'x' ? "0x" : "0X";
        AppendInteger(output, spec, value, spec.alternate && value > 0 ? prefix : "");
        break;
    }
    case 'c':
        AppendCharacter(output, spec, va_arg(arguments.list, unsigned));
        break;
    case 's':
        if (wide) {
            AppendWideText(output, spec, va_arg(arguments.list, const wchar_t*));
        } else {
            AppendText(output, spec, va_arg(arguments.list, const char*));
        }
        break;
    case 'p':
        AppendPointer(output, spec, va_arg(arguments.list, const void*));
        break;
    default:
        AppendFloat(output, spec, va_arg(arguments.list, double));
        break;
    }
}

} // namespace

std::size_t MivoraFormatLogText(char* buffer, std::size_t capacity, const char* format,
                                va_list arguments) {
    TextOutput output(buffer, capacity);
    ArgumentList own;
    va_copy(own.list, arguments);
    const char* text = format ? format : "(null)";
    while (const char* const percent = std::strchr(text, '%')) {
        output.Append({text, static_cast<std::size_t>(percent - text)});
        text = percent + 1;
        FormatSpec spec;
        if (*text == '%') {
            output.Append("%");
            ++text;
        } else if (const char* const rest = ParseFormatSpec(text, spec)) {
            AppendConversion(output, spec, own);
            text = rest;
        } else {
            output.Append("%");
        }
    }
    output.Append(text);
    va_end(own.list);
    return output.Finish();
}
