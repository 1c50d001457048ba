// one_line.h - texts of several lines in one
#pragma once

#include <string>

/// The lines without their indentation, separated by "; ".
std::string OneLine(const std::string& lines);
