// typed_features.cpp - features that are texts, booleans, commands or bytes
#include "pxnc/simulator/typed_features.h"

#include "pxnc/simulator/module.h"
#include "pxnc/skeleton/number_text.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace pxsim {

// ---- string ----

StringFeature::StringFeature(Module& module, const char* category, const FeatureRow& row,
                             const String& type)
    : Feature(module, category, row, PxnFeatureDataString),
      maxLength(std::max(type.maxLength, static_cast<std::uint32_t>(std::strlen(type.value)))) {
    store.SetInitial(type.value);
}

StringFeature& StringFeature::ValueFor(std::int64_t selectorKey, std::string initial) {
    store.SetInitialFor(selectorKey, std::move(initial));
    return *this;
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

BoolFeature::BoolFeature(Module& module, const char* category, const FeatureRow& row,
                         const Bool& type)
    : Feature(module, category, row, PxnFeatureDataBool) {
    store.SetInitial(type.value);
}

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

CommandFeature::CommandFeature(Module& module, const char* category, const FeatureRow& row,
                               const Command& type)
    : Feature(module, category, row, PxnFeatureDataCommand), startsOrStops(type.startsOrStops) {
    info.featureFlags &= ~static_cast<std::uint32_t>(PxnFeatureFlagRead);
    info.isStreamable = 0;
}

CommandFeature& CommandFeature::Runs(std::function<PxnError()> newAction) {
    action = std::move(newAction);
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
    isDone = true;
    return PxnErrSuccess;
}

// ---- raw ----

RawFeature::RawFeature(Module& module, const char* category, const FeatureRow& row, const Raw& type)
    : Feature(module, category, row, PxnFeatureDataRaw) {
    store.SetInitial(std::string(type.length, '\0'));
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
