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
    : ValueFeature(module, category, row, PxnFeatureDataString),
      maxLength(std::max(type.maxLength, static_cast<std::uint32_t>(std::strlen(type.value)))) {
    Value(type.value);
}

PxnError StringFeature::SetString(const char* value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    return std::strlen(value) <= maxLength ? Write(value) : PxnError{PxnErrInvalidValue};
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

// ---- boolean ----

BoolFeature::BoolFeature(Module& module, const char* category, const FeatureRow& row,
                         const Bool& type)
    : ValueFeature(module, category, row, PxnFeatureDataBool) {
    Value(type.value);
}

PxnError BoolFeature::SetBool(bool value) {
    return IsWritable() ? Write(value) : PxnError{PxnErrInvalidAccess};
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
    : ValueFeature(module, category, row, PxnFeatureDataRaw) {
    Value(std::string(type.length, '\0'));
}

PxnError RawFeature::Set(std::string value) {
    if (!IsWritable()) {
        return PxnErrInvalidAccess;
    }
    if (value.size() != Get().size()) {
        return PxnErrInvalidValue;
    }
    return Write(std::move(value));
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

} // namespace pxsim
