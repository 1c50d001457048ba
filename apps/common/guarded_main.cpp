// guarded_main.cpp - nothing that is thrown leaves a program's main function
#include "apps/common/guarded_main.h"

#include <cstdio>
#include <initializer_list>

void ReportFailure(const char* programName, const char* reason) noexcept {
    // One by one: formatting may allocate memory.
    for (const char* const part : {programName, ": ", reason, "\n"}) {
        std::fputs(part, stderr);
    }
}
