// console.h - the standard streams of a command-line program
#pragma once

namespace platform {

/// Makes the standard streams carry bytes as they are, and a console show UTF-8. To be called once,
/// before anything is read or written.
void PrepareStandardStreams();

} // namespace platform
