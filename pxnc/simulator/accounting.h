// accounting.h - what went in and out since the first startup
#pragma once

#include <atomic>
#include <cstdint>

namespace pxsim {

/// Counters of one run of the SDK. Any thread; read together only when nothing runs.
///
/// Every announced frame ends revoked, every queued one completed or flushed.
struct Accounting {
    std::atomic<std::uint64_t> announced = 0;
    std::atomic<std::uint64_t> revoked = 0;        // by the host
    std::atomic<std::uint64_t> revokedByClose = 0; // left to the closing camera, or unplugged
    std::atomic<std::uint64_t> queued = 0;
    std::atomic<std::uint64_t> completed = 0;
    std::atomic<std::uint64_t> flushed = 0;
    std::atomic<std::uint64_t> dropped = 0; // came while no buffer was queued, or by a fault
    std::atomic<std::uint64_t> callbacks = 0;
    std::atomic<std::uint64_t> opened = 0;
    std::atomic<std::uint64_t> closed = 0;
    std::atomic<std::uint64_t> registered = 0;
    std::atomic<std::uint64_t> unregistered = 0;
    std::atomic<std::uint64_t> unregisteredByClose = 0;
};

} // namespace pxsim
