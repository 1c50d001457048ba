// static_mutex.cpp - a mutex for static storage on POSIX
#include "platform/static_mutex.h"

namespace platform {

void StaticMutex::Lock() {
    pthread_mutex_lock(&native);
}

void StaticMutex::Unlock() {
    pthread_mutex_unlock(&native);
}

} // namespace platform
