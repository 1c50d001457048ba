#include "pxnc/simulator/typed_features.h"

#include "pxnc/simulator/module.h"
#include "pxnc/simulator/number_text.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace pxsim {

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
    store.Restore(std::any_cast<const SelectedValues<std::string>::Saved&>(saved));
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
    store.Restore(std::any_cast<const SelectedValues<bool>::Saved&>(saved));
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

CommandFeature& CommandFeature::StartsOrStops() {
    startsOrStops = true;
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
    store.Restore(std::any_cast<const SelectedValues<std::string>::Saved&>(saved));
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
