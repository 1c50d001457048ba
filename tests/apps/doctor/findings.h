// findings.h - reads findings in tests
#pragma once

#include "apps/doctor/finding.h"

#include <string>
#include <vector>

/// The findings of one check as "severity: text -> advice", one a line.
inline std::string FindingsOf(const std::vector<Finding>& findings, const std::string& check) {
    std::string lines;
    for (const Finding& finding : findings) {
        if (finding.check == check) {
            lines += std::string(SeverityText(finding.severity)) + ": " + finding.text +
                     (finding.advice.empty() ? "" : " -> " + finding.advice) + "\n";
        }
    }
    return lines;
}

/// The worst severity of one check; empty when it found nothing.
inline std::string WorstOf(const std::vector<Finding>& findings, const std::string& check) {
    std::string worst;
    for (const Finding& finding : findings) {
        if (finding.check == check &&
            (worst.empty() || finding.severity == Severity::kProblem || worst == "ok")) {
            worst = SeverityText(finding.severity);
        }
    }
    return worst;
}
