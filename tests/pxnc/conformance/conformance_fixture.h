// conformance_fixture.h - each check of a camera SDK as a test of its own
#pragma once

#include "pxnc/conformance/checks.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace conformance {

/// What GoogleTest prints for a check.
inline void PrintTo(const Check& check, std::ostream* stream) {
    *stream << check.group << ": " << check.name;
}

} // namespace conformance

namespace conformance_tests {

using conformance::Check;

/// The library below a directory beside this program.
std::string LibraryOf(const std::string& home);

/// A loaded SDK and its session, whose stage the next check takes over.
struct SdkUnderTest {
    SdkUnderTest(const std::string& home, std::unique_ptr<conformance::Driver> cameraDriver,
                 conformance::SessionOptions options);

    conformance::SdkLibrary library;
    std::unique_ptr<conformance::Driver> driver;
    std::unique_ptr<conformance::Session> session;
    std::vector<std::string> lines; // of the table of results
};

/// "QueueAFrameThatIsNotAnnounced".
std::string TestName(const testing::TestParamInfo<Check>& info);
/// "queue: a frame that is not announced".
std::string FullName(const Check& check);

/// Checks by their full names that must not pass: both lists are exact.
struct Exceptions {
    std::vector<std::string> areSkipped;
    std::vector<std::string> fail;
};

/// Derived classes make the SDK before the first test of their suite, and end it after the last.
class ConformanceTest : public testing::TestWithParam<Check> {
protected:
    static void Begin(std::unique_ptr<SdkUnderTest> sdkUnderTest);
    /// Prints the results as a table.
    static void End();
    static SdkUnderTest& Sdk() { return *sdk; }

    /// Runs the check of this test, which must pass.
    static void ExpectKept(const Exceptions& but);

private:
    static std::unique_ptr<SdkUnderTest> sdk;
};

} // namespace conformance_tests
