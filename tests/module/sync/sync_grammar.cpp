// sync_grammar.cpp - a second reading of the synchronisation file, to compare the reader with
#include "tests/module/sync/sync_grammar.h"

#include <algorithm>
#include <optional>

using namespace pyxen;

namespace {

enum class Take { kNothing, kModule, kFeature, kDependencyModule, kDependencyFeature };
enum class Do { kNothing, kBeginEntry, kAddDependency, kFinishEntry, kAccept };

struct Step {
    const char* label;     // where other steps may go to, or null
    const char* literal;   // null: any text
    bool keyText;          // read in the mode that takes blanks
    Take take;             // which value the token is
    const char* otherwise; // the label to go to, with the same token, when it is another
    const char* fault;     // the line when it is another and there is no label; null: none
    Do action;             // once it has matched
    const char* next;      // null: the step below
};

constexpr const char* kNoDependencies = "0 FeatureSyncher::Init: missing Dependencies attribute";
constexpr const char* kNoComma = "0 FeatureSyncher::Init: comma missing";
constexpr const char* kNoBrace = "0 FeatureSyncher::Init: missing curly brace";
constexpr const char* kNoBracket = "0 FeatureSyncher::Init: missing closing bracket";
constexpr const char* kExtra =
    "0 FeatureSyncher::Init: extra file content after SyncFeatures definition";

// A key with its colon: four steps.
#define KEY(text, fault)                                                                           \
    {nullptr, "\"", false, Take::kNothing, nullptr, fault, Do::kNothing, nullptr},                 \
        {nullptr, text, true, Take::kNothing, nullptr, fault, Do::kNothing, nullptr},              \
        {nullptr, "\"", false, Take::kNothing, nullptr, fault, Do::kNothing, nullptr}, {           \
        nullptr, ":", false, Take::kNothing, nullptr, fault, Do::kNothing, nullptr                 \
    }
// A quoted value: three steps, of which an empty value needs no third.
#define VALUE(take, fault)                                                                         \
    {nullptr, "\"", false, Take::kNothing, nullptr, fault, Do::kNothing, nullptr},                 \
        {nullptr, nullptr, true, take, nullptr, fault, Do::kNothing, nullptr}, {                   \
        nullptr, "\"", false, Take::kNothing, nullptr, fault, Do::kNothing, nullptr                \
    }
#define SIGN(text, fault)                                                                          \
    { nullptr, text, false, Take::kNothing, nullptr, fault, Do::kNothing, nullptr }

constexpr Step kSteps[] = {
    SIGN("{", nullptr),
    KEY("SyncFeatures", nullptr),
    SIGN("[", nullptr),
    {nullptr, "{", false, Take::kNothing, "end", nullptr, Do::kNothing, nullptr},
    {"entry", "\"", false, Take::kNothing, nullptr, nullptr, Do::kBeginEntry, nullptr},
    {nullptr, "ModuleName", true, Take::kNothing, nullptr, nullptr, Do::kNothing, nullptr},
    SIGN("\"", nullptr),
    SIGN(":", nullptr),
    VALUE(Take::kModule, nullptr),
    SIGN(",", nullptr),
    KEY("FeatureName", nullptr),
    VALUE(Take::kFeature, nullptr),
    SIGN(",", kNoComma),
    KEY("Dependencies", kNoDependencies),
    SIGN("[", kNoDependencies),
    {nullptr, "{", false, Take::kNothing, "dependencies end", nullptr, Do::kNothing, nullptr},
    {"dependency", "\"", false, Take::kNothing, nullptr, kNoDependencies, Do::kNothing, nullptr},
    {nullptr, "ModuleName", true, Take::kNothing, nullptr, kNoDependencies, Do::kNothing, nullptr},
    SIGN("\"", kNoDependencies),
    SIGN(":", kNoDependencies),
    VALUE(Take::kDependencyModule, kNoDependencies),
    SIGN(",", kNoDependencies),
    KEY("FeatureName", kNoDependencies),
    VALUE(Take::kDependencyFeature, kNoDependencies),
    {nullptr, "}", false, Take::kNothing, nullptr, kNoDependencies, Do::kAddDependency, nullptr},
    {nullptr, ",", false, Take::kNothing, "dependencies end", nullptr, Do::kNothing, nullptr},
    {nullptr, "{", false, Take::kNothing, nullptr, kNoDependencies, Do::kNothing, "dependency"},
    {"dependencies end", "]", false, Take::kNothing, nullptr, kNoDependencies, Do::kFinishEntry,
     nullptr},
    SIGN("}", kNoBrace),
    {nullptr, ",", false, Take::kNothing, "end", nullptr, Do::kNothing, nullptr},
    {nullptr, "{", false, Take::kNothing, nullptr, nullptr, Do::kNothing, "entry"},
    {"end", "]", false, Take::kNothing, nullptr, kNoBracket, Do::kNothing, nullptr},
    SIGN("}", kNoBrace),
    {nullptr, "", false, Take::kNothing, nullptr, kExtra, Do::kAccept, nullptr},
};

const Step* StepAt(const std::string& label) {
    for (const Step& step : kSteps) {
        if (step.label != nullptr && step.label == label) {
            return &step;
        }
    }
    return nullptr;
}

/// Cuts the next token off the front of `rest`.
std::string CutToken(std::string& rest, bool keyText) {
    const std::string blank = keyText ? "" : " ";
    const std::string white = "\r\n\t" + blank;
    const std::string letters =
        std::string(keyText ? " " : "") + "_ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    rest.erase(0, std::min(rest.find_first_not_of(white), rest.size()));
    if (rest.empty()) {
        return "";
    }
    const std::size_t end = rest.find_first_not_of(letters);
    const std::size_t length = end == 0 ? 1 : std::min(end, rest.size());
    std::string token = rest.substr(0, length);
    const bool endsAtWhite =
        end != 0 && length < rest.size() && white.find(rest[length]) != std::string::npos;
    rest.erase(0, length + (endsAtWhite ? 1 : 0));
    return token;
}

/// A line ends a name where the name has a zero byte.
std::string Printed(const FeatureRef& reference) {
    return std::string(reference.ModuleName.c_str()) + "::" + reference.FeatureName.c_str();
}

void LogEntry(const SyncFeatureEntry& entry, std::vector<std::string>& lines) {
    lines.push_back("1 FeatureSyncher::Init: " + Printed(entry.watched) + " will be synched with ");
    for (const FeatureRef& dependency : entry.Dependencies) {
        lines.push_back("1   " + Printed(dependency));
    }
}

} // namespace

