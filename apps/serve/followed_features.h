// followed_features.h - which features follow which
#pragma once

#include "platform/mutex.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

/// Learns from the lines that the module logs when it opens a camera what its feature
/// synchronisation file declares: there is no other way to ask a module that was loaded. Any
/// thread.
class FollowedFeatures {
public:
    using Name = std::pair<std::string, std::string>; ///< module and feature

    void Clear();
    void TakeLine(int level, const std::string& text);
    /// Those that are declared for the first entry of this feature: a later one does not count.
    std::vector<Name> FollowersOf(const std::string& module, const std::string& feature) const;

private:
    struct Entry {
        Name watched;
        std::vector<Name> followers;
    };

    mutable platform::Mutex mutex;
    std::vector<Entry> entries GUARDED_BY(mutex);
    bool isInEntry GUARDED_BY(mutex) = false; // the last line was of an entry
};
