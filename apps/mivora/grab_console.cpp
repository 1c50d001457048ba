// grab_console.cpp - what the runs of the command "grab" show while they run
#include "apps/mivora/grab_console.h"

#include <cstdio>

GrabConsole::GrabConsole(bool isProgressAskedFor, std::size_t runs)
    : latest(runs), display(isProgressAskedFor) {}

void GrabConsole::Show(std::size_t run, const GrabProgress& progress) {
    const platform::MutexLock lock(mutex);
    latest[run] = progress;
    GrabProgress all;
    for (const GrabProgress& one : latest) {
        all += one;
    }
    display.Show(all);
}

void GrabConsole::Say(const std::string& text) {
    const platform::MutexLock lock(mutex);
    display.Clear();
    std::fprintf(stderr, "mivora: %s\n", text.c_str());
}

void GrabConsole::Clear() {
    const platform::MutexLock lock(mutex);
    display.Clear();
}
