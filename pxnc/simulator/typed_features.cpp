#include "pxnc/simulator/typed_features.h"

#include "pxnc/simulator/module.h"
#include "pxnc/skeleton/number_text.h"

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

PxnError StringFeature::GetString(std::string& value) {
    return Read(value, [this] { return Get(); });
}

PxnError StringFeature::GetStringMaxLength(std::uint32_t& bytes) {
    bytes = maxLength;
    return PxnErrSuccess;
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

PxnError BoolFeature::GetBool(bool& value) {
    return Read(value, [this] { return Get(); });
}

bool BoolFeature::PutText(const std::string& text) {
    bool value = false;
    if (!skeleton::ParseBool(text, value)) {
        return false;
    }
    Put(value);
    return true;
}

void BoolFeature::Restore(const std::any& saved) {
    store.Restore(std::any_cast<const SelectedValues<bool>::Saved&>(saved));
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

PxnError CommandFeature::IsDone(bool& isDone) {
    isDone = !done || done();
    return PxnErrSuccess;
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

PxnError RawFeature::GetRaw(std::vector<char>& bytes) {
    return Read(bytes, [this] {
        const std::string value = Get();
        return std::vector<char>(value.begin(), value.end());
    });
}

PxnError RawFeature::SetRaw(const char* bytes, std::uint32_t size) {
    return Set(std::string(bytes, size));
}

PxnError RawFeature::GetRawLength(std::uint32_t& length) {
    length = static_cast<std::uint32_t>(Get().size());
    return PxnErrSuccess;
}

bool RawFeature::PutText(const std::string& text) {
    std::string bytes;
    if (!skeleton::FromHex(text, bytes) || bytes.size() != Get().size()) {
        return false;
    }
    Put(std::move(bytes));
    return true;
}

void RawFeature::Restore(const std::any& saved) {
    store.Restore(std::any_cast<const SelectedValues<std::string>::Saved&>(saved));
}

} // namespace pxsim
