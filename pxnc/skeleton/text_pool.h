// text_pool.h - one pointer per distinct text, valid until the last shutdown
#pragma once

#include "platform/mutex.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace skeleton {

/// Owns every text that the SDK hands out. Equal texts share one pointer, so callers may compare
/// them instead of the characters. Any thread.
class TextPool {
public:
    /// The pointer of that text.
    const char* Intern(std::string_view text) EXCLUDES(mutex);

private:
    platform::Mutex mutex;
    // Nodes never move, so the pointers handed out stay valid while the set grows.
    std::unordered_set<std::string> texts GUARDED_BY(mutex);
};

} // namespace skeleton
