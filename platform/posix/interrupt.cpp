// interrupt.cpp - SIGINT and SIGTERM
#include "platform/interrupt.h"

#include <atomic>
#include <csignal>

namespace platform {

namespace {

std::atomic<unsigned> count{0};
std::atomic<unsigned> most{1};
static_assert(std::atomic<unsigned>::is_always_lock_free, "accessed in a signal handler");

void NoteRequest(int signal) {
    if (count.fetch_add(1) + 1 >= most.load()) {
        // The next one has its default effect.
        struct sigaction standard {};
        standard.sa_handler = SIG_DFL;
        sigemptyset(&standard.sa_mask);
        sigaction(signal, &standard, nullptr);
    }
}

} // namespace

bool InstallInterruptHandler(unsigned requests) {
    count.store(0);
    most.store(requests);
    struct sigaction action {};
    action.sa_handler = NoteRequest;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a program blocked in read must return to check for the request.
    action.sa_flags = 0;
    return sigaction(SIGINT, &action, nullptr) == 0 && sigaction(SIGTERM, &action, nullptr) == 0;
}

bool InterruptRequested() {
    return count.load() != 0;
}

unsigned InterruptCount() {
    return count.load();
}

} // namespace platform
