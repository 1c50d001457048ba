// text_pool.h - texts that live until the last shutdown
#pragma once

#include "platform/mutex.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace genicam {

/// Keeps one copy of every distinct text, so that equal texts are equal pointers. Any thread.
class TextPool {
public:
    /// The pool's copy of `text`, valid as long as the pool.
    const char* Intern(std::string_view text);

private:
    platform::Mutex mutex;
    // Nodes of the set never move, so the pointers stay valid while it grows.
    std::unordered_set<std::string> texts GUARDED_BY(mutex);
};

} // namespace genicam
