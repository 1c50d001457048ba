// console.cpp - standard streams need no preparation here
#include "platform/console.h"

namespace platform {

void PrepareStandardStreams() {}

} // namespace platform
