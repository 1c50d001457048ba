// guarded_main.h - nothing that is thrown leaves a program's main function
#pragma once

#include <exception>
#include <new>

/// Prints "NAME: REASON" on standard error without allocating memory.
void ReportFailure(const char* programName, const char* reason) noexcept;

/// Runs what a main function does and returns its exit status. What it throws is reported and gives
/// 1, as a failed operation does.
template <typename Body>
int GuardedMain(const char* programName, const Body& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        ReportFailure(programName, "out of memory");
    } catch (const std::exception& error) {
        ReportFailure(programName, error.what());
    }
    return 1;
}
