// baseline.cpp - the file of kept ratios: read, compared, replaced
//
// A file has a section for each processor:
//
//   [PROCESSOR]
//   RATIO [RATIO ...] TAB NAME
#include "bench/support/baseline.h"

#include "platform/file_system.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

constexpr double kWorstFall = 0.85;

using Sections = std::map<std::string, Ratios>; // by processor

/// A file that cannot be used; what() names it and says why.
class FileProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string Join(const std::vector<double>& ratios) {
    std::ostringstream text;
    text.precision(3);
    for (const double& ratio : ratios) {
        text << (&ratio == ratios.data() ? "" : " ") << ratio;
    }
    return text.str();
}

/// Reads a file line by line.
class Reader {
public:
    explicit Reader(const std::string& filePath) : path(filePath) {}

    Sections Read() {
        std::string content;
        std::string error;
        if (!platform::ReadWholeFile(path, content, &error)) {
            throw FileProblem(path + ": cannot be read: " + error);
        }
        std::istringstream lines(content);
        for (std::string line; std::getline(lines, line);) {
            ++number;
            if (line.empty()) {
                continue;
            }
            if (line.front() == '[' && line.back() == ']') {
                Begin(line.substr(1, line.size() - 2));
            } else {
                Add(line);
            }
        }
        Check(!sections.empty(), 1, "no processor");
        CheckSection();
        return std::move(sections);
    }

private:
    void Check(bool isSo, std::size_t line, const std::string& complaint) const {
        if (!isSo) {
            throw FileProblem(path + ":" + std::to_string(line) + ": " + complaint);
        }
    }
    /// An empty section would hide that nothing is compared.
    void CheckSection() const {
        Check(!section || !section->second.empty(), sectionLine,
              "nothing is kept for " + (section ? Quoted(section->first) : std::string()));
    }

    void Begin(const std::string& processor) {
        CheckSection();
        Check(!processor.empty(), number, "a processor without a name");
        const auto [place, isNew] = sections.try_emplace(processor);
        Check(isNew, number, Quoted(processor) + " is there twice");
        section = &*place;
        sectionLine = number;
    }

    void Add(const std::string& line) {
        const std::size_t tab = line.find('\t');
        Check(tab != std::string::npos, number,
              "neither \"[PROCESSOR]\" nor \"RATIO ... TAB NAME\"");
        Check(section, number, "a ratio before the first [PROCESSOR]");
        std::vector<double> ratios;
        std::istringstream words(line.substr(0, tab));
        for (std::string word; words >> word;) {
            ratios.push_back(Ratio(word));
        }
        const std::string name = line.substr(tab + 1);
        Check(!ratios.empty(), number, "no ratio");
        Check(!name.empty(), number, "a ratio without a name");
        const bool isNew = section->second.emplace(name, std::move(ratios)).second;
        Check(isNew, number, Quoted(name) + " is there twice");
    }

    double Ratio(const std::string& word) const {
        double ratio = 0;
        const char* const end = word.data() + word.size();
        const auto [last, code] = std::from_chars(word.data(), end, ratio);
        // NaN is not greater than 0.
        Check(code == std::errc() && last == end && ratio > 0 && std::isfinite(ratio), number,
              Quoted(word) + " is not a ratio");
        return ratio;
    }

    const std::string path;
    Sections sections;
    Sections::value_type* section = nullptr; // the current one
    std::size_t sectionLine = 0;
    std::size_t number = 0; // of the line
};

void Save(const std::string& path, const Ratios& ratios, const std::string& processor) {
    Sections sections;
    if (platform::PathExists(path)) {
        sections = Reader(path).Read();
    }
    sections[processor] = ratios;
    std::string text;
    for (const auto& [name, kept] : sections) {
        text += (text.empty() ? "[" : "\n[") + name + "]\n";
        for (const auto& [measured, values] : kept) {
            text += Join(values) + "\t" + measured + "\n";
        }
    }
    std::string error;
    if (!platform::ReplaceWholeFile(path, text, &error)) {
        throw FileProblem(path + ": cannot be written: " + error);
    }
}

bool HasFallen(const std::vector<double>& now, const std::vector<double>& kept) {
    return std::equal(now.begin(), now.end(), kept.begin(), kept.end(),
                      [](double ratio, double before) { return ratio < before * kWorstFall; });
}

/// Prints what fell or is gone; false when there is any.
bool CompareWithKept(const Ratios& ratios, const Ratios& kept) {
    bool isWell = true;
    for (const auto& [name, before] : kept) {
        const auto found = ratios.find(name);
        if (found == ratios.end()) {
            std::printf("GONE  %s\n", name.c_str());
            isWell = false;
        } else if (HasFallen(found->second, before)) {
            std::printf("FELL  %s: %s, was %s\n", name.c_str(), Join(found->second).c_str(),
                        Join(before).c_str());
            isWell = false;
        }
    }
    return isWell;
}

void ShowBeside(const Ratios& ratios, const std::string& processor, const Ratios& kept) {
    std::printf("beside %s:\n", processor.c_str());
    for (const auto& [name, there] : kept) {
        const auto found = ratios.find(name);
        std::printf("      %s: %s, there %s\n", name.c_str(),
                    found == ratios.end() ? "not measured" : Join(found->second).c_str(),
                    Join(there).c_str());
    }
}

/// False when something fell.
bool Compare(const std::string& path, const Ratios& ratios, const std::string& processor) {
    const Sections sections = Reader(path).Read();
    if (const auto kept = sections.find(processor); kept != sections.end()) {
        return CompareWithKept(ratios, kept->second);
    }
    std::printf("nothing is kept for %s\n", processor.c_str());
    for (const auto& [other, kept] : sections) {
        ShowBeside(ratios, other, kept);
    }
    return true;
}

} // namespace

std::string ProcessorName(std::istream& cpuInfo) {
    std::map<std::string, std::string> fields;
    for (std::string line; std::getline(cpuInfo, line) && !line.empty();) {
        const std::size_t colon = line.find(": ");
        if (colon != std::string::npos) {
            const std::string key = line.substr(0, line.find_last_not_of(" \t", colon - 1) + 1);
            fields.try_emplace(key, line.substr(colon + 2));
        }
    }
    const auto model = fields.find("model name");
    std::string name = model == fields.end() ? "unknown processor" : model->second;
    constexpr std::pair<const char*, const char*> kNumbers[] = {
        {"cpu family", "family"}, {"model", "model"}, {"stepping", "stepping"}};
    for (const auto& [key, label] : kNumbers) {
        if (const auto number = fields.find(key); number != fields.end()) {
            name.append(", ").append(label).append(" ").append(number->second);
        }
    }
    return name;
}

std::string ProcessorName() {
    std::ifstream file("/proc/cpuinfo");
    return ProcessorName(file);
}

int FinishRatios(int argc, char** argv, const Ratios& ratios, const std::string& processor) {
    int status = 0;
    try {
        for (int at = 1; at + 1 < argc; ++at) {
            if (std::strcmp(argv[at], "--save") == 0) {
                Save(argv[at + 1], ratios, processor);
            } else if (std::strcmp(argv[at], "--baseline") == 0 &&
                       !Compare(argv[at + 1], ratios, processor)) {
                status = 1;
            }
        }
    } catch (const FileProblem& problem) {
        std::fprintf(stderr, "%s\n", problem.what());
        status = 2;
    }
    return status;
}
