// finding.h - what was found about one thing that a camera needs
#pragma once

#include "apps/common/json_text.h"

#include <string>
#include <vector>

enum class Severity {
    kOk,
    kWarning, ///< works, but not always or not as well as it could
    kProblem  ///< keeps a camera from working
};

struct Finding {
    Severity severity = Severity::kOk;
    std::string check;  ///< what was looked at: "library", "receive-buffer"
    std::string object; ///< which of several: an interface, a camera; empty for the only one
    std::string text;   ///< what is so
    std::string advice; ///< what to do about it, a command where there is one; empty when ok
};

/// What was done about a finding.
struct FixReport {
    bool isDone = false; ///< and read back
    std::string check;
    std::string object;
    std::string text; ///< what changed, or why nothing did
};

const char* SeverityText(Severity severity);
/// "warning  receive-buffer  sockets get ...", the advice on a line of its own; printable, with its
/// line end.
std::string FindingText(const Finding& finding);
std::string FixText(const FixReport& fix);
bool HasProblem(const std::vector<Finding>& findings);
/// {"schema":1,"ok":…,"findings":[…],"fixes":[…]}
JsonValue DoctorJson(const std::vector<Finding>& findings, const std::vector<FixReport>& fixes);
