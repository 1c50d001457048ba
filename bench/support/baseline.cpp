// baseline.cpp - ratios that are kept, and what has become of them
#include "bench/support/baseline.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {

constexpr double kWorstFall = 0.85;

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
    for (const auto& [name, ratio] : ratios) {
        file << ratio << "\t" << name << "\n";
    }
    file.flush();
    return file.good();
}

int CompareRatios(const std::string& path, const Ratios& ratios) {
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line)) {
        return -1;
    }
    if (line != ProcessorName()) {
        std::printf("the baseline is from another processor: %s\n", line.c_str());
    }
    int fallen = 0;
    while (std::getline(file, line)) {
        std::istringstream text(line);
        double kept = 0;
        std::string name;
        if (!(text >> kept) || !std::getline(text >> std::ws, name)) {
            return -1;
        }
        const auto found = ratios.find(name);
        if (found != ratios.end() && found->second < kept * kWorstFall) {
            std::printf("FELL  %s: %.3f, was %.3f\n", name.c_str(), found->second, kept);
            ++fallen;
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
            const int fallen = CompareRatios(argv[at + 1], ratios);
            if (fallen < 0) {
                std::fprintf(stderr, "cannot read %s\n", argv[at + 1]);
            }
            status = fallen < 0 ? 2 : fallen > 0 ? 1 : status;
        }
    }
    return status;
}
