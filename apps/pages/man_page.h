// man_page.h - the manual page of a program
#pragma once

#include "apps/common/command_description.h"

#include <string>

/// The page for section 1, as text with the macros of man(7).
std::string ManPage(const CommandDescription& program, const std::string& version);
