// command_failure.cpp - exception and message for a failed operation
#include "apps/common/command_failure.h"

#include "platform/printable_text.h"

namespace {

std::string FailureLines(const std::string& text, const std::vector<std::string>& details) {
    std::string lines = platform::PrintableText(text);
    for (const std::string& detail : details) {
        lines += "\n  " + platform::PrintableText(detail);
    }
    return lines;
}

} // namespace

CommandFailure::CommandFailure(const std::string& text, const std::vector<std::string>& detailTexts)
    : std::runtime_error(FailureLines(text, detailTexts)), message(text), details(detailTexts) {}

CommandFailure CommandFailure::With(const std::string& detail) const {
    std::vector<std::string> more = details;
    more.push_back(detail);
    return CommandFailure(message, more);
}
