// baseline.h - ratios kept for each processor, and what has become of them
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

/// By the name of what was measured: its speed as ratios to one or more others. To which does not
/// matter here, as long as it is the same, in the same order, every time.
using Ratios = std::map<std::string, std::vector<double>>;

/// A processor by the first one in the text of /proc/cpuinfo: "NAME, family F, model M, stepping
/// S", for several generations share one model name. Numbers that are missing there are left out.
std::string ProcessorName(std::istream& cpuInfo);
/// This machine's processor.
std::string ProcessorName();

/// Does what the arguments `--save FILE` and `--baseline FILE` ask for and returns the program's
/// exit status.
///
/// `--save` replaces what the file keeps for `processor` and leaves the other processors alone.
/// `--baseline` compares with what is kept for `processor`: status 1 and a line for each
/// measurement that is missing now and for each of which all ratios fell by more than 15 %; when
/// one fell alone, it is the other side that has become faster. When nothing is kept for
/// `processor`, it prints the ratios beside those of the other processors, and the status is 0.
///
/// Status 2 and FILE:LINE with the reason for a file that is damaged, FILE with the reason for one
/// that cannot be read or written; such a file is not changed.
int FinishRatios(int argc, char** argv, const Ratios& ratios,
                 const std::string& processor = ProcessorName());
