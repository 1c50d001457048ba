// sdk_checks.cpp - judges the library of the camera SDK, its entries and its start-up
#include "apps/doctor/checks.h"

namespace {

constexpr const char* kLibrary = "library";
constexpr const char* kEntries = "entries";
constexpr const char* kStartUp = "start-up";

void CheckLibrary(const SdkFacts& sdk, std::vector<Finding>& findings) {
    for (const SdkLibraryPlace& place : sdk.places) {
        if (place.problem.empty()) {
            findings.push_back({Severity::kOk, kLibrary, "", place.path, ""});
        } else {
            // It is a problem only when no later place has one.
            const bool isLast = &place == &sdk.places.back();
            findings.push_back(
                {isLast ? Severity::kProblem : Severity::kWarning, kLibrary, "", place.problem,
                 isLast ? (sdk.searched.empty() ? "" : sdk.searched + "; ") +
                              "name the SDK's directory, the one above Bin, by --sdk DIR or in the "
                              "environment: export PYXEN_HOME=DIR"
                        : "the next place is tried"});
        }
    }
}

void CheckEntries(const SdkFacts& sdk, std::vector<Finding>& findings) {
    if (sdk.places.empty() || !sdk.places.back().problem.empty()) {
        return;
    }
    if (sdk.missing.empty()) {
        findings.push_back({Severity::kOk, kEntries, "", "the library has all of them", ""});
        return;
    }
    for (const std::string& entry : sdk.missing) {
        findings.push_back({Severity::kProblem, kEntries, "", "the library does not have " + entry,
                            "install the version of the SDK that this module was made for"});
    }
}

/// What to do about a start-up that returned this code.
std::string StartUpAdvice(std::int32_t code) {
    switch (code) {
    case -3:
    case -29:
        return "correct PxnC.xml beside the file of --config; standard error names the line";
    case -16:
    case -37:
        return "install a transport layer for the camera; most come with its maker's SDK";
    case -14:
        return "end other programs that use the SDK, and try again";
    default:
        return "mivora --log - cameras shows what the SDK was asked";
    }
}

void CheckStartUp(const SdkFacts& sdk, std::vector<Finding>& findings) {
    if (sdk.places.empty() || !sdk.places.back().problem.empty() || !sdk.missing.empty()) {
        return;
    }
    if (sdk.initFailure.empty()) {
        findings.push_back({Severity::kOk, kStartUp, "", "the SDK starts", ""});
    } else if (sdk.startUp && *sdk.startUp != 0) {
        findings.push_back(
            {Severity::kProblem, kStartUp, "",
             "PxnStartup returns " + std::to_string(*sdk.startUp) + ": " + sdk.initFailure,
             StartUpAdvice(*sdk.startUp)});
    } else {
        findings.push_back({Severity::kProblem, kStartUp, "", sdk.initFailure,
                            "mivora --log - cameras shows what the SDK was asked"});
    }
}

} // namespace

std::vector<Finding> CheckSdk(const SdkFacts& sdk) {
    std::vector<Finding> findings;
    if (!sdk.moduleProblem.empty()) {
        findings.push_back({Severity::kProblem, "module", "", sdk.moduleProblem,
                            "name the grabber module's file by --module FILE"});
    }
    CheckLibrary(sdk, findings);
    CheckEntries(sdk, findings);
    if (sdk.moduleProblem.empty()) {
        CheckStartUp(sdk, findings);
    }
    return findings;
}