SyncReading ReadByTable(const std::string& content) {
    SyncReading reading;
    SyncFeatureEntry entry;
    FeatureRef dependency;
    std::string rest = content;
    std::optional<std::string> kept; // a token that was not taken
    for (const Step* step = kSteps;;) {
        const std::string token = kept ? *kept : CutToken(rest, step->keyText);
        kept.reset();
        if (step->literal != nullptr && token != step->literal) {
            if (step->otherwise == nullptr) {
                if (step->fault != nullptr) {
                    reading.lines.push_back(step->fault);
                }
                return reading;
            }
            kept = token;
            step = StepAt(step->otherwise);
            continue;
        }
        const bool emptyValue = step->literal == nullptr && token == "\"";
        const std::string value = emptyValue ? "" : token;
        switch (step->take) {
        case Take::kNothing:
            break;
        case Take::kModule:
            entry.watched.ModuleName = value;
            break;
        case Take::kFeature:
            entry.watched.FeatureName = value;
            break;
        case Take::kDependencyModule:
            dependency.ModuleName = value;
            break;
        case Take::kDependencyFeature:
            dependency.FeatureName = value;
            break;
        }
        switch (step->action) {
        case Do::kNothing:
            break;
        case Do::kBeginEntry:
            entry = {};
            break;
        case Do::kAddDependency:
            entry.Dependencies.push_back(dependency);
            break;
        case Do::kFinishEntry:
            reading.entries.push_back(entry);
            LogEntry(entry, reading.lines);
            break;
        case Do::kAccept:
            reading.result = 1;
            return reading;
        }
        step = step->next != nullptr ? StepAt(step->next) : step + (emptyValue ? 2 : 1);
    }
}
