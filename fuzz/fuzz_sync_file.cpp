// fuzz_sync_file.cpp - reading feature synchronisation files
#include "fuzz/fuzz_file.h"
#include "sync/feature_syncher.h"

#include <cstdlib>

using namespace pyxen;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FuzzFile file(data, size);
    FeatureSyncher syncher;
    const int first = syncher.Init(file.Path().c_str(), nullptr);
    const std::size_t entries = syncher.GetEntries().size();
    for (const SyncFeatureEntry& entry : syncher.GetEntries()) {
        const auto* found = syncher.FindSyncEntry(entry.watched.ModuleName.c_str(),
                                                  entry.watched.FeatureName.c_str());
        if (!found) {
            std::abort(); // what was read must be found
        }
    }
    if (syncher.Init(file.Path().c_str(), nullptr) != first ||
        syncher.GetEntries().size() != entries) {
        std::abort(); // reading twice must give the same result
    }
    return 0;
}
