// transcript.cpp - what the operations of a run returned and logged
#include "tests/sweep/transcript.h"

#include <algorithm>
#include <cstddef>

namespace sweep {
namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kMostMissingLines = 3; // printed one by one

/// Lines of an edit: those of both, missing and added ones with their marks.
Lines Edit(const Lines& before, const Lines& after) {
    // The length of the longest common subsequence from each pair of places on.
    const std::size_t width = after.size() + 1;
    std::vector<std::size_t> common((before.size() + 1) * width, 0);
    const auto at = [&](std::size_t left, std::size_t right) -> std::size_t& {
        return common[left * width + right];
    };
    for (std::size_t left = before.size(); left-- > 0;) {
        for (std::size_t right = after.size(); right-- > 0;) {
            at(left, right) = before[left] == after[right]
                                  ? at(left + 1, right + 1) + 1
                                  : std::max(at(left + 1, right), at(left, right + 1));
        }
    }
    Lines edit;
    std::size_t left = 0;
    std::size_t right = 0;
    while (left < before.size() || right < after.size()) {
        if (left < before.size() && right < after.size() && before[left] == after[right]) {
            edit.push_back(" ");
            ++left;
            ++right;
        } else if (right == after.size() ||
                   (left < before.size() && at(left + 1, right) >= at(left, right + 1))) {
            edit.push_back("-" + before[left++]);
        } else {
            edit.push_back("+" + after[right++]);
        }
    }
    return edit;
}

/// The changed lines of an edit. Many missing ones in a row are only counted: the sound run has
/// them.
std::string PrintEdit(const Lines& edit) {
    std::string text;
    for (std::size_t index = 0; index < edit.size();) {
        const char mark = edit[index][0];
        std::size_t end = index + 1;
        while (end < edit.size() && edit[end][0] == mark) {
            ++end;
        }
        if (mark == '-' && end - index > kMostMissingLines) {
            text += "  - " + std::to_string(end - index) + " lines from: " + edit[index].substr(1) +
                    "\n";
        } else if (mark != ' ') {
            for (std::size_t line = index; line < end; ++line) {
                text += std::string("  ") + mark + " " + edit[line].substr(1) + "\n";
            }
        }
        index = end;
    }
    return text;
}

} // namespace

std::string Print(const Transcript& transcript) {
    std::string text;
    for (const Step& step : transcript) {
        text += step.operation + " = " + step.result + "\n";
        for (const std::string& line : step.lines) {
            text += "  " + line + "\n";
        }
    }
    return text;
}

std::string Differences(const Transcript& sound, const Transcript& failed) {
    std::string text;
    for (std::size_t index = 0; index < std::max(sound.size(), failed.size()); ++index) {
        if (index >= sound.size() || index >= failed.size()) {
            return text + "other operations\n";
        }
        const Step& expected = sound[index];
        const Step& actual = failed[index];
        const std::string edit = PrintEdit(Edit(expected.lines, actual.lines));
        if (expected.result != actual.result || !edit.empty()) {
            text += actual.operation + " = " + actual.result + "\n" + edit;
        }
    }
    return text.empty() ? "nothing changes\n" : text;
}

} // namespace sweep
