// conformance_fixture.cpp - each check of a camera SDK as a test of its own
#include "tests/pxnc/conformance/conformance_fixture.h"

#include "platform/file_system.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <utility>

namespace conformance_tests {

std::unique_ptr<SdkUnderTest> ConformanceTest::sdk;

std::string LibraryOf(const std::string& home) {
    const std::string programs = platform::DirectoryOf(platform::ExecutablePath());
    return platform::JoinPath(platform::JoinPath(programs, home + "/Bin"),
                              platform::LibraryFileName("PxnC"));
}

SdkUnderTest::SdkUnderTest(const std::string& home,
                           std::unique_ptr<conformance::Driver> cameraDriver,
                           conformance::SessionOptions options)
    : driver(std::move(cameraDriver)) {
    std::string error;
    EXPECT_TRUE(library.Load(LibraryOf(home), error)) << error;
    session =
        std::make_unique<conformance::Session>(library.Functions(), *driver, std::move(options));
}

std::string FullName(const Check& check) {
    return std::string(check.group) + ": " + check.name;
}

std::string TestName(const testing::TestParamInfo<Check>& info) {
    std::string name;
    bool isWordStart = true;
    for (const char letter : FullName(info.param)) {
        if (std::isalnum(static_cast<unsigned char>(letter))) {
            name += static_cast<char>(isWordStart ? std::toupper(letter) : letter);
        }
        isWordStart = !std::isalnum(static_cast<unsigned char>(letter));
    }
    return name;
}

void ConformanceTest::Begin(std::unique_ptr<SdkUnderTest> sdkUnderTest) {
    sdk = std::move(sdkUnderTest);
}

void ConformanceTest::End() {
    for (const std::string& line : sdk->lines) {
        std::printf("%s\n", line.c_str());
    }
    sdk->session.reset(); // before its driver
    sdk.reset();
}

void ConformanceTest::ExpectKept(const Exceptions& but) {
    const Check& check = GetParam();
    const auto isIn = [&](const std::vector<std::string>& names) {
        return std::find(names.begin(), names.end(), FullName(check)) != names.end();
    };
    const char* const expected = isIn(but.areSkipped) ? "skipped"
                                 : isIn(but.fail)     ? "failed"
                                                      : "passed";
    const conformance::CheckReport report = RunCheck(check, *sdk->session);
    sdk->lines.push_back(CheckColumns(check) + OutcomeColumn(report));
    EXPECT_STREQ(OutcomeText(report.outcome), expected) << report.detail;
}

} // namespace conformance_tests
