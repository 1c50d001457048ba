// interrupt.cpp - signals that ask a program to stop
#include "platform/interrupt.h"

#include <atomic>
#include <csignal>

namespace platform {

namespace {

std::atomic<bool> requested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set inside a signal handler");

void NoteRequest(int) {
    requested.store(true);
}

} // namespace

bool InstallInterruptHandler() {
    requested.store(false);
    struct sigaction action {};
    action.sa_handler = NoteRequest;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a program that waits for the keyboard must come back and look.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    return sigaction(SIGINT, &action, nullptr) == 0 && sigaction(SIGTERM, &action, nullptr) == 0;
}

bool InterruptRequested() {
    return requested.load();
}

} // namespace platform
