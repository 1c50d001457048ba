#include "pxnc/genicam/feature.h"

#include <cstdio>

namespace genicam {

namespace {

std::string Text(int64_t value) {
    return std::to_string(value);
}

std::string Text(double value) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.17g", value);
    return digits;
}

} // namespace

std::vector<std::string> Feature::Selected() {
    return {};
}

PxnError Feature::GetInt(int64_t&) {
    return PxnErrWrongType;
}
PxnError Feature::SetInt(int64_t) {
    return PxnErrWrongType;
}
PxnError Feature::GetIntRange(int64_t&, int64_t&) {
    return PxnErrWrongType;
}
PxnError Feature::GetIntIncrement(int64_t&) {
    return PxnErrWrongType;
}

PxnError Feature::GetIntValueSet(std::vector<int64_t>&) {
    return info.featureDataType == PxnFeatureDataInt ? PxnErrValidValueSetNotPresent
                                                     : PxnErrWrongType;
}

PxnError Feature::GetFloat(double&) {
    return PxnErrWrongType;
}
PxnError Feature::SetFloat(double) {
    return PxnErrWrongType;
}
PxnError Feature::GetFloatRange(double&, double&) {
    return PxnErrWrongType;
}

PxnError Feature::GetEnum(const char*&) {
    return PxnErrWrongType;
}
PxnError Feature::SetEnum(const char*) {
    return PxnErrWrongType;
}
PxnError Feature::GetEnumEntries(std::vector<const char*>&) {
    return PxnErrWrongType;
}
PxnError Feature::IsEnumEntryAvailable(const char*, bool&) {
    return PxnErrWrongType;
}
PxnError Feature::GetEnumEntry(const char*, PxnFeatureEnumEntry&) {
    return PxnErrWrongType;
}

PxnError Feature::GetString(std::string&) {
    return PxnErrWrongType;
}
PxnError Feature::SetString(const char*) {
    return PxnErrWrongType;
}
PxnError Feature::GetStringMaxLength(uint32_t&) {
    return PxnErrWrongType;
}

PxnError Feature::GetBool(bool&) {
    return PxnErrWrongType;
}
PxnError Feature::SetBool(bool) {
    return PxnErrWrongType;
}

PxnError Feature::Run() {
    return PxnErrWrongType;
}
PxnError Feature::IsDone(bool&) {
    return PxnErrWrongType;
}

PxnError Feature::GetRaw(std::vector<char>&) {
    return PxnErrWrongType;
}
PxnError Feature::SetRaw(const char*, uint32_t) {
    return PxnErrWrongType;
}
PxnError Feature::GetRawLength(uint32_t&) {
    return PxnErrWrongType;
}

PxnError Feature::RequireReadable() {
    bool readable = false;
    bool writeable = false;
    const PxnError result = GetAccess(readable, writeable);
    return result != PxnErrSuccess || readable ? result : PxnErrInvalidAccess;
}

PxnError Feature::RequireWriteable() {
    bool readable = false;
    bool writeable = false;
    const PxnError result = GetAccess(readable, writeable);
    return result != PxnErrSuccess || writeable ? result : PxnErrInvalidAccess;
}

std::string Feature::Snapshot() {
    bool readable = false;
    bool writeable = false;
    GetAccess(readable, writeable);
    std::string text = {readable ? 'r' : '-', writeable ? 'w' : '-'};
    const auto add = [&text](PxnError result, const auto&... parts) {
        if (result != PxnErrSuccess) {
            text += "|" + std::to_string(result);
        } else {
            ((text += "|" + Text(parts)), ...);
        }
    };
    int64_t ints[3] = {};
    double floats[2] = {};
    switch (info.featureDataType) {
    case PxnFeatureDataInt:
        add(readable ? GetInt(ints[0]) : PxnErrSuccess, ints[0]);
        add(GetIntRange(ints[0], ints[1]), ints[0], ints[1]);
        add(GetIntIncrement(ints[2]), ints[2]);
        break;
    case PxnFeatureDataFloat:
        add(readable ? GetFloat(floats[0]) : PxnErrSuccess, floats[0]);
        add(GetFloatRange(floats[0], floats[1]), floats[0], floats[1]);
        break;
    case PxnFeatureDataEnum: {
        const char* entry = "";
        std::vector<const char*> entries;
        text += "|";
        text += readable && GetEnum(entry) == PxnErrSuccess ? entry : "";
        GetEnumEntries(entries);
        for (const char* name : entries) {
            bool available = false;
            IsEnumEntryAvailable(name, available);
            text += available ? '1' : '0';
        }
        break;
    }
    case PxnFeatureDataString: {
        std::string value;
        text += "|";
        text += readable && GetString(value) == PxnErrSuccess ? value : "";
        break;
    }
    case PxnFeatureDataBool: {
        bool value = false;
        add(readable ? GetBool(value) : PxnErrSuccess, static_cast<int64_t>(value));
        break;
    }
    default:
        // Commands have no value, and raw contents are too long to be compared on every write.
        break;
    }
    return text;
}

} // namespace genicam
