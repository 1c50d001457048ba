// median_times.h - medians of interleaved repetitions
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// Code to be measured.
struct Contestant {
    std::string name;
    std::function<void(std::size_t turn)> run; ///< one run, number `turn`
};

/// Measures all contestants with Google Benchmark, with their repetitions interleaved at random.
/// Returns the median processor time of one run in nanoseconds for each, by name; processor time
/// depends less on other programs than elapsed time. `name` must be unique in the program.
std::map<std::string, double> MedianTimes(const std::string& name,
                                          const std::vector<Contestant>& contestants);

/// Must be called first in `main`.
void StartMeasuring(int argc, char** argv);
