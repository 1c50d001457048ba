// clock.cpp - processor time from GetProcessTimes
#include "platform/clock.h"

#include <windows.h>

namespace platform {

namespace {

constexpr double kSecondsPerTick = 1e-7;

double Seconds(const FILETIME& time) {
    const ULARGE_INTEGER ticks{{time.dwLowDateTime, time.dwHighDateTime}};
    return static_cast<double>(ticks.QuadPart) * kSecondsPerTick;
}

} // namespace

double ProcessCpuSeconds() {
    FILETIME created{};
    FILETIME exited{};
    FILETIME kernel{};
    FILETIME user{};
    if (!GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user)) {
        return 0.0;
    }
    return Seconds(kernel) + Seconds(user);
}

} // namespace platform
