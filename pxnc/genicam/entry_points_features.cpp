// entry_points_features.cpp - features of any module
#include "pxnc/genicam/entry_point.h"

#include <algorithm>
#include <cstring>

using namespace genicam;

namespace {

/// Hands out a value whose length the caller may ask for with a null buffer.
PxnError CopyBytes(const char* bytes, std::size_t length, char* buffer, uint32_t bufferSize,
                   uint32_t* filled) {
    if (filled == nullptr || (buffer == nullptr && bufferSize != 0)) {
        return PxnErrBadParameter;
    }
    *filled = static_cast<uint32_t>(length);
    if (buffer == nullptr) {
        return PxnErrSuccess;
    }
    std::memcpy(buffer, bytes, std::min<std::size_t>(length, bufferSize));
    return length > bufferSize ? PxnErrMoreData : PxnErrSuccess;
}

} // namespace

PxnError PXN_CALL PxnFeaturesList(PxnHandle handle, PxnFeatureInfo* features, uint32_t capacity,
                                  uint32_t* found, uint32_t size) {
    return EnterModule(handle, [&](Library&, const Module& module) -> PxnError {
        if (size != sizeof *features) {
            return PxnErrStructSize;
        }
        std::vector<PxnFeatureInfo> infos;
        for (const auto& feature : module.AllFeatures()) {
            infos.push_back(feature->Info());
        }
        return CopyList(infos, features, capacity, found);
    });
}

PxnError PXN_CALL PxnFeatureInfoQuery(PxnHandle handle, const char* name, PxnFeatureInfo* info,
                                      uint32_t size) {
    return EnterFeature(handle, name, [&](const Feature& feature) -> PxnError {
        if (info == nullptr) {
            return PxnErrBadParameter;
        }
        if (size != sizeof *info) {
            return PxnErrStructSize;
        }
        *info = feature.Info();
        return PxnErrSuccess;
    });
}

PxnError PXN_CALL PxnFeatureListSelected(PxnHandle handle, const char* name,
                                         PxnFeatureInfo* features, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    return EnterModule(handle, [&](Library&, const Module& module) -> PxnError {
        if (name == nullptr) {
            return PxnErrBadParameter;
        }
        if (size != sizeof *features) {
            return PxnErrStructSize;
        }
        std::vector<PxnFeatureInfo> infos;
        const PxnError result = module.With(name, [&](Feature& feature) {
            for (const std::string& selected : feature.Selected()) {
                // A description may select what it does not show.
                if (const Feature* shown = module.Find(selected.c_str())) {
                    infos.push_back(shown->Info());
                }
            }
            return PxnErrSuccess;
        });
        return result != PxnErrSuccess ? result : CopyList(infos, features, capacity, found);
    });
}

PxnError PXN_CALL PxnFeatureAccessQuery(PxnHandle handle, const char* name, PxnBool* readable,
                                        PxnBool* writeable) {
    return EnterFeature(handle, name, [&](Feature& feature) -> PxnError {
        if (readable == nullptr || writeable == nullptr) {
            return PxnErrBadParameter;
        }
        bool canRead = false;
        bool canWrite = false;
        const PxnError result = feature.GetAccess(canRead, canWrite);
        *readable = canRead ? 1 : 0;
        *writeable = canWrite ? 1 : 0;
        return result;
    });
}

PxnError PXN_CALL PxnFeatureIntGet(PxnHandle handle, const char* name, int64_t* value) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        return value != nullptr ? feature.GetInt(*value) : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureIntSet(PxnHandle handle, const char* name, int64_t value) {
    return EnterWrite(handle, name, [&](Feature& feature) { return feature.SetInt(value); });
}

PxnError PXN_CALL PxnFeatureIntRangeQuery(PxnHandle handle, const char* name, int64_t* min,
                                          int64_t* max) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        return min != nullptr && max != nullptr ? feature.GetIntRange(*min, *max)
                                                : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureIntIncrementQuery(PxnHandle handle, const char* name,
                                              int64_t* increment) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        return increment != nullptr ? feature.GetIntIncrement(*increment)
                                    : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureIntValidValueSetQuery(PxnHandle handle, const char* name,
                                                  int64_t* buffer, uint32_t capacity,
                                                  uint32_t* setSize) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        std::vector<int64_t> values;
        const PxnError result = feature.GetIntValueSet(values);
        return result != PxnErrSuccess ? result : CopyList(values, buffer, capacity, setSize);
    });
}

