// start_gate.cpp - several acquisitions start at the same moment
#include "apps/mivora/start_gate.h"

bool StartGate::Pass() {
    const platform::MutexLock lock(mutex);
    ++prepared;
    changed.NotifyAll();
    while (prepared < runs && !isGivenUp) {
        changed.Wait(mutex);
    }
    return !isGivenUp;
}

bool StartGate::IsLastToStart() {
    const platform::MutexLock lock(mutex);
    return ++started == runs;
}

void StartGate::GiveUp() {
    const platform::MutexLock lock(mutex);
    isGivenUp = true;
    changed.NotifyAll();
}

bool StartGate::IsGivenUp() const {
    const platform::MutexLock lock(mutex);
    return isGivenUp;
}
