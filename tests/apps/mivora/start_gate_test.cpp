// start_gate_test.cpp - tests of acquisitions that start at the same moment
#include "apps/mivora/start_gate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

TEST(StartGate, OpensWhenAllArePrepared) {
    constexpr std::size_t kRuns = 4;
    StartGate gate(kRuns);
    std::atomic<std::size_t> prepared{0};
    std::atomic<std::size_t> last{0};
    std::vector<std::thread> runs;
    for (std::size_t i = 0; i < kRuns; ++i) {
        runs.emplace_back([&] {
            ++prepared;
            EXPECT_TRUE(gate.Pass());
            EXPECT_EQ(prepared, kRuns);
            last += gate.IsLastToStart() ? 1 : 0;
        });
    }
    for (std::thread& run : runs) {
        run.join();
    }
    EXPECT_EQ(last, 1u);
    EXPECT_FALSE(gate.IsGivenUp());
}

TEST(StartGate, HoldsNobodyBackWhenOneGivesUp) {
    StartGate gate(3);
    std::thread waiting([&] { EXPECT_FALSE(gate.Pass()); });
    gate.GiveUp();
    waiting.join();
    EXPECT_TRUE(gate.IsGivenUp());
    EXPECT_FALSE(gate.Pass());
}

} // namespace
