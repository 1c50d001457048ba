// expected_list.cpp - what is expected of every failure in a scenario, as a file to review
#include "tests/sweep/expected_list.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace sweep {
namespace {

constexpr const char* kSound = "sound:";
constexpr const char* kSoundBeside = "sound, beside another grabber:";
constexpr const char* kCalls = "calls:";
constexpr const char* kAllocations = "allocations:";
constexpr const char* kOutcome = "outcome:";

std::string Indented(const std::string& text, const char* indent) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        result += indent + line + "\n";
    }
    return result;
}

/// A part of the variants, named by what they have in common.
struct Group {
    std::string name;
    std::vector<Variant> variants;
};

/// All groups that have a name, the largest first.
std::vector<Group> MakeGroups() {
    std::vector<Group> groups;
    const auto add = [&](const std::string& name, auto belongs) {
        Group group{name, {}};
        std::copy_if(AllVariants().begin(), AllVariants().end(), std::back_inserter(group.variants),
                     belongs);
        groups.push_back(std::move(group));
    };
    add("any", [](const Variant&) { return true; });
    for (const bool isDone : {false, true}) {
        const std::string kind = isDone ? "done" : "refused";
        add(kind, [=](const Variant& variant) { return variant.isDone == isDone; });
    }
    for (const bool isDone : {false, true}) {
        for (const bool isBeside : {false, true}) {
            add(std::string(isDone ? "done" : "refused") + (isBeside ? " beside" : " alone"),
                [=](const Variant& variant) {
                    return variant.isDone == isDone && variant.isBeside == isBeside;
                });
        }
    }
    for (const bool isDone : {false, true}) {
        for (const PxnError code : {-1, -10, -12}) {
            add(std::string(isDone ? "done " : "refused ") + std::to_string(code),
                [=](const Variant& variant) {
                    return variant.isDone == isDone && variant.code == code;
                });
        }
    }
    for (const Variant& one : AllVariants()) {
        add(one.Text(), [=](const Variant& variant) { return variant == one; });
    }
    return groups;
}

const std::vector<Group>& Groups() {
    static const std::vector<Group> groups = MakeGroups();
    return groups;
}

/// Names the variants of `outcomes` that have this one.
std::string NameOf(const Outcomes& outcomes, const std::string& outcome) {
    std::set<Variant> rest;
    for (const auto& [variant, text] : outcomes) {
        if (text == outcome) {
            rest.insert(variant);
        }
    }
    std::string name;
    for (const Group& group : Groups()) {
        // Variants that did not occur may be named as well.
        const auto fits = [&](const Variant& variant) {
            return rest.count(variant) != 0 || outcomes.count(variant) == 0;
        };
        const auto isLeft = [&](const Variant& variant) {
            return rest.count(variant) != 0;
        };
        if (std::all_of(group.variants.begin(), group.variants.end(), fits) &&
            std::any_of(group.variants.begin(), group.variants.end(), isLeft)) {
            name += (name.empty() ? "" : ", ") + group.name;
            for (const Variant& variant : group.variants) {
                rest.erase(variant);
            }
        }
    }
    return name;
}

std::string PrintOutcomes(const Outcomes& outcomes) {
    std::string text;
    std::set<std::string> printed;
    for (const auto& [variant, outcome] : outcomes) {
        if (printed.insert(outcome).second) {
            text += "  " + NameOf(outcomes, outcome) + ":\n" + Indented(outcome, "    ");
        }
    }
    return text;
}

/// Reads a file line by line.
class Reader {
public:
    explicit Reader(const std::string& text) {
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
    }