PxnError PXN_CALL PxnFeatureFloatGet(PxnHandle handle, const char* name, double* value) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        return value != nullptr ? feature.GetFloat(*value) : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureFloatSet(PxnHandle handle, const char* name, double value) {
    return EnterWrite(handle, name, [&](Feature& feature) { return feature.SetFloat(value); });
}

PxnError PXN_CALL PxnFeatureFloatRangeQuery(PxnHandle handle, const char* name, double* min,
                                            double* max) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        return min != nullptr && max != nullptr ? feature.GetFloatRange(*min, *max)
                                                : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureEnumGet(PxnHandle handle, const char* name, const char** value) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        return value != nullptr ? feature.GetEnum(*value) : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureEnumSet(PxnHandle handle, const char* name, const char* value) {
    return EnterWrite(handle, name, [&](Feature& feature) {
        return value != nullptr ? feature.SetEnum(value) : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureEnumRangeQuery(PxnHandle handle, const char* name, const char** entries,
                                           uint32_t capacity, uint32_t* found) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        std::vector<const char*> names;
        const PxnError result = feature.GetEnumEntries(names);
        return result != PxnErrSuccess ? result : CopyList(names, entries, capacity, found);
    });
}

PxnError PXN_CALL PxnFeatureEnumIsAvailable(PxnHandle handle, const char* name, const char* entry,
                                            PxnBool* available) {
    return EnterFeature(handle, name, [&](Feature& feature) -> PxnError {
        if (entry == nullptr || available == nullptr) {
            return PxnErrBadParameter;
        }
        bool isAvailable = false;
        const PxnError result = feature.IsEnumEntryAvailable(entry, isAvailable);
        *available = isAvailable ? 1 : 0;
        return result;
    });
}

PxnError PXN_CALL PxnFeatureEnumAsInt(PxnHandle handle, const char* name, const char* entry,
                                      int64_t* value) {
    return EnterFeature(handle, name, [&](Feature& feature) -> PxnError {
        if (entry == nullptr || value == nullptr) {
            return PxnErrBadParameter;
        }
        PxnFeatureEnumEntry description = {};
        const PxnError result = feature.GetEnumEntry(entry, description);
        *value = description.intValue;
        return result;
    });
}

PxnError PXN_CALL PxnFeatureEnumAsString(PxnHandle handle, const char* name, int64_t value,
                                         const char** entry) {
    return EnterFeature(handle, name, [&](Feature& feature) -> PxnError {
        if (entry == nullptr) {
            return PxnErrBadParameter;
        }
        std::vector<const char*> names;
        if (const PxnError failed = feature.GetEnumEntries(names)) {
            return failed;
        }
        for (const char* candidate : names) {
            PxnFeatureEnumEntry description = {};
            if (feature.GetEnumEntry(candidate, description) == PxnErrSuccess &&
                description.intValue == value) {
                *entry = candidate;
                return PxnErrSuccess;
            }
        }
        return PxnErrNotFound;
    });
}

PxnError PXN_CALL PxnFeatureEnumEntryGet(PxnHandle handle, const char* name, const char* entry,
                                         PxnFeatureEnumEntry* info, uint32_t size) {
    return EnterFeature(handle, name, [&](Feature& feature) -> PxnError {
        if (entry == nullptr || info == nullptr) {
            return PxnErrBadParameter;
        }
        return size == sizeof *info ? feature.GetEnumEntry(entry, *info)
                                    : PxnError{PxnErrStructSize};
    });
}

