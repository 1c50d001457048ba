// transcript.h - what the operations of a run returned and logged
#pragma once

#include <string>
#include <vector>

namespace sweep {

/// One operation of a run.
struct Step {
    std::string operation; ///< "Snap 1"
    std::string result;    ///< its numbers, separated by blanks
    std::vector<std::string> lines;
};

using Transcript = std::vector<Step>;

/// All of it, one operation after the other, its lines indented.
std::string Print(const Transcript& transcript);

/// The operations that differ from those of a sound run, each with its result and the lines that
/// are missing (-) and added (+). Both have the same operations. "nothing changes\n" without a
/// difference.
std::string Differences(const Transcript& sound, const Transcript& failed);

} // namespace sweep
