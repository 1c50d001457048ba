#include "pxnc/simulator/typed_features.h"

#include "pxnc/simulator/module.h"
#include "pxnc/simulator/number_text.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <limits>

namespace pxsim {
namespace {

template <class T>
using Saved = std::map<std::int64_t, T>;

template <class T>
std::function<T()> Always(T value) {
    return [value] {
        return value;
    };
}

} // namespace

// ---- integer ----

IntFeature::IntFeature(Module& module, const char* name)
    : FeatureNode(module, name, PxnFeatureDataInt),
      min(Always(std::numeric_limits<std::int64_t>::min())),
      max(Always(std::numeric_limits<std::int64_t>::max())),
      increment(Always<std::int64_t>(1)) {
    info.representation = "Linear";
}

IntFeature& IntFeature::Value(std::int64_t initial) {
    store.SetInitial(initial);
    return *this;
}

IntFeature& IntFeature::ValueFor(std::int64_t selectorKey, std::int64_t initial) {
    store.SetInitialFor(selectorKey, initial);
    return *this;
}

IntFeature& IntFeature::Range(std::int64_t lowest, std::int64_t highest, std::int64_t step) {
    min = Always(lowest);
    max = Always(highest);
    increment = Always(step);
    return *this;
}

IntFeature& IntFeature::Min(Source source) {
    min = std::move(source);
    return *this;
}

IntFeature& IntFeature::Max(Source source) {
    max = std::move(source);
    return *this;
}

IntFeature& IntFeature::Increment(Source source) {
    increment = std::move(source);
    return *this;
}

IntFeature& IntFeature::ValidValues(std::vector<std::int64_t> values) {
    assert(!values.empty() && std::is_sorted(values.begin(), values.end()));
    Range(values.front(), values.back());
    validValues = std::move(values);
    return *this;
}

IntFeature& IntFeature::Computed(Source source) {
    computed = std::move(source);
    return *this;
}

IntFeature& IntFeature::Writes(std::function<PxnError(std::int64_t)> newSink) {
    sink = std::move(newSink);
    return *this;
}

std::int64_t IntFeature::Get() const {
    return computed ? computed() : store.Get(SelectorKey());
}

PxnError IntFeature::Set(std::int64_t value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    const std::int64_t low = min();
    const std::int64_t high = max();
    const std::uint64_t step = static_cast<std::uint64_t>(increment());
    const std::uint64_t distance =
        static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(low);
    if (value < low || value > high || distance % step != 0) {
        return PxnErrInvalidValue;
    }
    if (!validValues.empty() &&
        !std::binary_search(validValues.begin(), validValues.end(), value)) {
        return PxnErrInvalidValue;
    }
    if (sink) {
        const PxnError result = sink(value);
        if (result == PxnErrSuccess) {
            Changed();
        }
        return result;
    }
    Put(value);
    return PxnErrSuccess;
}

void IntFeature::Put(std::int64_t value) {
    if (store.Get(SelectorKey()) != value) {
        store.Set(SelectorKey(), value);
        Changed();
    }
}

std::int64_t IntFeature::Nearest(std::int64_t value) const {
    const std::int64_t low = min();
    const std::int64_t high = std::max(low, max());
    const std::int64_t inside = std::clamp(value, low, high);
    return low + (inside - low) / increment() * increment();
}

std::vector<std::string> IntFeature::States() const {
    std::vector<std::string> states;
    for (std::int64_t value = min(); value <= max(); value += increment()) {
        states.push_back(std::to_string(value));
    }
    return states;
}

bool IntFeature::PutText(const std::string& text) {
    std::int64_t value = 0;
    if (!ParseInt(text, value) || Nearest(value) != value) {
        return false;
    }
    Put(value);
    return true;
}

void IntFeature::Restore(const std::any& saved) {
    store.Restore(std::any_cast<const Saved<std::int64_t>&>(saved));
}

PxnError IntFeature::ToText(std::string& text) const {
    text = std::to_string(Get());
    return PxnErrSuccess;
}

PxnError IntFeature::FromText(const std::string& text) {
    std::int64_t value = 0;
    return ParseInt(text, value) ? Set(value) : PxnErrInvalidValue;
}

// ---- float ----

FloatFeature::FloatFeature(Module& module, const char* name)
    : FeatureNode(module, name, PxnFeatureDataFloat),
      min(Always(std::numeric_limits<double>::lowest())),
      max(Always(std::numeric_limits<double>::max())) {
    info.representation = "Linear";
}

FloatFeature& FloatFeature::Value(double initial) {
    store.SetInitial(initial);
    return *this;
}

FloatFeature& FloatFeature::ValueFor(std::int64_t selectorKey, double initial) {
    store.SetInitialFor(selectorKey, initial);
    return *this;
}

FloatFeature& FloatFeature::Range(double lowest, double highest) {
    min = Always(lowest);
    max = Always(highest);
    return *this;
}

FloatFeature& FloatFeature::Min(Source source) {
    min = std::move(source);
    return *this;
}

FloatFeature& FloatFeature::Max(Source source) {
    max = std::move(source);
    return *this;
}

FloatFeature& FloatFeature::Computed(Source source) {
    computed = std::move(source);
    return *this;
}

double FloatFeature::Get() const {
    return computed ? computed() : store.Get(SelectorKey());
}

PxnError FloatFeature::Set(double value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    if (!std::isfinite(value) || value < min() || value > max()) {
        return PxnErrInvalidValue;
    }
    Put(value);
    return PxnErrSuccess;
}

void FloatFeature::Put(double value) {
    if (store.Get(SelectorKey()) != value) {
        store.Set(SelectorKey(), value);
        Changed();
    }
}

bool FloatFeature::PutText(const std::string& text) {
    double value = 0;
    if (!ParseFloat(text, value) || !(value >= min() && value <= max())) {
        return false;
    }
    Put(value);
    return true;
}

void FloatFeature::Restore(const std::any& saved) {
    store.Restore(std::any_cast<const Saved<double>&>(saved));
}

PxnError FloatFeature::ToText(std::string& text) const {
    text = FormatFloat(Get());
    return PxnErrSuccess;
}

PxnError FloatFeature::FromText(const std::string& text) {
    double value = 0;
    return ParseFloat(text, value) ? Set(value) : PxnErrInvalidValue;
}

// ---- enumeration ----

EnumFeature::EnumFeature(Module& module, const char* name)
    : FeatureNode(module, name, PxnFeatureDataEnum) {}

EnumFeature& EnumFeature::Entries(const std::vector<const char*>& names) {
    std::vector<NamedValue> numbered;
    for (const char* name : names) {
        numbered.push_back({name, static_cast<std::int64_t>(numbered.size())});
    }
    return EntriesWithValues(numbered);
}

EnumFeature& EnumFeature::EntriesWithValues(const std::vector<NamedValue>& named) {
    for (const NamedValue& one : named) {
        Entry entry{};
        entry.info.name = owner.Strings().Intern(one.name);
        entry.info.displayName = entry.info.name;
        entry.info.tooltip = "";
        entry.info.description = "";
        entry.info.intValue = one.value;
        entry.info.visibility = PxnVisibilityBeginner;
        entries.push_back(std::move(entry));
    }
    return *this;
}

EnumFeature& EnumFeature::EntryText(const char* entry, const char* description) {
    Entry& found = entries[IndexOf(entry)];
    found.info.tooltip = description;
    found.info.description = description;
    return *this;
}

EnumFeature& EnumFeature::EntryAvailableWhen(const char* entry, std::function<bool()> condition) {
    entries[IndexOf(entry)].available = std::move(condition);
    return *this;
}

EnumFeature& EnumFeature::Value(const char* entry) {
    store.SetInitial(IndexOf(entry));
    return *this;
}

EnumFeature& EnumFeature::ValueFor(std::int64_t selectorKey, const char* entry) {
    store.SetInitialFor(selectorKey, IndexOf(entry));
    return *this;
}

EnumFeature& EnumFeature::Computed(std::function<const char*()> source) {
    computed = std::move(source);
    return *this;
}

bool EnumFeature::Is(const char* entry) const {
    return std::strcmp(Get(), entry) == 0;
}

bool EnumFeature::IsFor(std::int64_t selectorKey, const char* entry) const {
    return std::strcmp(entries[store.Get(selectorKey)].info.name, entry) == 0;
}

PxnError EnumFeature::Set(const char* entry) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    const Entry* found = FindEntry(entry);
    if (found == nullptr || (found->available && !found->available())) {
        return PxnErrInvalidValue;
    }
    Put(entry);
    return PxnErrSuccess;
}

