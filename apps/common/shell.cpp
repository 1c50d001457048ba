// shell.cpp - runs grabber operations line by line
#include "apps/common/shell.h"

#include "apps/common/json_text.h"
#include "platform/printable_text.h"

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kRefused = 2;

} // namespace

std::string Shell::Answer(std::string_view text) {
    const ShellLine line(text);
    if (line.IsEmpty()) {
        return {};
    }
    try {
        const auto found = operations.All().find(line.Name());
        if (found == operations.All().end()) {
            throw ShellRefusal("unknown operation");
        }
        const ShellAnswer answer = found->second.run(line);
        failed = failed || answer.IsFailure();
        return isJson ? answer.Json(line.Name()) : line.Name() + " = " + answer.Str();
    } catch (const ShellRefusal& refusal) {
        refused = true;
        if (isJson) {
            return JsonReport({{"operation", line.Name()}, {"refusal", refusal.what()}}).Text();
        }
        return platform::PrintableText(line.Name() + " ? " + refusal.what());
    }
}

int Shell::Run(const std::function<bool(std::string& line)>& nextLine, std::FILE* output) {
    std::string line;
    // There is no point in running operations whose results cannot be written.
    while (!std::ferror(output) && nextLine(line)) {
        std::string answer = Answer(line);
        if (!answer.empty()) {
            answer += '\n';
            std::fwrite(answer.data(), 1, answer.size(), output);
            std::fflush(output);
        }
    }
    if (refused) {
        return kRefused;
    }
    return strict && failed ? kFailed : kDone;
}
