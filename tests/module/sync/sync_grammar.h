// sync_grammar.h - a second reading of the synchronisation file, to compare the reader with
#pragma once

#include "sync/feature_syncher.h"

#include <string>
#include <vector>

/// What must come of a file: result, entries and the lines behind the loading line.
struct SyncReading {
    int result = 0;
    std::vector<SyncFeatureEntry> entries;
    std::vector<std::string> lines;
};

/// Reads a content that is in memory as a whole by walking a flat table of the grammar's steps,
/// which fixed nesting allows: no recursion, no token history.
SyncReading ReadByTable(const std::string& content);
