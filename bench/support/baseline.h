// baseline.h - comparing measurements with a saved baseline
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

/// Measured speeds by name, each as ratios to one or more reference speeds. The references must be
/// the same, in the same order, in every run.
using Ratios = std::map<std::string, std::vector<double>>;

/// The processor's name as reported by the system.
std::string ProcessorName();

/// Writes the processor's name and one line per measurement to a file. False on failure.
bool SaveRatios(const std::string& path, const Ratios& ratios);

/// Compares with saved ratios. Returns a line for each saved measurement that is missing and for
/// each one whose ratios have all fallen by more than 15 %. When only some have fallen, their
/// references have become faster. std::nullopt when the file cannot be read or is invalid.
std::optional<std::vector<std::string>> FindFallen(const std::string& path, const Ratios& ratios);

/// Executes the arguments `--save FILE` and `--baseline FILE`. Returns the exit status of the
/// program: 1 when a measurement has fallen or is missing, 2 when a file cannot be read or written,
/// else 0.
int FinishRatios(int argc, char** argv, const Ratios& ratios);
