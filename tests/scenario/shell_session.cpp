// shell_session.cpp - a running shell, driven line by line
#include "tests/scenario/shell_session.h"

#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <utility>

namespace scenario {

namespace {

constexpr std::uint32_t kResultLimitMs = 60000;

} // namespace

ShellSession::ShellSession(platform::ProcessStart start) {
    std::string error;
    EXPECT_TRUE(support::StartProgram(process, start, &error)) << error;
}

std::string ShellSession::Ask(const std::string& line) {
    EXPECT_TRUE(process.Write(line + "\n"));
    std::string answer;
    const auto isAnswered = [&] {
        const std::string output = process.Output();
        const std::size_t end = output.find('\n', read);
        if (end == std::string::npos) {
            return false;
        }
        answer = output.substr(read, end - read);
        read = end + 1;
        return true;
    };
    EXPECT_TRUE(support::WaitUntil(isAnswered, kResultLimitMs)) << line << " is not answered";
    return answer;
}

support::ProgramResult ShellSession::End() {
    process.CloseInput();
    support::ProgramResult result;
    result.ended = process.Wait(kResultLimitMs, result.status);
    EXPECT_TRUE(result.ended);
    result.output = process.Output();
    result.errors = process.Errors();
    return result;
}

} // namespace scenario