PxnError PXN_CALL PxnFeatureStringGet(PxnHandle handle, const char* name, char* buffer,
                                      uint32_t bufferSize, uint32_t* sizeFilled) {
    return EnterFeature(handle, name, [&](Feature& feature) -> PxnError {
        std::string value;
        if (const PxnError failed = feature.GetString(value)) {
            return failed;
        }
        const PxnError result =
            CopyBytes(value.c_str(), value.size() + 1, buffer, bufferSize, sizeFilled);
        // A text that is cut short ends all the same.
        if (result == PxnErrMoreData && bufferSize > 0) {
            buffer[bufferSize - 1] = '\0';
        }
        return result;
    });
}

PxnError PXN_CALL PxnFeatureStringSet(PxnHandle handle, const char* name, const char* value) {
    return EnterWrite(handle, name, [&](Feature& feature) {
        return value != nullptr ? feature.SetString(value) : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureStringMaxlengthQuery(PxnHandle handle, const char* name,
                                                 uint32_t* maxLength) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        return maxLength != nullptr ? feature.GetStringMaxLength(*maxLength)
                                    : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureBoolGet(PxnHandle handle, const char* name, PxnBool* value) {
    return EnterFeature(handle, name, [&](Feature& feature) -> PxnError {
        if (value == nullptr) {
            return PxnErrBadParameter;
        }
        bool flag = false;
        const PxnError result = feature.GetBool(flag);
        *value = flag ? 1 : 0;
        return result;
    });
}

PxnError PXN_CALL PxnFeatureBoolSet(PxnHandle handle, const char* name, PxnBool value) {
    return EnterWrite(handle, name, [&](Feature& feature) { return feature.SetBool(value != 0); });
}

PxnError PXN_CALL PxnFeatureCommandRun(PxnHandle handle, const char* name) {
    return EnterWrite(handle, name, [](Feature& feature) { return feature.Run(); });
}

PxnError PXN_CALL PxnFeatureCommandIsDone(PxnHandle handle, const char* name, PxnBool* done) {
    return EnterFeature(handle, name, [&](Feature& feature) -> PxnError {
        if (done == nullptr) {
            return PxnErrBadParameter;
        }
        bool isDone = false;
        const PxnError result = feature.IsDone(isDone);
        *done = isDone ? 1 : 0;
        return result;
    });
}

PxnError PXN_CALL PxnFeatureRawGet(PxnHandle handle, const char* name, char* buffer,
                                   uint32_t bufferSize, uint32_t* sizeFilled) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        std::vector<char> bytes;
        const PxnError result = feature.GetRaw(bytes);
        return result != PxnErrSuccess
                   ? result
                   : CopyBytes(bytes.data(), bytes.size(), buffer, bufferSize, sizeFilled);
    });
}

PxnError PXN_CALL PxnFeatureRawSet(PxnHandle handle, const char* name, const char* buffer,
                                   uint32_t bufferSize) {
    return EnterWrite(handle, name, [&](Feature& feature) {
        return buffer != nullptr ? feature.SetRaw(buffer, bufferSize)
                                 : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureRawLengthQuery(PxnHandle handle, const char* name, uint32_t* length) {
    return EnterFeature(handle, name, [&](Feature& feature) {
        return length != nullptr ? feature.GetRawLength(*length) : PxnError{PxnErrBadParameter};
    });
}

PxnError PXN_CALL PxnFeatureInvalidationRegister(PxnHandle handle, const char* name,
                                                 PxnInvalidationCallback callback,
                                                 void* userContext) {
    return Enter([&](Library& library) -> PxnError {
        const std::shared_ptr<Module> module = library.Handles().Find(handle);
        if (module == nullptr || module->IsLost()) {
            return PxnErrBadHandle;
        }
        if (name == nullptr || callback == nullptr) {
            return PxnErrBadParameter;
        }
        return library.Changes().Register(module, name, callback, userContext);
    });
}

PxnError PXN_CALL PxnFeatureInvalidationUnregister(PxnHandle handle, const char* name,
                                                   PxnInvalidationCallback callback) {
    return Enter([&](Library& library) -> PxnError {
        // A vanished camera's registrations can be taken back all the same.
        if (library.Handles().Find(handle) == nullptr) {
            return PxnErrBadHandle;
        }
        if (name == nullptr || callback == nullptr) {
            return PxnErrBadParameter;
        }
        return library.Changes().Unregister(handle, name, callback);
    });
}
