// event_text.h - calls and callbacks of a trace as text
#pragma once

#include "pxnc/trace/trace_reader.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace sdktrace {

/// How handles, frames, callbacks and contexts are written.
enum class Identity {
    kAddress, ///< as they were
    kNumber,  ///< counted in the order in which they appear, so that two sessions can be compared
};

enum class Detail {
    kShort, ///< long texts are cut, of records in a list stands the name
    kWhole,
};

/// Writes events as text on one line each, free of control characters. With Identity::kNumber it
/// has to be given all events of a thread in their order.
class EventText {
public:
    explicit EventText(Identity pointerIdentity, Detail valueDetail)
        : identity(pointerIdentity), detail(valueDetail) {}

    /// `PxnFeatureIntGet(handle=0x20, name="Width")`.
    std::string Begin(const Event& begin);
    /// ` = 0, value=640`; empty for a callback that returns nothing.
    std::string End(const Event& end);
    /// The same for values that are not in a trace.
    std::string Begin(Entry entry, const std::vector<Value>& arguments);

private:
    std::string Argument(const Parameter& parameter, const Value& value);
    std::string Result(const Parameter& parameter, const Value& value);
    std::string Word(Kind kind, std::uint64_t word);
    std::string Pointer(const char* what, std::uint64_t word);
    std::string Quoted(const std::string& text) const;
    std::string Bytes(const std::string& bytes) const;
    std::string FieldText(const Field& field, const Value& value);
    std::string Record(RecordKind kind, const Value& value);
    std::string RecordInList(RecordKind kind, const Value& value);
    std::string Frame(const Value& value);
    template <typename Element>
    std::string List(const Value& value, Element element);

    Identity identity;
    Detail detail;
    std::map<std::pair<std::string, std::uint64_t>, std::size_t> numbers;
};

} // namespace sdktrace
