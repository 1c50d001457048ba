// expected_list_test.cpp - lists are printed and read without loss
#include "tests/sweep/expected_list.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace sweep {
namespace {

ExpectedList MakeList() {
    ExpectedList list;
    list.sound = "Init = 0\n  1 begin\n";
    list.calls = {"PxnStartup(null)", "PxnShutdown()", "PxnStartup(null) #2"};
    for (const Variant& variant : AllVariants()) {
        const std::string outcome = variant.code == -10 ? "Init = 0\n" : "Init = 4\n  - 1 begin\n";
        list.outcomes["PxnStartup(null)"][variant] = outcome;
        list.outcomes["PxnStartup(null) #2"][variant] = outcome;
        list.outcomes["PxnShutdown()"][variant] = variant.isBeside ? "a\n" : "b\n";
    }
    list.allocations = {"nothing changes\n", "Init = 4\n"};
    return list;
}

TEST(ExpectedList, IsReadAsItWasPrinted) {
    const std::string text = Print(MakeList());
    EXPECT_EQ(Print(ParseExpectedList(text)), text);
    EXPECT_EQ(ParseExpectedList(text).outcomes, MakeList().outcomes);
    EXPECT_EQ(ParseExpectedList(text).allocations, MakeList().allocations);
    EXPECT_EQ(ParseExpectedList(text).sound, MakeList().sound);
}

TEST(ExpectedList, PutsCallsWithTheSameOutcomesTogether) {
    EXPECT_EQ(Print(MakeList()), "sound:\n  Init = 0\n    1 begin\n"
                                 "calls:\n"
                                 "PxnStartup(null)\n"
                                 "PxnStartup(null) #2\n"
                                 "  refused -1, refused -12, done -1, done -12:\n"
                                 "    Init = 4\n"
                                 "      - 1 begin\n"
                                 "  refused -10, done -10:\n"
                                 "    Init = 0\n"
                                 "PxnShutdown()\n"
                                 "  refused alone, done alone:\n"
                                 "    b\n"
                                 "  refused beside, done beside:\n"
                                 "    a\n"
                                 "allocations:\n"
                                 "  outcome:\n"
                                 "    Init = 4\n"
                                 "  outcome:\n"
                                 "    nothing changes\n");
}

TEST(ExpectedList, NamesAllVariantsThatOccurred) {
    ExpectedList list;
    list.calls = {"PxnStartup(null)"};
    list.outcomes["PxnStartup(null)"][{false, -1, false}] = "a\n";
    EXPECT_EQ(Print(list), "sound:\ncalls:\nPxnStartup(null)\n  any:\n    a\n");
}

TEST(ExpectedList, ThatIsWrongIsRefusedWithItsLine) {
    for (const char* const text : {"", "calls:\n", "sound:\ncalls:\nPxnStartup(null)\n",
                                   "sound:\ncalls:\nPxnStartup(null)\n  now and then:\n    a\n",
                                   "sound:\ncalls:\nallocations:\n  a\n"}) {
        EXPECT_THROW(ParseExpectedList(text), std::runtime_error) << text;
    }
}

} // namespace
} // namespace sweep
