// shell.cpp - the grabber's operations, one a line
#include "apps/common/shell.h"

#include "platform/interrupt.h"

namespace {

constexpr int kDone = 0;
constexpr int kRefused = 2;

/// Reads up to and without the next line end; false at the end of the input.
bool ReadLine(std::FILE* input, std::string& line) {
    line.clear();
    int character = 0;
    while ((character = std::getc(input)) != EOF && character != '\n') {
        line += static_cast<char>(character);
    }
    return character != EOF || !line.empty();
}

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
        return line.Name() + " = " + found->second.run(line).Str();
    } catch (const ShellRefusal& refusal) {
        refused = true;
        return line.Name() + " ? " + refusal.what();
    }
}

int Shell::Run(std::FILE* input, std::FILE* output) {
    std::string line;
    while (!platform::InterruptRequested() && ReadLine(input, line)) {
        std::string answer = Answer(line);
        if (!answer.empty()) {
            answer += '\n';
            std::fwrite(answer.data(), 1, answer.size(), output);
            std::fflush(output);
        }
    }
    return refused ? kRefused : kDone;
}
