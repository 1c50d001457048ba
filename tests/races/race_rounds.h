// race_rounds.h - short contests of several threads, with random delays from a seed
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <random>

using RaceRandom = std::mt19937_64;

/// A random number below `below`.
std::uint64_t Draw(RaceRandom& random, std::uint64_t below);

/// Waits at random: not at all, for a few turns of other threads, or up to half a millisecond.
void Hesitate(RaceRandom& random);

/// Runs each of `contestants` on a thread of its own, all from the same moment on, each with random
/// numbers of its own. Returns when all have returned.
void Contest(RaceRandom& random,
             std::initializer_list<std::function<void(RaceRandom&)>> contestants);

/// Runs `round` MIVORA_RACE_ROUNDS times (a few without it), each time with the random numbers that
/// belong to MIVORA_RACE_SEED (1 without it) and the number of the round. Prints what it ran. Ends
/// after the first round in which an expectation of the test fails; the process ends with a message
/// when a round takes longer than a minute.
void RunRounds(const std::function<void(RaceRandom& random)>& round);
