// program_runs.h - runs of the programs, on the gate with the simulator behind it
#pragma once

#include "tests/support/temporary_directory.h"
#include "tests/sweep/transcript.h"

#include <cstddef>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace sweep {

struct ProgramUse {
    std::string name;
    std::string program;
    std::vector<std::string> arguments; ///< with {directory} for the one of the run
    std::string input;
    /// How many calls of these names are made in every run; time decides about more of them. Of all
    /// other names every run makes the same number.
    std::map<std::string, unsigned> sure{};
    std::map<std::string, std::string> files{}; ///< in the directory of the run
    bool isOnFiles = false;                     ///< takes neither a camera SDK nor a configuration

    friend std::ostream& operator<<(std::ostream& stream, const ProgramUse& use) {
        return stream << use.name;
    }
};

using Environment = std::vector<std::pair<std::string, std::string>>;

/// A settings file of two features that the camera of the runs takes.
extern const char* const kSettingsOfARun;

/// Runs the program file of that name with the use's arguments, after writing its files. The result
/// is its exit status, the lines are those of its output and of its errors, without what differs
/// from run to run. Any thread.
Step RunOnGate(const ProgramUse& use, const std::string& file,
               const support::TemporaryDirectory& directory, const Environment& environment);

/// Calls `run` with 0 to `count` - 1, on several threads: programs wait most of their time.
void RunAtOnce(std::size_t count, const std::function<void(std::size_t)>& run);

} // namespace sweep
