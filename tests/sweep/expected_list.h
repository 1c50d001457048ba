// expected_list.h - what is expected of every failure in a scenario, as a file to review
#pragma once

#include "pxnc.h"

#include <compare>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sweep {

/// How a call of the SDK fails, and who else is there.
struct Variant {
    bool isDone = false; ///< reported as failed after it was done; else refused
    PxnError code = PxnErrSuccess;
    bool isBeside = false; ///< a second grabber acquires in the process

    auto operator<=>(const Variant&) const = default;
    /// "refused -10 beside"
    std::string Text() const;
};

/// All twelve, in the order of their comparison.
const std::vector<Variant>& AllVariants();

/// What one variant changes of the sound run: Differences, with the text of the code as {error}.
using Outcomes = std::map<Variant, std::string>;

/// A file of tests/sweep/lists:
///
///     sound:
///       OpenActCamera = 0
///         1 CMivoraKVNPyxenClass::OpenActCamera
///     calls:
///     PxnCameraOpen("cam-ext-1", 1)
///       refused:
///         OpenActCamera = 4
///           - 4 lines from: 1 Successfully opened camera! Handle = 0000000000100000
///     allocations:
///       outcome:
///         nothing changes
///
/// Calls with the same outcomes stand together, at the place of the first of them. Outcomes of
/// allocations are a set.
struct ExpectedList {
    std::string sound;
    std::string soundBeside; ///< its differences from `sound`
    std::vector<std::string> calls;
    std::map<std::string, Outcomes> outcomes; ///< by call
    std::set<std::string> allocations;
};

std::string Print(const ExpectedList& list);
/// Throws std::runtime_error with the line that is wrong.
ExpectedList ParseExpectedList(const std::string& text);

} // namespace sweep