void EnumFeature::Put(const char* entry) {
    const std::size_t index = IndexOf(entry);
    if (store.Get(SelectorKey()) != index) {
        store.Set(SelectorKey(), index);
        Changed();
    }
}

const EnumFeature::Entry* EnumFeature::FindEntry(const char* entry) const {
    auto found = std::find_if(entries.begin(), entries.end(), [entry](const Entry& candidate) {
        return std::strcmp(candidate.info.name, entry) == 0;
    });
    return found == entries.end() ? nullptr : &*found;
}

std::int64_t EnumFeature::SelectorValue() const {
    return static_cast<std::int64_t>(CurrentIndex());
}

std::vector<std::string> EnumFeature::States() const {
    std::vector<std::string> states;
    for (const Entry& entry : entries) {
        states.emplace_back(entry.info.name);
    }
    return states;
}

bool EnumFeature::PutText(const std::string& text) {
    if (FindEntry(text.c_str()) == nullptr) {
        return false;
    }
    Put(text.c_str());
    return true;
}

void EnumFeature::Restore(const std::any& saved) {
    store.Restore(std::any_cast<const Saved<std::size_t>&>(saved));
}

PxnError EnumFeature::ToText(std::string& text) const {
    text = Get();
    return PxnErrSuccess;
}

PxnError EnumFeature::FromText(const std::string& text) {
    return Set(text.c_str());
}

