// list_files.h - the lists that runs are compared with, and those that they give
#pragma once

#include "tests/sweep/expected_list.h"

#include <string>

namespace sweep {

/// Whether all runs are made (MIVORA_SWEEP=all), or the part that fits into the tests.
bool IsWholeSweep();

/// The list tests/sweep/lists/NAME.expected. The test fails when there is none.
ExpectedList LoadList(const std::string& name);
/// In a whole sweep: writes what was found to the directory MIVORA_SWEEP_OUTPUT, and compares.
void StoreList(const std::string& name, const ExpectedList& found);

/// Replaces all occurrences.
void Replace(std::string& text, const std::string& part, const std::string& by);
/// A code and its text are the same for all codes in a list: {code} ({error}).
std::string WithoutErrorText(std::string text, PxnError code);

} // namespace sweep
