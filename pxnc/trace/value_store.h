// value_store.h - results of a trace in the places that a host gives
#pragma once

#include "pxnc/trace/value.h"

#include <deque>
#include <set>
#include <string>
#include <vector>

namespace sdktrace {

/// Writes results as the SDK did. Texts are one pointer for each distinct one; they and lists of
/// streams live as long as the object. One thread at a time.
class ValueStore {
public:
    /// What EncodeResults wrote, into the places among `words`.
    void StoreResults(Entry entry, const Words& words, std::int32_t result,
                      const std::vector<Value>& results);
    /// What the SDK filled of a frame; pixels that were not traced become 0.
    void StoreFrame(PxnFrame& frame, const Value& traced);
    const char* Keep(const Value& text);

private:
    void StorePlace(const Parameter& parameter, const Words& words, char* place,
                    const Value& value);
    void StoreRecord(RecordKind kind, char* record, const Value& value);

    std::set<std::string> texts;
    std::deque<std::vector<PxnHandle>> streams;
};

} // namespace sdktrace
