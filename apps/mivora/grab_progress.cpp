// grab_progress.cpp - shows how far a long run has come
#include "apps/mivora/grab_progress.h"

#include "platform/clock.h"
#include "platform/console.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kStandardError = 2;
constexpr std::uint64_t kOnATerminal = 200000000;
constexpr std::uint64_t kElsewhere = 1000000000;

} // namespace

std::string GrabProgress::Text(double megabytesPerSecond) const {
    std::string text = "taken " + std::to_string(taken);
    if (wanted != 0) {
        text += " of " + std::to_string(wanted);
    }
    text += ", lost " + std::to_string(lost);
    if (isRecorded) {
        text += ", written " + std::to_string(written) + ", waiting " + std::to_string(waiting);
    }
    char rate[32];
    std::snprintf(rate, sizeof rate, ", %.1f MB/s", megabytesPerSecond);
    return text + rate;
}

GrabProgress& GrabProgress::operator+=(const GrabProgress& other) {
    taken += other.taken;
    wanted += other.wanted;
    lost += other.lost;
    written += other.written;
    waiting += other.waiting;
    bytes += other.bytes;
    isRecorded = isRecorded || other.isRecorded;
    return *this;
}

ProgressDisplay::ProgressDisplay(bool isAskedFor)
    : isTerminal(platform::IsTerminal(kStandardError)),
      interval(isTerminal   ? kOnATerminal
               : isAskedFor ? kElsewhere
                            : 0),
      last(platform::MonotonicNanoseconds()) {}

void ProgressDisplay::Show(const GrabProgress& progress) {
    const std::uint64_t now = platform::MonotonicNanoseconds();
    if (interval == 0 || now - last < interval) {
        return;
    }
    const double seconds = static_cast<double>(now - last) / 1e9;
    const double megabytes =
        static_cast<double>(progress.bytes - std::min(progress.bytes, lastBytes)) / 1e6;
    last = now;
    lastBytes = progress.bytes;
    std::string text = progress.Text(megabytes / seconds);
    if (isTerminal) {
        const std::size_t length = text.size();
        text.resize(std::max(shown, length), ' '); // over what was there
        shown = length;
        std::fprintf(stderr, "\r%s", text.c_str());
    } else {
        std::fprintf(stderr, "mivora: %s\n", text.c_str());
    }
}

void ProgressDisplay::Clear() {
    if (shown != 0) {
        std::fprintf(stderr, "\r%s\r", std::string(shown, ' ').c_str());
        shown = 0;
    }
}
