// input_lines.cpp - standard input, line by line
#include "apps/common/input_lines.h"

#include "platform/console.h"
#include "platform/interrupt.h"

#include <cstdint>
#include <utility>

namespace {

constexpr std::uint32_t kIdleMs = 10;

} // namespace

bool InputLines::Next(std::string& line) {
    std::size_t searched = 0;
    for (;;) {
        const std::size_t end = pending.find('\n', searched);
        if (end != std::string::npos) {
            line = pending.substr(0, end);
            pending.erase(0, end + 1);
            return true;
        }
        searched = pending.size();
        if (!ReadMore()) {
            break;
        }
    }
    line = std::exchange(pending, {});
    return !line.empty() && !platform::InterruptRequested();
}

bool InputLines::NextPiece(std::string& piece) {
    if (pending.empty() && !ReadMore()) {
        return false;
    }
    piece = std::exchange(pending, {});
    return true;
}

bool InputLines::ReadMore() {
    while (!ended && idle() && !platform::InterruptRequested()) {
        if (platform::WaitForInput(kIdleMs)) {
            char buffer[4096];
            const std::size_t count = platform::ReadInput(buffer, sizeof buffer);
            pending.append(buffer, count);
            ended = count == 0;
            return !ended;
        }
    }
    return false;
}
