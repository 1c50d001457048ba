// baseline.cpp - comparing measurements with a saved baseline
#include "bench/support/baseline.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {

constexpr double kWorstFall = 0.85;

struct Line {
    std::string name;
    std::vector<double> ratios;
};

// Parses "RATIO [RATIO ...] TAB NAME"; false when `text` is anything else.
bool Parse(const std::string& text, Line& line) {
    const std::size_t tab = text.find('\t');
    if (tab == std::string::npos) {
        return false;
    }
    line.name = text.substr(tab + 1);
    line.ratios.clear();
    std::istringstream numbers(text.substr(0, tab));
    for (double ratio = 0; numbers >> ratio;) {
        line.ratios.push_back(ratio);
    }
    return !line.ratios.empty() && numbers.eof();
}

bool HasFallen(const std::vector<double>& now, const std::vector<double>& kept) {
    return std::equal(now.begin(), now.end(), kept.begin(), kept.end(),
                      [](double ratio, double before) { return ratio < before * kWorstFall; });
}

std::string Join(const std::vector<double>& ratios) {
    std::ostringstream text;
    text.precision(3);
    for (const double& ratio : ratios) {
        text << (&ratio == ratios.data() ? "" : " ") << ratio;
    }
    return text.str();
}

std::string FirstLine(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

} // namespace

std::string ProcessorName() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("model name", 0) == 0) {
            return line.substr(line.find(':') + 2);
        }
    }
    return "unknown processor";
}

bool SaveRatios(const std::string& path, const Ratios& ratios) {
    std::ofstream file(path);
    file << ProcessorName() << "\n";
    for (const auto& [name, values] : ratios) {
        file << Join(values) << "\t" << name << "\n";
    }
    file.flush();
    return file.good();
}

std::optional<std::vector<std::string>> FindFallen(const std::string& path, const Ratios& ratios) {
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line)) {
        return std::nullopt;
    }
    std::vector<std::string> fallen;
    Line kept;
    while (std::getline(file, line)) {
        if (!Parse(line, kept)) {
            return std::nullopt;
        }
        const auto found = ratios.find(kept.name);
        if (found == ratios.end()) {
            fallen.push_back("GONE  " + kept.name);
        } else if (HasFallen(found->second, kept.ratios)) {
            fallen.push_back("FELL  " + kept.name + ": " + Join(found->second) + ", was " +
                             Join(kept.ratios));
        }
    }
    return fallen;
}

int FinishRatios(int argc, char** argv, const Ratios& ratios) {
    int status = 0;
    for (int at = 1; at + 1 < argc; ++at) {
        if (std::strcmp(argv[at], "--save") == 0 && !SaveRatios(argv[at + 1], ratios)) {
            std::fprintf(stderr, "cannot write %s\n", argv[at + 1]);
            status = 2;
        }
        if (std::strcmp(argv[at], "--baseline") == 0) {
            const auto fallen = FindFallen(argv[at + 1], ratios);
            if (!fallen) {
                std::fprintf(stderr, "cannot read %s\n", argv[at + 1]);
                status = 2;
                continue;
            }
            if (const std::string kept = FirstLine(argv[at + 1]); kept != ProcessorName()) {
                std::printf("the baseline is from another processor: %s\n", kept.c_str());
            }
            for (const std::string& line : *fallen) {
                std::printf("%s\n", line.c_str());
                status = 1;
            }
        }
    }
    return status;
}
