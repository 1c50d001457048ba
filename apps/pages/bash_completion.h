// bash_completion.h - completes the words of a program's command line in bash
#pragma once

#include "apps/common/command_description.h"

#include <string>

/// A script for bash that completes commands, options, and values that are one of a few or files.
std::string BashCompletion(const CommandDescription& program);