std::size_t EnumFeature::IndexOf(const char* entry) const {
    const Entry* found = FindEntry(entry);
    assert(found != nullptr);
    return static_cast<std::size_t>(found - entries.data());
}

std::size_t EnumFeature::CurrentIndex() const {
    return computed ? IndexOf(computed()) : store.Get(SelectorKey());
}

// ---- string ----

StringFeature::StringFeature(Module& module, const char* name)
    : FeatureNode(module, name, PxnFeatureDataString) {}

StringFeature& StringFeature::Value(std::string initial) {
    maxLength = std::max(maxLength, static_cast<std::uint32_t>(initial.size()));
    store.SetInitial(std::move(initial));
    return *this;
}

StringFeature& StringFeature::ValueFor(std::int64_t selectorKey, std::string initial) {
    store.SetInitialFor(selectorKey, std::move(initial));
    return *this;
}

StringFeature& StringFeature::MaxLength(std::uint32_t bytes) {
    maxLength = bytes;
    return *this;
}

StringFeature& StringFeature::Computed(Source source) {
    computed = std::move(source);
    return *this;
}

std::string StringFeature::Get() const {
    return computed ? computed() : store.Get(SelectorKey());
}

PxnError StringFeature::Set(const std::string& value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    if (value.size() > maxLength) {
        return PxnErrInvalidValue;
    }
    Put(value);
    return PxnErrSuccess;
}

void StringFeature::Put(std::string value) {
    if (store.Get(SelectorKey()) != value) {
        store.Set(SelectorKey(), std::move(value));
        Changed();
    }
}

bool StringFeature::PutText(const std::string& text) {
    if (text.size() > maxLength) {
        return false;
    }
    Put(text);
    return true;
}

void StringFeature::Restore(const std::any& saved) {
    store.Restore(std::any_cast<const Saved<std::string>&>(saved));
}

PxnError StringFeature::ToText(std::string& text) const {
    text = Get();
    return PxnErrSuccess;
}

PxnError StringFeature::FromText(const std::string& text) {
    return Set(text);
}

