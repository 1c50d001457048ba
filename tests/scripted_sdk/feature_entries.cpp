// feature_entries.cpp - the scripted SDK's entries for features
#include "tests/scripted_sdk/call_text.h"
#include "tests/scripted_sdk/sdk_state.h"

#include <algorithm>
#include <cstring>

using namespace scripted;

namespace {

/// Runs an entry that reads one feature of a type (PxnFeatureDataUnknown: any).
template <typename Action>
PxnError Read(const Call& call, std::uint32_t type, Action action) {
    return State().RunFeature(call, type, [&](Feature& feature) -> PxnError {
        return feature.readable ? action(feature) : PxnErrInvalidAccess;
    });
}

/// Runs an entry that writes one feature of a type.
template <typename Action>
PxnError Write(const Call& call, std::uint32_t type, Action action) {
    return State().RunFeature(call, type, [&](Feature& feature) -> PxnError {
        return feature.writeable ? action(feature) : PxnErrInvalidAccess;
    });
}

/// Runs an entry that asks about a feature, whatever its access.
template <typename Action>
PxnError Query(const Call& call, std::uint32_t type, Action action) {
    return State().RunFeature(call, type,
                              [&](Feature& feature) -> PxnError { return action(feature); });
}

EnumEntry* FindEntry(Feature& feature, const std::string& name) {
    for (EnumEntry& entry : feature.entries) {
        if (entry.name == name) {
            return &entry;
        }
    }
    return nullptr;
}

template <typename... Rest>
Call FeatureCall(const char* entry, PxnHandle handle, const char* name, Rest... rest) {
    return {entry, handle, name, Arguments(handle, name, rest...)};
}

PxnError CopyOut(const char* data, std::size_t size, char* buffer, std::uint32_t capacity,
                 std::uint32_t* filled) {
    if (filled != nullptr) {
        *filled = static_cast<std::uint32_t>(size);
    }
    if (buffer == nullptr) {
        return PxnErrSuccess;
    }
    if (size > capacity) {
        return PxnErrMoreData;
    }
    std::copy_n(data, size, buffer);
    return PxnErrSuccess;
}

} // namespace

PxnError PXN_CALL PxnFeaturesList(PxnHandle handle, PxnFeatureInfo* features, uint32_t capacity,
                                  uint32_t* found, uint32_t size) {
    return State().Run({.entry = "PxnFeaturesList",
                        .handle = handle,
                        .arguments = Arguments(handle, Place{features}, capacity, size)},
                       [&](SdkState::Lock&) -> PxnError {
                           const Module* module = State().FindModule(handle);
                           if (module == nullptr) {
                               return PxnErrBadHandle;
                           }
                           const std::size_t count = module->features.size();
                           *found = State().Found("PxnFeaturesList", count);
                           if (features == nullptr) {
                               return PxnErrSuccess;
                           }
                           for (std::size_t i = 0; i < std::min<std::size_t>(count, capacity);
                                ++i) {
                               State().FillFeatureInfo(module->features[i], features[i]);
                           }
                           return *found > capacity ? PxnErrMoreData : PxnErrSuccess;
                       });
}

