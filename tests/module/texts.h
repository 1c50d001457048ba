// texts.h - the lines of a log, the calls of an SDK
#pragma once

#include <string>
#include <vector>

using Texts = std::vector<std::string>;
