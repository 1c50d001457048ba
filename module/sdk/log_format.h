// log_format.h - format strings of log lines, checked at compile time
#pragma once

#include <cstddef>
#include <type_traits>

namespace pyxen {

namespace log_format_detail {

/// The kind of an argument, whatever its exact type.
enum class Kind {
    kText,
    kCharacter,
    kSigned32,
    kUnsigned32,
    kSigned64,
    kUnsigned64,
    kFloat,
    kPointer
};

template <typename T>
constexpr Kind KindOf() {
    if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, char*>) {
        return Kind::kText;
    } else if constexpr (std::is_pointer_v<T>) {
        return Kind::kPointer;
    } else if constexpr (std::is_same_v<T, char>) {
        return Kind::kCharacter;
    } else if constexpr (std::is_same_v<T, double>) {
        return Kind::kFloat;
    } else {
        static_assert(std::is_integral_v<T> && !std::is_same_v<T, bool>,
                      "a log line takes numbers, texts and pointers");
        if constexpr (std::is_signed_v<T>) {
            return sizeof(T) == 8 ? Kind::kSigned64 : Kind::kSigned32;
        } else {
            return sizeof(T) == 8 ? Kind::kUnsigned64 : Kind::kUnsigned32;
        }
    }
}

/// Parses the conversions that this module's lines use, a subset of what ILogSink accepts: %s %c %d
/// %u %08X %I64d %I64u %f %lf %p, with zero padding, width and precision.
class Reader {
public:
    constexpr explicit Reader(const char* format) : rest(format) {}

    /// Advances past the next conversion; false at the end of the text.
    constexpr bool Next(Kind& kind) {
        while (*rest != '\0') {
            if (*rest++ != '%') {
                continue;
            }
            // Compatibility: a percent sign before a blank is written as it stands and takes no
            // argument; support searches for a line that has one.
            if (*rest != ' ') {
                kind = Conversion();
                return true;
            }
        }
        return false;
    }

private:
    constexpr Kind Conversion() {
        while ((*rest >= '0' && *rest <= '9') || *rest == '.') {
            ++rest;
        }
        if (rest[0] == 'I' && rest[1] == '6' && rest[2] == '4') {
            rest += 3;
            return Letter(Kind::kSigned64, Kind::kUnsigned64);
        }
        if (rest[0] == 'l' && rest[1] == 'f') {
            ++rest; // the same as %f
        }
        return Letter(Kind::kSigned32, Kind::kUnsigned32);
    }

    constexpr Kind Letter(Kind whenSigned, Kind whenUnsigned) {
        const bool plain = whenSigned == Kind::kSigned32;
        const char letter = *rest++;
        switch (letter) {
        case 'd':
            return whenSigned;
        case 'u':
        case 'X':
            return whenUnsigned;
        case 's':
        case 'c':
        case 'f':
        case 'p':
            if (plain) {
                return letter == 's'   ? Kind::kText
                       : letter == 'c' ? Kind::kCharacter
                       : letter == 'f' ? Kind::kFloat
                                       : Kind::kPointer;
            }
            break;
        default:
            break;
        }
        throw "the format has a conversion that log lines do not use";
    }

    const char* rest;
};

} // namespace log_format_detail

/// A format of ILogSink whose conversions take exactly the given arguments; any other does not
/// compile. The text must be a literal.
template <typename... Arguments>
class LogFormat {
public:
    // Implicit: literals are passed where a format is expected.
    consteval LogFormat(const char* literal) : text(literal) {
        using log_format_detail::Kind;
        log_format_detail::Reader reader(literal);
        Kind kind{};
        const Kind expected[] = {log_format_detail::KindOf<Arguments>()..., Kind{}};
        for (std::size_t index = 0; index < sizeof...(Arguments); ++index) {
            if (!reader.Next(kind)) {
                throw "the format has fewer conversions than arguments";
            }
            if (kind != expected[index]) {
                throw "an argument does not fit its conversion";
            }
        }
        if (reader.Next(kind)) {
            throw "the format has more conversions than arguments";
        }
    }

    constexpr const char* Text() const { return text; }

private:
    const char* text;
};

/// A format with one text as its argument, mostly a feature's name.
using NameFormat = LogFormat<const char*>;

} // namespace pyxen