PxnError PXN_CALL PxnFeatureInfoQuery(PxnHandle handle, const char* name, PxnFeatureInfo* info,
                                      uint32_t size) {
    return Query(FeatureCall("PxnFeatureInfoQuery", handle, name, size), PxnFeatureDataUnknown,
                 [&](Feature& feature) {
                     State().FillFeatureInfo(feature, *info);
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureListSelected(PxnHandle handle, const char* name,
                                         PxnFeatureInfo* features, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return Query(
        FeatureCall("PxnFeatureListSelected", handle, name, Place{features}, capacity, size),
        PxnFeatureDataUnknown, [&](Feature& feature) {
            Module& module = *State().FindModule(handle);
            std::uint32_t count = 0;
            for (const std::string& selected : feature.selected) {
                const Feature* other = module.Find(selected);
                if (other == nullptr) {
                    continue;
                }
                if (features != nullptr && count < capacity) {
                    State().FillFeatureInfo(*other, features[count]);
                }
                ++count;
            }
            *found = count;
            return features != nullptr && count > capacity ? PxnErrMoreData : PxnErrSuccess;
        });
}

PxnError PXN_CALL PxnFeatureAccessQuery(PxnHandle handle, const char* name, PxnBool* readable,
                                        PxnBool* writeable) {
    return Query(FeatureCall("PxnFeatureAccessQuery", handle, name), PxnFeatureDataUnknown,
                 [&](Feature& feature) {
                     if (readable != nullptr) {
                         *readable = feature.readable ? 1 : 0;
                     }
                     if (writeable != nullptr) {
                         *writeable = feature.writeable ? 1 : 0;
                     }
                     return PxnErrSuccess;
                 });
}

// ---- integers ----

PxnError PXN_CALL PxnFeatureIntGet(PxnHandle handle, const char* name, int64_t* value) {
    return Read(FeatureCall("PxnFeatureIntGet", handle, name), PxnFeatureDataInt,
                [&](Feature& feature) {
                    *value = feature.intValue;
                    return PxnErrSuccess;
                });
}

PxnError PXN_CALL PxnFeatureIntSet(PxnHandle handle, const char* name, int64_t value) {
    return Write(FeatureCall("PxnFeatureIntSet", handle, name, value), PxnFeatureDataInt,
                 [&](Feature& feature) {
                     if (value < feature.intMin || value > feature.intMax) {
                         return PxnErrInvalidValue;
                     }
                     feature.intValue = value;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureIntRangeQuery(PxnHandle handle, const char* name, int64_t* min,
                                          int64_t* max) {
    return Query(FeatureCall("PxnFeatureIntRangeQuery", handle, name), PxnFeatureDataInt,
                 [&](Feature& feature) {
                     if (min != nullptr) {
                         *min = feature.intMin;
                     }
                     if (max != nullptr) {
                         *max = feature.intMax;
                     }
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureIntIncrementQuery(PxnHandle handle, const char* name,
                                              int64_t* increment) {
    return Query(FeatureCall("PxnFeatureIntIncrementQuery", handle, name), PxnFeatureDataInt,
                 [&](Feature& feature) {
                     *increment = feature.intIncrement;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureIntValidValueSetQuery(PxnHandle handle, const char* name,
                                                  int64_t* buffer, uint32_t capacity,
                                                  uint32_t* setSize) {
    return Query(
        FeatureCall("PxnFeatureIntValidValueSetQuery", handle, name, Place{buffer}, capacity),
        PxnFeatureDataInt, [&](Feature& feature) {
            if (feature.validValues.empty()) {
                return PxnErrValidValueSetNotPresent;
            }
            const std::size_t count = feature.validValues.size();
            *setSize = static_cast<std::uint32_t>(count);
            if (buffer == nullptr) {
                return PxnErrSuccess;
            }
            std::copy_n(feature.validValues.begin(), std::min<std::size_t>(count, capacity),
                        buffer);
            return count > capacity ? PxnErrMoreData : PxnErrSuccess;
        });
}

// ---- floats ----

PxnError PXN_CALL PxnFeatureFloatGet(PxnHandle handle, const char* name, double* value) {
    return Read(FeatureCall("PxnFeatureFloatGet", handle, name), PxnFeatureDataFloat,
                [&](Feature& feature) {
                    *value = feature.floatValue;
                    return PxnErrSuccess;
                });
}

PxnError PXN_CALL PxnFeatureFloatSet(PxnHandle handle, const char* name, double value) {
    return Write(FeatureCall("PxnFeatureFloatSet", handle, name, value), PxnFeatureDataFloat,
                 [&](Feature& feature) {
                     if (!(value >= feature.floatMin && value <= feature.floatMax)) {
                         return PxnErrInvalidValue;
                     }
                     feature.floatValue = value;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureFloatRangeQuery(PxnHandle handle, const char* name, double* min,
                                            double* max) {
    return Query(FeatureCall("PxnFeatureFloatRangeQuery", handle, name), PxnFeatureDataFloat,
                 [&](Feature& feature) {
                     if (min != nullptr) {
                         *min = feature.floatMin;
                     }
                     if (max != nullptr) {
                         *max = feature.floatMax;
                     }
                     return PxnErrSuccess;
                 });
}

// ---- enumerations ----

PxnError PXN_CALL PxnFeatureEnumGet(PxnHandle handle, const char* name, const char** value) {
    return Read(FeatureCall("PxnFeatureEnumGet", handle, name), PxnFeatureDataEnum,
                [&](Feature& feature) {
                    *value = State().Intern(feature.text);
                    return PxnErrSuccess;
                });
}

PxnError PXN_CALL PxnFeatureEnumSet(PxnHandle handle, const char* name, const char* value) {
    return Write(FeatureCall("PxnFeatureEnumSet", handle, name, value), PxnFeatureDataEnum,
                 [&](Feature& feature) {
                     const EnumEntry* entry = FindEntry(feature, value);
                     if (entry == nullptr || !entry->available) {
                         return PxnErrInvalidValue;
                     }
                     feature.text = value;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureEnumRangeQuery(PxnHandle handle, const char* name, const char** entries,
                                           uint32_t capacity, uint32_t* found) {
    return Query(FeatureCall("PxnFeatureEnumRangeQuery", handle, name, Place{entries}, capacity),
                 PxnFeatureDataEnum, [&](Feature& feature) {
                     const std::size_t count = feature.entries.size();
                     *found = State().Found("PxnFeatureEnumRangeQuery", count);
                     if (entries == nullptr) {
                         return PxnErrSuccess;
                     }
                     for (std::size_t i = 0; i < std::min<std::size_t>(count, capacity); ++i) {
                         entries[i] = State().Intern(feature.entries[i].name);
                     }
                     return *found > capacity ? PxnErrMoreData : PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureEnumIsAvailable(PxnHandle handle, const char* name, const char* entry,
                                            PxnBool* available) {
    return Query(FeatureCall("PxnFeatureEnumIsAvailable", handle, name, entry), PxnFeatureDataEnum,
                 [&](Feature& feature) {
                     const EnumEntry* found = FindEntry(feature, entry);
                     if (found == nullptr) {
                         return PxnErrInvalidValue;
                     }
                     *available = found->available ? 1 : 0;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureEnumAsInt(PxnHandle handle, const char* name, const char* entry,
                                      int64_t* value) {
    return Query(FeatureCall("PxnFeatureEnumAsInt", handle, name, entry), PxnFeatureDataEnum,
                 [&](Feature& feature) {
                     const EnumEntry* found = FindEntry(feature, entry);
                     if (found == nullptr) {
                         return PxnErrInvalidValue;
                     }
                     *value = found->intValue;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureEnumAsString(PxnHandle handle, const char* name, int64_t value,
                                         const char** entry) {
    return Query(FeatureCall("PxnFeatureEnumAsString", handle, name, value), PxnFeatureDataEnum,
                 [&](Feature& feature) {
                     for (const EnumEntry& known : feature.entries) {
                         if (known.intValue == value) {
                             *entry = State().Intern(known.name);
                             return PxnErrSuccess;
                         }
                     }
                     return PxnErrInvalidValue;
                 });
}

PxnError PXN_CALL PxnFeatureEnumEntryGet(PxnHandle handle, const char* name, const char* entry,
                                         PxnFeatureEnumEntry* info, uint32_t size) {
    return Query(FeatureCall("PxnFeatureEnumEntryGet", handle, name, entry, size),
                 PxnFeatureDataEnum, [&](Feature& feature) {
                     const EnumEntry* found = FindEntry(feature, entry);
                     if (found == nullptr) {
                         return PxnErrInvalidValue;
                     }
                     *info = {};
                     info->name = State().Intern(found->name);
                     info->displayName = State().Intern(found->displayName);
                     info->tooltip = State().Intern(found->tooltip);
                     info->description = State().Intern(found->description);
                     info->intValue = found->intValue;
                     info->visibility = found->visibility;
                     return PxnErrSuccess;
                 });
}

// ---- strings, booleans, commands, raw ----

PxnError PXN_CALL PxnFeatureStringGet(PxnHandle handle, const char* name, char* buffer,
                                      uint32_t bufferSize, uint32_t* sizeFilled) {
    return Read(FeatureCall("PxnFeatureStringGet", handle, name, Place{buffer}, bufferSize),
                PxnFeatureDataString, [&](Feature& feature) {
                    return CopyOut(feature.text.c_str(), feature.text.size() + 1, buffer,
                                   bufferSize, sizeFilled);
                });
}

PxnError PXN_CALL PxnFeatureStringSet(PxnHandle handle, const char* name, const char* value) {
    return Write(FeatureCall("PxnFeatureStringSet", handle, name, value), PxnFeatureDataString,
                 [&](Feature& feature) {
                     if (std::strlen(value) > feature.maxLength) {
                         return PxnErrInvalidValue;
                     }
                     feature.text = value;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureStringMaxlengthQuery(PxnHandle handle, const char* name,
                                                 uint32_t* maxLength) {
    return Query(FeatureCall("PxnFeatureStringMaxlengthQuery", handle, name), PxnFeatureDataString,
                 [&](Feature& feature) {
                     *maxLength = feature.maxLength;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureBoolGet(PxnHandle handle, const char* name, PxnBool* value) {
    return Read(FeatureCall("PxnFeatureBoolGet", handle, name), PxnFeatureDataBool,
                [&](Feature& feature) {
                    *value = feature.boolValue ? 1 : 0;
                    return PxnErrSuccess;
                });
}

PxnError PXN_CALL PxnFeatureBoolSet(PxnHandle handle, const char* name, PxnBool value) {
    return Write(FeatureCall("PxnFeatureBoolSet", handle, name, value), PxnFeatureDataBool,
                 [&](Feature& feature) {
                     feature.boolValue = value != 0;
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureCommandRun(PxnHandle handle, const char* name) {
    return Write(FeatureCall("PxnFeatureCommandRun", handle, name), PxnFeatureDataCommand,
                 [](Feature&) { return PxnErrSuccess; });
}

PxnError PXN_CALL PxnFeatureCommandIsDone(PxnHandle handle, const char* name, PxnBool* done) {
    return Query(FeatureCall("PxnFeatureCommandIsDone", handle, name), PxnFeatureDataCommand,
                 [&](Feature& feature) {
                     *done = 1;
                     if (!feature.doneSequence.empty()) {
                         *done = feature.doneSequence.front() ? 1 : 0;
                         feature.doneSequence.pop_front();
                     }
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureRawGet(PxnHandle handle, const char* name, char* buffer,
                                   uint32_t bufferSize, uint32_t* sizeFilled) {
    return Read(FeatureCall("PxnFeatureRawGet", handle, name, Place{buffer}, bufferSize),
                PxnFeatureDataRaw, [&](Feature& feature) {
                    return CopyOut(feature.raw.data(), feature.raw.size(), buffer, bufferSize,
                                   sizeFilled);
                });
}

PxnError PXN_CALL PxnFeatureRawSet(PxnHandle handle, const char* name, const char* buffer,
                                   uint32_t bufferSize) {
    return Write(FeatureCall("PxnFeatureRawSet", handle, name, Bytes{buffer, bufferSize}),
                 PxnFeatureDataRaw, [&](Feature& feature) {
                     feature.raw.assign(buffer, buffer + bufferSize);
                     return PxnErrSuccess;
                 });
}

PxnError PXN_CALL PxnFeatureRawLengthQuery(PxnHandle handle, const char* name, uint32_t* length) {
    return Query(FeatureCall("PxnFeatureRawLengthQuery", handle, name), PxnFeatureDataRaw,
                 [&](Feature& feature) {
                     *length = static_cast<std::uint32_t>(feature.raw.size());
                     return PxnErrSuccess;
                 });
}
