// running_watch.h - "mivora watch", read while it runs
#pragma once

#include "platform/process.h"
#include "tests/scenario/program_test.h"
#include "tests/support/wait_until.h"

#include <cstdint>

namespace scenario {

/// Kills the program in its destructor if it is still running.
class RunningWatch {
public:
    explicit RunningWatch(const Arguments& arguments) {
        auto start = support::ProgramStart("mivora", arguments);
        start.environment.emplace_back("PYXEN_GENICAM_POLL_MS", "50");
        std::string error;
        EXPECT_TRUE(support::StartProgram(process, start, &error)) << error;
    }

    /// Waits for a line that ends with `text`, after those already waited for.
    testing::AssertionResult Prints(const std::string& text) {
        const auto isPrinted = [&] {
            const std::size_t at = process.Output().find(text + "\n", read);
            read = at == std::string::npos ? read : at + text.size() + 1;
            return at != std::string::npos;
        };
        if (support::WaitUntil(isPrinted, kLimitMs)) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << "no line \"" << text << "\" in\n"
                                           << process.Output() << process.Errors();
    }
    std::string Output() const { return process.Output(); }
    std::string Errors() const { return process.Errors(); }
    support::ProgramResult Interrupt() {
        support::ProgramResult result;
        EXPECT_TRUE(process.Interrupt());
        result.ended = process.Wait(kLimitMs, result.status);
        EXPECT_TRUE(result.ended);
        result.output = process.Output();
        result.errors = process.Errors();
        return result;
    }

private:
    static constexpr std::uint32_t kLimitMs = 60000;

    platform::Process process;
    std::size_t read = 0;
};

} // namespace scenario
