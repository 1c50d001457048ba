// baseline.h - ratios that are kept, and what has become of them
#pragma once

#include <map>
#include <string>

using Ratios = std::map<std::string, double>;

/// The processor's name as the system gives it.
std::string ProcessorName();

/// Writes the processor's name and the ratios, one a line. False when that fails.
bool SaveRatios(const std::string& path, const Ratios& ratios);

/// Compares with ratios that were saved and prints each one that fell by more than 15 %. Answers
/// how many did; -1 when the file cannot be read.
int CompareRatios(const std::string& path, const Ratios& ratios);

/// Does what the arguments `--save FILE` and `--baseline FILE` ask for; the program's exit status.
int FinishRatios(int argc, char** argv, const Ratios& ratios);
