// nonsense.cpp - answers that make no sense, in place of the scripted SDK's own
#include "tests/scripted_sdk/nonsense.h"

#include "tests/scripted_sdk/sdk_state.h"

#include <array>
#include <cstddef>
#include <limits>
#include <utility>

namespace scripted {
namespace {

constexpr std::size_t kLongText = 100000;

Nonsense Present() {
    return WithModel([](const Model& model) { return model.nonsense; });
}

/// What stands before the true text, so that this one can still be looked up.
std::string Mark(TextNonsense kind) {
    switch (kind) {
    case TextNonsense::kLong:
        return std::string(kLongText, 'x');
    case TextNonsense::kNotUtf8:
        return "\xFF\xFE\xC0\x80\xED\xA0\x80\xF8\x88\x80\x80\x80";
    case TextNonsense::kPlaceholders:
        return "%n%s%n%I64d%999999999d%*d%";
    case TextNonsense::kControls:
        return "\x1B]0;title\x07\x1B[2J\r\n0 forged line\t\b\x7F";
    default:
        return "";
    }
}

constexpr std::array kMarked = {TextNonsense::kLong, TextNonsense::kNotUtf8,
                                TextNonsense::kPlaceholders, TextNonsense::kControls};

} // namespace

std::string Garble(const std::string& text) {
    const TextNonsense kind = Present().texts;
    if (kind == TextNonsense::kNone) {
        return text;
    }
    return kind == TextNonsense::kNull || kind == TextNonsense::kEmpty ? "" : Mark(kind) + text;
}

const char* Say(skeleton::TextPool& texts, const std::string& text) {
    return Present().texts == TextNonsense::kNull ? nullptr : texts.Intern(Garble(text));
}

std::string Plain(const char* text) {
    std::string plain = text ? text : "";
    const TextNonsense present = Present().texts;
    if (present == TextNonsense::kNone) {
        return plain;
    }
    for (const TextNonsense kind : kMarked) {
        const std::string mark = Mark(kind);
        if (plain.starts_with(mark)) {
            return plain.substr(mark.size());
        }
    }
    return plain;
}

std::uint32_t Miscount(const std::string& entry, std::uint32_t count) {
    return WithModel([&](Model& model) -> std::uint32_t {
        if (entry == model.nonsense.soundCount) {
            return count;
        }
        switch (model.nonsense.counts) {
        case CountNonsense::kZero:
            return 0;
        case CountNonsense::kHalfOfAll:
            return 0x80000000;
        case CountNonsense::kMost:
            return 0xFFFFFFFF;
        case CountNonsense::kGrowing:
            return count + ++model.nonsense.calls[entry];
        case CountNonsense::kShrinking:
            return ++model.nonsense.calls[entry] % 2 == 0 ? count / 2 : count;
        default:
            return count;
        }
    });
}

void Distort(std::int64_t& value) {
    const NumberNonsense kind = Present().numbers;
    if (kind == NumberNonsense::kLeast) {
        value = std::numeric_limits<std::int64_t>::min();
    } else if (kind == NumberNonsense::kMost) {
        value = std::numeric_limits<std::int64_t>::max();
    }
}

void Distort(double& value) {
    switch (Present().numbers) {
    case NumberNonsense::kNotANumber:
        value = std::numeric_limits<double>::quiet_NaN();
        break;
    case NumberNonsense::kInfinite:
        value = std::numeric_limits<double>::infinity();
        break;
    case NumberNonsense::kLeast:
        value = std::numeric_limits<double>::lowest();
        break;
    case NumberNonsense::kMost:
        value = std::numeric_limits<double>::max();
        break;
    default:
        break;
    }
}

void Distort(std::int64_t& min, std::int64_t& max) {
    switch (Present().numbers) {
    case NumberNonsense::kUpsideDown:
        std::swap(min, max);
        break;
    case NumberNonsense::kLeast:
    case NumberNonsense::kMost: // the distance of the limits overflows
        min = std::numeric_limits<std::int64_t>::min();
        max = std::numeric_limits<std::int64_t>::max();
        break;
    default:
        break;
    }
}

void Distort(double& min, double& max) {
    switch (Present().numbers) {
    case NumberNonsense::kUpsideDown:
        std::swap(min, max);
        break;
    case NumberNonsense::kInfinite:
        min = -std::numeric_limits<double>::infinity();
        max = std::numeric_limits<double>::infinity();
        break;
    default:
        Distort(min);
        Distort(max);
        break;
    }
}

void DistortIncrement(std::int64_t& increment) {
    switch (Present().numbers) {
    case NumberNonsense::kUpsideDown:
        increment = 0;
        break;
    case NumberNonsense::kLeast:
        increment = std::numeric_limits<std::int64_t>::min();
        break;
    case NumberNonsense::kMost:
        increment = -1;
        break;
    default:
        break;
    }
}

} // namespace scripted
