// places.h - how many may do a thing at the same time
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

/// A number of places that are taken and given back. Any thread.
class Places {
public:
    explicit Places(std::size_t count) : most(count) {}
    Places(const Places&) = delete;
    Places& operator=(const Places&) = delete;

    /// A place that is given back when the ticket is destroyed.
    class Ticket {
    public:
        explicit Ticket(Places& from) : places(from) {}
        ~Ticket() { --places.taken; }
        Ticket(const Ticket&) = delete;
        Ticket& operator=(const Ticket&) = delete;

    private:
        Places& places;
    };

    /// Null when all are taken. The places must outlive the ticket.
    std::unique_ptr<Ticket> TryTake() {
        if (taken++ >= most) {
            --taken;
            return nullptr;
        }
        return std::make_unique<Ticket>(*this);
    }
    std::size_t Taken() const { return taken.load(); }

private:
    const std::size_t most;
    std::atomic<std::size_t> taken{0};
};
