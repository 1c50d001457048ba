// baseline.h - ratios that are kept, and what has become of them
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

/// By the name of what was measured: its speed as ratios to one or more others. To which does not
/// matter here, as long as it is the same, in the same order, every time.
using Ratios = std::map<std::string, std::vector<double>>;

/// The processor's name as the system gives it.
std::string ProcessorName();

/// Writes the processor's name and a line for each measurement. False when that fails.
bool SaveRatios(const std::string& path, const Ratios& ratios);

/// Compares with ratios that were saved. Answers a line for each measurement that is missing now
/// and for each of which all ratios fell by more than 15 %: when one fell alone, it is the other
/// that has become faster. Nothing when the file cannot be read.
std::optional<std::vector<std::string>> FindFallen(const std::string& path, const Ratios& ratios);

/// Does what the arguments `--save FILE` and `--baseline FILE` ask for; the program's exit status.
int FinishRatios(int argc, char** argv, const Ratios& ratios);