// ---- boolean ----

BoolFeature::BoolFeature(Module& module, const char* name)
    : FeatureNode(module, name, PxnFeatureDataBool) {}

BoolFeature& BoolFeature::Value(bool initial) {
    store.SetInitial(initial);
    return *this;
}

BoolFeature& BoolFeature::ValueFor(std::int64_t selectorKey, bool initial) {
    store.SetInitialFor(selectorKey, initial);
    return *this;
}

BoolFeature& BoolFeature::Computed(Source source) {
    computed = std::move(source);
    return *this;
}

BoolFeature& BoolFeature::Writes(std::function<PxnError(bool)> newSink) {
    sink = std::move(newSink);
    return *this;
}

bool BoolFeature::Get() const {
    return computed ? computed() : store.Get(SelectorKey());
}

PxnError BoolFeature::Set(bool value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    if (!sink) {
        Put(value);
        return PxnErrSuccess;
    }
    const PxnError result = sink(value);
    if (result == PxnErrSuccess) {
        Changed();
    }
    return result;
}

void BoolFeature::Put(bool value) {
    if (store.Get(SelectorKey()) != value) {
        store.Set(SelectorKey(), value);
        Changed();
    }
}

bool BoolFeature::PutText(const std::string& text) {
    bool value = false;
    if (!ParseBool(text, value)) {
        return false;
    }
    Put(value);
    return true;
}

void BoolFeature::Restore(const std::any& saved) {
    store.Restore(std::any_cast<const Saved<bool>&>(saved));
}

PxnError BoolFeature::ToText(std::string& text) const {
    text = Get() ? "true" : "false";
    return PxnErrSuccess;
}

PxnError BoolFeature::FromText(const std::string& text) {
    bool value = false;
    return ParseBool(text, value) ? Set(value) : PxnErrInvalidValue;
}

// ---- command ----

CommandFeature::CommandFeature(Module& module, const char* name)
    : FeatureNode(module, name, PxnFeatureDataCommand) {
    WriteOnly();
}

CommandFeature& CommandFeature::Runs(std::function<PxnError()> newAction) {
    action = std::move(newAction);
    return *this;
}

CommandFeature& CommandFeature::DoneWhen(std::function<bool()> condition) {
    done = std::move(condition);
    return *this;
}

PxnError CommandFeature::Run() {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    const PxnError result = action ? action() : PxnErrSuccess;
    if (result == PxnErrSuccess) {
        Changed();
    }
    return result;
}

// ---- raw ----

RawFeature::RawFeature(Module& module, const char* name)
    : FeatureNode(module, name, PxnFeatureDataRaw) {}

RawFeature& RawFeature::Value(std::string initial) {
    store.SetInitial(std::move(initial));
    return *this;
}

RawFeature& RawFeature::Computed(Source source) {
    computed = std::move(source);
    return *this;
}

std::string RawFeature::Get() const {
    return computed ? computed() : store.Get(SelectorKey());
}

PxnError RawFeature::Set(std::string value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    if (value.size() != Get().size()) {
        return PxnErrInvalidValue;
    }
    Put(std::move(value));
    return PxnErrSuccess;
}

void RawFeature::Put(std::string value) {
    if (store.Get(SelectorKey()) != value) {
        store.Set(SelectorKey(), std::move(value));
        Changed();
    }
}

bool RawFeature::PutText(const std::string& text) {
    std::string bytes;
    if (!FromHex(text, bytes) || bytes.size() != Get().size()) {
        return false;
    }
    Put(std::move(bytes));
    return true;
}

void RawFeature::Restore(const std::any& saved) {
    store.Restore(std::any_cast<const Saved<std::string>&>(saved));
}

PxnError RawFeature::ToText(std::string& text) const {
    text = ToHex(Get());
    return PxnErrSuccess;
}

PxnError RawFeature::FromText(const std::string& text) {
    std::string bytes;
    return FromHex(text, bytes) ? Set(std::move(bytes)) : PxnErrInvalidValue;
}

} // namespace pxsim
