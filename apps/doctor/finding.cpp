// finding.cpp - what was found about one thing that a camera needs
#include "apps/doctor/finding.h"

#include "platform/printable_text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace {

std::string Columns(const char* first, const std::string& check, const std::string& object,
                    const std::string& text) {
    char columns[64];
    std::snprintf(columns, sizeof columns, "%-8s %-15s ", first, check.c_str());
    return columns + (object.empty() ? "" : platform::PrintableText(object) + ": ") +
           platform::PrintableText(text) + "\n";
}

} // namespace

const char* SeverityText(Severity severity) {
    switch (severity) {
    case Severity::kOk:
        return "ok";
    case Severity::kWarning:
        return "warning";
    case Severity::kProblem:
        break;
    }
    return "problem";
}

std::string FindingText(const Finding& finding) {
    return Columns(SeverityText(finding.severity), finding.check, finding.object, finding.text) +
           (finding.advice.empty() ? "" : Columns("", "", "", "-> " + finding.advice));
}

std::string FixText(const FixReport& fix) {
    return Columns(fix.isDone ? "fixed" : "unfixed", fix.check, fix.object, fix.text);
}

bool HasProblem(const std::vector<Finding>& findings) {
    return std::any_of(findings.begin(), findings.end(), [](const Finding& finding) {
        return finding.severity == Severity::kProblem;
    });
}

JsonValue DoctorJson(const std::vector<Finding>& findings, const std::vector<FixReport>& fixes) {
    std::vector<JsonValue> found;
    found.reserve(findings.size());
    for (const Finding& finding : findings) {
        found.push_back(JsonObject({{"severity", SeverityText(finding.severity)},
                                    {"check", finding.check},
                                    {"object", finding.object},
                                    {"text", finding.text},
                                    {"advice", finding.advice}}));
    }
    std::vector<JsonValue> done;
    done.reserve(fixes.size());
    for (const FixReport& fix : fixes) {
        done.push_back(JsonObject({{"fixed", fix.isDone},
                                   {"check", fix.check},
                                   {"object", fix.object},
                                   {"text", fix.text}}));
    }
    return JsonObject({{"schema", 1},
                       {"ok", !HasProblem(findings)},
                       {"findings", JsonArray(found)},
                       {"fixes", JsonArray(done)}});
}
