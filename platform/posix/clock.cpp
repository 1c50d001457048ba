// clock.cpp - processor time from the POSIX process clock
#include "platform/clock.h"

#include <ctime>

namespace platform {

double ProcessCpuSeconds() {
    timespec used{};
    if (clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used) != 0) {
        return 0.0;
    }
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

} // namespace platform
