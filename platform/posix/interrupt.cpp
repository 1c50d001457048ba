// interrupt.cpp - SIGINT and SIGTERM
#include "platform/interrupt.h"

#include <atomic>
#include <csignal>

namespace platform {

namespace {

std::atomic<bool> requested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "accessed in a signal handler");

void NoteRequest(int) {
    requested.store(true);
}

} // namespace

bool InstallInterruptHandler() {
    requested.store(false);
    struct sigaction action {};
    action.sa_handler = NoteRequest;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a program blocked in read must return to check for the request. SA_RESETHAND:
    // the second signal has its default effect.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    return sigaction(SIGINT, &action, nullptr) == 0 && sigaction(SIGTERM, &action, nullptr) == 0;
}

bool InterruptRequested() {
    return requested.load();
}

} // namespace platform
