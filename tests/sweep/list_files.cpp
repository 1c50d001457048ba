// list_files.cpp - the lists that runs are compared with, and those that they give
#include "tests/sweep/list_files.h"

#include "platform/environment.h"
#include "platform/file_system.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <exception>
#include <fstream>
#include <map>
#include <sstream>

namespace sweep {
namespace {

std::string TextOfList(const std::string& name) {
    const std::ifstream file(support::BuiltFile(platform::JoinPath("sweep", name + ".expected")),
                             std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

bool IsWholeSweep() {
    return platform::GetEnvironment("MIVORA_SWEEP") == "all";
}

ExpectedList LoadList(const std::string& name) {
    try {
        return ParseExpectedList(TextOfList(name));
    } catch (const std::exception& error) {
        ADD_FAILURE() << name << ".expected: " << error.what();
        return {};
    }
}

void StoreList(const std::string& name, const ExpectedList& found) {
    const std::string directory = platform::GetEnvironment("MIVORA_SWEEP_OUTPUT");
    if (!IsWholeSweep()) {
        return;
    }
    if (!directory.empty()) {
        std::ofstream(platform::JoinPath(directory, name + ".expected"), std::ios::binary)
            << Print(found);
    }
    EXPECT_TRUE(Print(found) == TextOfList(name)) << "the list has to be another one";
}

void Replace(std::string& text, const std::string& part, const std::string& by) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at)) {
        text.replace(at, part.size(), by);
        at += by.size();
    }
}

std::string WithoutErrorText(std::string text, PxnError code) {
    static const std::map<PxnError, std::string> texts{
        {-1, "Unexpected fault in PyxenC or driver"},
        {-10, "The feature type for this access function was wrong"},
        {-12, "Timeout during wait"}};
    Replace(text, texts.at(code), "{error}");
    Replace(text, std::to_string(code) + " ({error})", "{code} ({error})");
    return text;
}

} // namespace sweep
