// frame_listener.cpp - whom a host has named to hear of each frame
#include "acquisition/frame_listener.h"

#include "sdk/no_throw.h"

#include <chrono>
#include <thread>

namespace pyxen {

namespace {

constinit thread_local unsigned receiversEntered = 0;

} // namespace

FrameListener::Entry& FrameListener::FindUnused() {
    for (const auto& entry : entries) {
        if (entry.get() != current && entry->visitors == 0) {
            return *entry;
        }
    }
    entries.push_back(std::make_unique<Entry>());
    return *entries.back();
}

void FrameListener::Install(MV_FRAME_RECEIVER receiver, void* context) {
    Entry* former = nullptr;
    unsigned installation = 0;
    {
        const platform::MutexLock lock(mutex);
        Entry* entry = nullptr;
        if (receiver) {
            entry = &FindUnused();
            entry->receiver = receiver;
            entry->context = context;
            ++entry->installations;
        }
        former = current.exchange(entry);
        installation = former ? former->installations.load() : 0;
    }
    if (!former || receiversEntered > 0) {
        return;
    }
    // An entry that has been used anew meanwhile had nobody inside.
    while (former->visitors != 0 && former->installations == installation) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void FrameListener::Deliver(const MV_FRAME_INFO& info) {
    for (Entry* entry = current; entry; entry = current) {
        ++entry->visitors;
        // Current still: from here on whoever replaces it waits.
        const bool isCurrent = current == entry;
        if (isCurrent) {
            ++receiversEntered;
            NoThrow(false, [&] {
                entry->receiver(&info, entry->context);
                return true;
            });
            --receiversEntered;
        }
        --entry->visitors;
        if (isCurrent) {
            return;
        }
    }
}

} // namespace pyxen
