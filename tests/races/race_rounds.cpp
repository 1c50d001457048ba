// race_rounds.cpp - short contests of several threads, with random delays from a seed
#include "race_rounds.h"

#include "platform/environment.h"
#include "platform/event.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::uint64_t kFewRounds = 60;
constexpr std::uint32_t kLongestRoundMs = 60'000;

std::uint64_t NumberOf(const char* variable, std::uint64_t otherwise) {
    const std::string text = platform::GetEnvironment(variable);
    return text.empty() ? otherwise : std::strtoull(text.c_str(), nullptr, 10);
}

/// Ends the process when a round does not.
class RoundWatch {
public:
    explicit RoundWatch(std::uint64_t seedToName) : seed(seedToName) {}
    ~RoundWatch() {
        over.Set();
        thread.join();
    }
    RoundWatch(const RoundWatch&) = delete;
    RoundWatch& operator=(const RoundWatch&) = delete;

    void Begin(std::uint64_t number) { round = number; }

private:
    void Watch() {
        std::uint64_t last = round;
        while (!over.Wait(kLongestRoundMs)) {
            const std::uint64_t now = round;
            if (now == last) {
                std::fprintf(stderr, "round %llu of seed %llu does not end\n",
                             static_cast<unsigned long long>(now),
                             static_cast<unsigned long long>(seed));
                std::abort();
            }
            last = now;
        }
    }

    const std::uint64_t seed;
    std::atomic<std::uint64_t> round{0};
    platform::Event over;
    std::thread thread{[this] {
        Watch();
    }};
};

} // namespace

std::uint64_t Draw(RaceRandom& random, std::uint64_t below) {
    return random() % below;
}

void Hesitate(RaceRandom& random) {
    const std::uint64_t kind = Draw(random, 8);
    if (kind < 3) {
        return;
    }
    if (kind < 6) {
        for (std::uint64_t turns = Draw(random, 20); turns > 0; --turns) {
            std::this_thread::yield();
        }
        return;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(Draw(random, kind == 6 ? 50 : 500)));
}

void Contest(RaceRandom& random,
             std::initializer_list<std::function<void(RaceRandom&)>> contestants) {
    std::atomic<std::size_t> missing{contestants.size()};
    std::vector<std::thread> threads;
    for (const auto& contestant : contestants) {
        threads.emplace_back([&contestant, &missing, seed = random()] {
            RaceRandom own(seed);
            --missing;
            while (missing != 0) {
                std::this_thread::yield();
            }
            Hesitate(own);
            contestant(own);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void RunRounds(const std::function<void(RaceRandom& random)>& round) {
    const std::uint64_t rounds = NumberOf("MIVORA_RACE_ROUNDS", kFewRounds);
    const std::uint64_t seed = NumberOf("MIVORA_RACE_SEED", 1);
    const auto begin = std::chrono::steady_clock::now();
    RoundWatch watch(seed);
    std::uint64_t number = 0;
    while (number < rounds && !testing::Test::HasFailure()) {
        watch.Begin(++number);
        RaceRandom random(seed * 0x9E3779B97F4A7C15u + number);
        round(random);
        EXPECT_FALSE(testing::Test::HasFailure()) << "in round " << number << " of seed " << seed;
    }
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begin);
    std::printf("seed %llu: %llu rounds in %.1f s\n", static_cast<unsigned long long>(seed),
                static_cast<unsigned long long>(number), static_cast<double>(took.count()) / 1000);
}
