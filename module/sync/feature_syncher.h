// feature_syncher.h - reads the feature synchronisation file
#pragma once

#include "sdk/logger.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

/// A feature named across modules, as written in the file.
struct FeatureRef {
    std::string ModuleName;
    std::string FeatureName;
};

/// One declaration: a watched feature and the features that take its value.
struct SyncFeatureEntry {
    FeatureRef watched;
    std::vector<FeatureRef> Dependencies;
};

/// Reads the file with a small tokenizer that can step back, and keeps its declarations in file
/// order. Used on the thread that opens the camera.
class FeatureSyncher {
public:
    /// Forgets all entries and reads the file at `path`. 1 when the whole file matched the
    /// grammar, else 0; entries completed before a fault are kept. `sink` may be null.
    int Init(const char* path, pyxen::Logger sink);
    /// Forgets all entries.
    void Clear();
    const std::vector<SyncFeatureEntry>& GetEntries() const { return entries; }
    /// The dependencies of the first entry of that name (case ignored), or null.
    const std::vector<FeatureRef>* FindSyncEntry(const char* moduleName,
                                                 const char* featureName) const;

private:
    int ReadFile(std::FILE* file);
    bool ReadEntry(std::FILE* file);
    void LogFault(pyxen::LogFormat<> text) const;
    void LogEntry(const SyncFeatureEntry& entry) const;
    const std::string& ReadToken(std::FILE* file, bool spaceMode);
    bool Expect(std::FILE* file, const char* literal);
    /// As Expect, but steps back to before the token when it is another.
    bool ExpectOptional(std::FILE* file, const char* literal);
    bool ParseKey(std::FILE* file, const char* name);
    bool ParseStringAttribute(std::FILE* file, const char* name, std::string& value);
    bool ParseModuleFeature(std::FILE* file, FeatureRef& reference);
    bool ParseDependencies(std::FILE* file, const char* name, std::vector<FeatureRef>& list);

    pyxen::Logger log;
    std::vector<SyncFeatureEntry> entries;
    // Only while a file is being read: the tokens since the newest optional element, and which of
    // them is read next.
    std::vector<std::string> tokenHistory;
    std::size_t cursor = 0;
};