    ExpectedList Read() {
        ExpectedList list;
        while (IsMore() && Line().starts_with("#")) {
            ++at;
        }
        Take(kSound);
        list.sound = TakeIndented("  ");
        if (IsMore() && Line() == kSoundBeside) {
            ++at;
            list.soundBeside = TakeIndented("  ");
        }
        Take(kCalls);
        while (IsMore() && Line() != kAllocations) {
            ReadCalls(list);
        }
        if (IsMore()) {
            ++at;
            while (IsMore()) {
                Take(std::string("  ") + kOutcome);
                list.allocations.insert(TakeIndented("    "));
            }
        }
        return list;
    }

private:
    bool IsMore() const { return at < lines.size(); }
    const std::string& Line() const { return lines[at]; }
    [[noreturn]] void Refuse() const {
        throw std::runtime_error("line " + std::to_string(at + 1) +
                                 " is wrong: " + (IsMore() ? Line() : "the end"));
    }
    void Take(const std::string& line) {
        if (!IsMore() || Line() != line) {
            Refuse();
        }
        ++at;
    }
    std::string TakeIndented(const std::string& indent) {
        std::string text;
        for (; IsMore() && Line().starts_with(indent); ++at) {
            text += Line().substr(indent.size()) + "\n";
        }
        return text;
    }

    void ReadCalls(ExpectedList& list) {
        std::vector<std::string> calls;
        for (; IsMore() && !Line().starts_with(" "); ++at) {
            calls.push_back(Line());
        }
        Outcomes outcomes;
        while (IsMore() && Line().starts_with("  ")) {
            const std::vector<Variant> variants = ReadVariants();
            const std::string outcome = TakeIndented("    ");
            for (const Variant& variant : variants) {
                outcomes[variant] = outcome;
            }
        }
        if (calls.empty() || outcomes.empty()) {
            Refuse();
        }
        for (const std::string& call : calls) {
            list.calls.push_back(call);
            list.outcomes[call] = outcomes;
        }
    }

    std::vector<Variant> ReadVariants() {
        std::string names = Line();
        if (names.back() != ':') {
            Refuse();
        }
        names.pop_back();
        std::vector<Variant> variants;
        std::istringstream stream(names.substr(2));
        for (std::string name; std::getline(stream, name, ',');) {
            name.erase(0, name.find_first_not_of(' '));
            const auto group = std::find_if(Groups().begin(), Groups().end(),
                                            [&](const Group& one) { return one.name == name; });
            if (group == Groups().end()) {
                Refuse();
            }
            variants.insert(variants.end(), group->variants.begin(), group->variants.end());
        }
        ++at;
        return variants;
    }

    std::vector<std::string> lines;
    std::size_t at = 0;
};

} // namespace

std::string Variant::Text() const {
    return std::string(isDone ? "done " : "refused ") + std::to_string(code) +
           (isBeside ? " beside" : " alone");
}

const std::vector<Variant>& AllVariants() {
    static const std::vector<Variant> variants = [] {
        std::set<Variant> all;
        for (const bool isDone : {false, true}) {
            for (const PxnError code : {-1, -10, -12}) {
                for (const bool isBeside : {false, true}) {
                    all.insert({isDone, code, isBeside});
                }
            }
        }
        return std::vector<Variant>(all.begin(), all.end());
    }();
    return variants;
}

std::string Print(const ExpectedList& list) {
    std::string text = std::string(kSound) + "\n" + Indented(list.sound, "  ");
    if (!list.soundBeside.empty()) {
        text += std::string(kSoundBeside) + "\n" + Indented(list.soundBeside, "  ");
    }
    text += std::string(kCalls) + "\n";
    std::map<std::string, std::vector<std::string>> callsOf; // by their outcomes
    for (const std::string& call : list.calls) {
        callsOf[PrintOutcomes(list.outcomes.at(call))].push_back(call);
    }
    for (const std::string& call : list.calls) {
        const std::string outcomes = PrintOutcomes(list.outcomes.at(call));
        const std::vector<std::string>& together = callsOf[outcomes];
        if (together.front() != call) {
            continue;
        }
        for (const std::string& one : together) {
            text += one + "\n";
        }
        text += outcomes;
    }
    if (!list.allocations.empty()) {
        text += std::string(kAllocations) + "\n";
        for (const std::string& outcome : list.allocations) {
            text += std::string("  ") + kOutcome + "\n" + Indented(outcome, "    ");
        }
    }
    return text;
}

ExpectedList ParseExpectedList(const std::string& text) {
    return Reader(text).Read();
}

} // namespace sweep
