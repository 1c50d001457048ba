// format_spec.cpp - a conversion specification of a log format
#include "format_spec.h"

#include <climits>
#include <cstddef>
#include <cstring>

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

const char* ParseFlags(const char* text, FormatSpec& spec) {
    for (;; ++text) {
        switch (*text) {
        case '-':
            spec.left = true;
            break;
        case '+':
            spec.plus = true;
            break;
        case '#':
            spec.alternate = true;
            break;
        case '0':
            spec.zero = true;
            break;
        default:
            return text;
        }
    }
}

// Numbers that exceed an int are limited to INT_MAX.
const char* ParseNumber(const char* text, int& number) {
    number = 0;
    for (; IsDigit(*text); ++text) {
        const int digit = *text - '0';
        number = number > (INT_MAX - digit) / 10 ? INT_MAX : number * 10 + digit;
    }
    return text;
}

const char* ParseLength(const char* text, ArgumentLength& length) {
    struct Row {
        const char* letters;
        ArgumentLength length;
    };
    // The first match counts, so "hh" precedes "h" and "ll" precedes "l".
    static constexpr Row kRows[] = {
        {"hh", ArgumentLength::kChar},      {"h", ArgumentLength::kShort},
        {"ll", ArgumentLength::kLongLong},  {"l", ArgumentLength::kLong},
        {"I64", ArgumentLength::kLongLong}, {"I32", ArgumentLength::kInt32},
        {"z", ArgumentLength::kSize},
    };
    for (const Row& row : kRows) {
        const std::size_t letters = std::strlen(row.letters);
        if (std::strncmp(text, row.letters, letters) == 0) {
            length = row.length;
            return text + letters;
        }
    }
    return text;
}

bool IsKnown(const FormatSpec& spec) {
    switch (spec.conversion) {
    case 'd':
    case 'i':
    case 'u':
    case 'x':
    case 'X':
        return true;
    case 'f':
    case 'e':
    case 'g':
        return spec.length == ArgumentLength::kPlain || spec.length == ArgumentLength::kLong;
    case 'c':
    case 's':
        return spec.length == ArgumentLength::kPlain || spec.length == ArgumentLength::kShort ||
               spec.length == ArgumentLength::kLong;
    case 'p':
        return spec.length == ArgumentLength::kPlain;
    default:
        return false;
    }
}

} // namespace

const char* ParseFormatSpec(const char* text, FormatSpec& spec) {
    text = ParseFlags(text, spec);
    if (*text == '*') {
        spec.widthFromArgument = true;
        ++text;
    } else {
        text = ParseNumber(text, spec.width);
    }
    if (*text == '.') {
        ++text;
        if (*text == '*') {
            spec.precisionFromArgument = true;
            ++text;
        } else {
            text = ParseNumber(text, spec.precision);
        }
    }
    text = ParseLength(text, spec.length);
    spec.conversion = *text;
    return IsKnown(spec) ? text + 1 : nullptr;
}
