// median_times.h - medians of interleaved repetitions
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// Something to be measured against its companions.
struct Contestant {
    std::string name;
    std::function<void(std::size_t turn)> run; ///< once; `turn` counts the calls
};

/// Measures all contestants in random order, again and again, by Google Benchmark. Answers the
/// median of each one's nanoseconds of processor time for one run, which other programs of the
/// machine disturb less than they do the time on the clock. `name` must be unlike that of any other
/// measurement of the program.
std::map<std::string, double> MedianTimes(const std::string& name,
                                          const std::vector<Contestant>& contestants);

/// To be called first in `main`.
void StartMeasuring(int argc, char** argv);
