// receiver.cpp - receivers of an event and their removal
#include "receiver.h"

#include "platform/window_message.h"

namespace {

thread_local unsigned deliveryDepth = 0;

} // namespace

DeliveryScope::DeliveryScope() {
    ++deliveryDepth;
}

DeliveryScope::~DeliveryScope() {
    --deliveryDepth;
}

bool DeliveryScope::IsInside() {
    return deliveryDepth > 0;
}

MV_ERRCODE MessageReceivers::SetWindow(MV_WINDOW receiver, std::uint32_t message) {
    if (!platform::HasMessages()) {
        return MV_NOT_AVAILABLE;
    }
    const platform::MutexLock lock(mutex);
    window = message == 0 ? nullptr : receiver;
    windowMessage = message;
    NoteReceivers();
    return MV_OK;
}

MV_ERRCODE MessageReceivers::SetThread(std::uint32_t receiver, std::uint32_t message) {
    if (!platform::HasMessages()) {
        return MV_NOT_AVAILABLE;
    }
    const platform::MutexLock lock(mutex);
    threadId = message == 0 ? 0 : receiver;
    threadMessage = message;
    NoteReceivers();
    return MV_OK;
}

void MessageReceivers::NoteReceivers() {
    isAnySet.store(window || threadId != 0, std::memory_order_release);
}

void MessageReceivers::Post(std::uint64_t wParam, std::int64_t lParam) {
    if (!isAnySet.load(std::memory_order_acquire)) {
        return;
    }
    const platform::MutexLock lock(mutex);
    if (window) {
        platform::PostWindowMessage(window, windowMessage, wParam, lParam);
    }
    if (threadId != 0) {
        platform::PostToThread(threadId, threadMessage, wParam, lParam);
    }
}
