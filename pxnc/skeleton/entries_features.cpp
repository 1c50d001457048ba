// entries_features.cpp - features of any module
#include "pxnc/skeleton/entry.h"

#include <cstring>
#include <string>

using namespace skeleton;

namespace {

/// Hands out bytes whose number the caller may ask for with a null buffer.
PxnError CopyBytes(const char* entry, const char* bytes, std::size_t length, char* buffer,
                   std::uint32_t bufferSize, std::uint32_t* filled) {
    *filled = TheImplementation().ReportedCount(entry, static_cast<std::uint32_t>(length));
    if (!buffer) {
        return PxnErrSuccess;
    }
    if (const std::size_t copied = std::min<std::size_t>(length, bufferSize)) {
        std::memcpy(buffer, bytes, copied);
    }
    return length > bufferSize ? PxnErrMoreData : PxnErrSuccess;
}

PxnError CopyFlag(PxnError result, bool flag, PxnBool* place) {
    if (result == PxnErrSuccess) {
        *place = flag ? 1 : 0;
    }
    return result;
}

bool IsBytePlace(const char* buffer, std::uint32_t bufferSize, const std::uint32_t* filled) {
    return filled && (buffer || bufferSize == 0);
}

} // namespace

// ---- descriptions ----

PxnError PXN_CALL PxnFeaturesList(PxnHandle handle, PxnFeatureInfo* features, uint32_t capacity,
                                  uint32_t* found, uint32_t size) {
    const char* const entry = __func__;
    return EnterModule(
        {entry,
         {Argument::Handle(handle), Argument::Place(features), Argument::Size(capacity),
          Argument::Size(size)}},
        handle, IsListPlace(features, capacity, found), [&](Backend&, const Target& target) {
            return size == sizeof *features
                       ? CopyList(entry, target.module->ListFeatures(), features, capacity, found)
                       : PxnError{PxnErrStructSize};
        });
}

PxnError PXN_CALL PxnFeatureInfoQuery(PxnHandle handle, const char* name, PxnFeatureInfo* info,
                                      uint32_t size) {
    return EnterDescription(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Size(size)}},
        handle, name, PxnFeatureDataUnknown, true, info, size, [&](const Feature& feature) {
            *info = feature.Info();
            return PxnErrSuccess;
        });
}

PxnError PXN_CALL PxnFeatureListSelected(PxnHandle handle, const char* name,
                                         PxnFeatureInfo* features, uint32_t capacity,
                                         uint32_t* found, uint32_t size) {
    const char* const entry = __func__;
    return EnterModule(
        {entry,
         {Argument::Handle(handle), Argument::Feature(name), Argument::Place(features),
          Argument::Size(capacity), Argument::Size(size)}},
        handle, name && IsListPlace(features, capacity, found),
        [&](Backend&, const Target& target) -> PxnError {
            if (size != sizeof *features) {
                return PxnErrStructSize;
            }
            std::vector<std::string> names;
            const PxnError result = target.module->With(name, [&](Feature& feature) {
                names = feature.Selected();
                return PxnErrSuccess;
            });
            std::vector<PxnFeatureInfo> selected;
            for (const std::string& one : names) {
                // A description may select what it does not show.
                target.module->With(one.c_str(), [&](const Feature& feature) {
                    selected.push_back(feature.Info());
                    return PxnErrSuccess;
                });
            }
            return result == PxnErrSuccess ? CopyList(entry, selected, features, capacity, found)
                                           : result;
        });
}

PxnError PXN_CALL PxnFeatureAccessQuery(PxnHandle handle, const char* name, PxnBool* readable,
                                        PxnBool* writeable) {
    return EnterModule({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                       name && (readable || writeable), [&](Backend&, const Target& target) {
                           return target.module->With(name, [&](Feature& feature) {
                               bool canRead = false;
                               bool canWrite = false;
                               const PxnError result = feature.GetAccess(canRead, canWrite);
                               if (readable) {
                                   *readable = canRead ? 1 : 0;
                               }
                               if (writeable) {
                                   *writeable = canWrite && target.isWritable ? 1 : 0;
                               }
                               return result;
                           });
                       });
}

// ---- integers ----

PxnError PXN_CALL PxnFeatureIntGet(PxnHandle handle, const char* name, int64_t* value) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataInt, value,
                        [&](Feature& feature) { return feature.GetInt(*value); });
}

PxnError PXN_CALL PxnFeatureIntSet(PxnHandle handle, const char* name, int64_t value) {
    return EnterWrite(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Integer(value)}},
        handle, name, PxnFeatureDataInt, true,
        [&](Feature& feature) { return feature.SetInt(value); });
}

PxnError PXN_CALL PxnFeatureIntRangeQuery(PxnHandle handle, const char* name, int64_t* min,
                                          int64_t* max) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataInt, min && max,
                        [&](Feature& feature) { return feature.GetIntRange(*min, *max); });
}

PxnError PXN_CALL PxnFeatureIntIncrementQuery(PxnHandle handle, const char* name,
                                              int64_t* increment) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataInt, increment,
                        [&](Feature& feature) { return feature.GetIntIncrement(*increment); });
}

PxnError PXN_CALL PxnFeatureIntValidValueSetQuery(PxnHandle handle, const char* name,
                                                  int64_t* buffer, uint32_t capacity,
                                                  uint32_t* setSize) {
    const char* const entry = __func__;
    return EnterFeature({entry,
                         {Argument::Handle(handle), Argument::Feature(name),
                          Argument::Place(buffer), Argument::Size(capacity)}},
                        handle, name, PxnFeatureDataInt, IsListPlace(buffer, capacity, setSize),
                        [&](Feature& feature) {
                            std::vector<std::int64_t> values;
                            const PxnError result = feature.GetIntValueSet(values);
                            return result == PxnErrSuccess
                                       ? CopyList(entry, values, buffer, capacity, setSize)
                                       : result;
                        });
}

// ---- floats ----

PxnError PXN_CALL PxnFeatureFloatGet(PxnHandle handle, const char* name, double* value) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataFloat, value,
                        [&](Feature& feature) { return feature.GetFloat(*value); });
}

PxnError PXN_CALL PxnFeatureFloatSet(PxnHandle handle, const char* name, double value) {
    return EnterWrite(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Real(value)}},
        handle, name, PxnFeatureDataFloat, true,
        [&](Feature& feature) { return feature.SetFloat(value); });
}

PxnError PXN_CALL PxnFeatureFloatRangeQuery(PxnHandle handle, const char* name, double* min,
                                            double* max) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataFloat, min && max,
                        [&](Feature& feature) { return feature.GetFloatRange(*min, *max); });
}

// ---- enumerations ----

PxnError PXN_CALL PxnFeatureEnumGet(PxnHandle handle, const char* name, const char** value) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataEnum, value,
                        [&](Feature& feature) { return feature.GetEnum(*value); });
}

PxnError PXN_CALL PxnFeatureEnumSet(PxnHandle handle, const char* name, const char* value) {
    return EnterWrite(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Text(value)}},
        handle, name, PxnFeatureDataEnum, value,
        [&](Feature& feature) { return feature.SetEnum(value); });
}

PxnError PXN_CALL PxnFeatureEnumRangeQuery(PxnHandle handle, const char* name, const char** entries,
                                           uint32_t capacity, uint32_t* found) {
    const char* const entry = __func__;
    return EnterFeature({entry,
                         {Argument::Handle(handle), Argument::Feature(name),
                          Argument::Place(entries), Argument::Size(capacity)}},
                        handle, name, PxnFeatureDataEnum, IsListPlace(entries, capacity, found),
                        [&](Feature& feature) {
                            std::vector<const char*> names;
                            const PxnError result = feature.GetEnumEntries(names);
                            return result == PxnErrSuccess
                                       ? CopyList(entry, names, entries, capacity, found)
                                       : result;
                        });
}

PxnError PXN_CALL PxnFeatureEnumIsAvailable(PxnHandle handle, const char* name, const char* entry,
                                            PxnBool* available) {
    return EnterFeature(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Text(entry)}},
        handle, name, PxnFeatureDataEnum, entry && available, [&](Feature& feature) {
            bool isAvailable = false;
            const PxnError result = feature.IsEnumEntryAvailable(entry, isAvailable);
            return CopyFlag(result, isAvailable, available);
        });
}

PxnError PXN_CALL PxnFeatureEnumAsInt(PxnHandle handle, const char* name, const char* entry,
                                      int64_t* value) {
    return EnterFeature(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Text(entry)}},
        handle, name, PxnFeatureDataEnum, entry && value, [&](Feature& feature) {
            PxnFeatureEnumEntry description{};
            const PxnError result = feature.GetEnumEntry(entry, description);
            if (result == PxnErrSuccess) {
                *value = description.intValue;
            }
            return result;
        });
}

PxnError PXN_CALL PxnFeatureEnumAsString(PxnHandle handle, const char* name, int64_t value,
                                         const char** entry) {
    return EnterFeature(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Integer(value)}},
        handle, name, PxnFeatureDataEnum, entry, [&](Feature& feature) {
            std::vector<const char*> names;
            if (const PxnError failed = feature.GetEnumEntries(names)) {
                return failed;
            }
            for (const char* candidate : names) {
                PxnFeatureEnumEntry description{};
                if (feature.GetEnumEntry(candidate, description) == PxnErrSuccess &&
                    description.intValue == value) {
                    *entry = candidate;
                    return PxnError{PxnErrSuccess};
                }
            }
            return PxnError{PxnErrNotFound};
        });
}

PxnError PXN_CALL PxnFeatureEnumEntryGet(PxnHandle handle, const char* name, const char* entry,
                                         PxnFeatureEnumEntry* info, uint32_t size) {
    return EnterDescription({__func__,
                             {Argument::Handle(handle), Argument::Feature(name),
                              Argument::Text(entry), Argument::Size(size)}},
                            handle, name, PxnFeatureDataEnum, entry, info, size,
                            [&](Feature& feature) { return feature.GetEnumEntry(entry, *info); });
}

// ---- strings ----

PxnError PXN_CALL PxnFeatureStringGet(PxnHandle handle, const char* name, char* buffer,
                                      uint32_t bufferSize, uint32_t* sizeFilled) {
    const char* const entry = __func__;
    return EnterFeature({entry,
                         {Argument::Handle(handle), Argument::Feature(name),
                          Argument::Place(buffer), Argument::Size(bufferSize)}},
                        handle, name, PxnFeatureDataString,
                        IsBytePlace(buffer, bufferSize, sizeFilled), [&](Feature& feature) {
                            std::string value;
                            if (const PxnError failed = feature.GetString(value)) {
                                return failed;
                            }
                            const PxnError result =
                                CopyBytes(entry, value.c_str(), value.size() + 1, buffer,
                                          bufferSize, sizeFilled);
                            if (result == PxnErrMoreData && bufferSize > 0) {
                                buffer[bufferSize - 1] =
                                    '\0'; // a text that is cut short is terminated all the same
                            }
                            return result;
                        });
}

PxnError PXN_CALL PxnFeatureStringSet(PxnHandle handle, const char* name, const char* value) {
    return EnterWrite(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Text(value)}},
        handle, name, PxnFeatureDataString, value,
        [&](Feature& feature) { return feature.SetString(value); });
}

PxnError PXN_CALL PxnFeatureStringMaxlengthQuery(PxnHandle handle, const char* name,
                                                 uint32_t* maxLength) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataString, maxLength,
                        [&](Feature& feature) { return feature.GetStringMaxLength(*maxLength); });
}

// ---- booleans and commands ----

PxnError PXN_CALL PxnFeatureBoolGet(PxnHandle handle, const char* name, PxnBool* value) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataBool, value, [&](Feature& feature) {
                            bool flag = false;
                            const PxnError result = feature.GetBool(flag);
                            return CopyFlag(result, flag, value);
                        });
}

PxnError PXN_CALL PxnFeatureBoolSet(PxnHandle handle, const char* name, PxnBool value) {
    return EnterWrite(
        {__func__, {Argument::Handle(handle), Argument::Feature(name), Argument::Size(value)}},
        handle, name, PxnFeatureDataBool, true,
        [&](Feature& feature) { return feature.SetBool(value != 0); });
}

PxnError PXN_CALL PxnFeatureCommandRun(PxnHandle handle, const char* name) {
    return EnterWrite({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle, name,
                      PxnFeatureDataCommand, true, [&](Feature& feature) { return feature.Run(); });
}

PxnError PXN_CALL PxnFeatureCommandIsDone(PxnHandle handle, const char* name, PxnBool* done) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataCommand, done, [&](Feature& feature) {
                            bool isDone = false;
                            const PxnError result = feature.IsDone(isDone);
                            return CopyFlag(result, isDone, done);
                        });
}

// ---- raw bytes ----

PxnError PXN_CALL PxnFeatureRawGet(PxnHandle handle, const char* name, char* buffer,
                                   uint32_t bufferSize, uint32_t* sizeFilled) {
    const char* const entry = __func__;
    return EnterFeature({entry,
                         {Argument::Handle(handle), Argument::Feature(name),
                          Argument::Place(buffer), Argument::Size(bufferSize)}},
                        handle, name, PxnFeatureDataRaw,
                        IsBytePlace(buffer, bufferSize, sizeFilled), [&](Feature& feature) {
                            std::vector<char> bytes;
                            const PxnError result = feature.GetRaw(bytes);
                            return result == PxnErrSuccess
                                       ? CopyBytes(entry, bytes.data(), bytes.size(), buffer,
                                                   bufferSize, sizeFilled)
                                       : result;
                        });
}

PxnError PXN_CALL PxnFeatureRawSet(PxnHandle handle, const char* name, const char* buffer,
                                   uint32_t bufferSize) {
    return EnterWrite(
        {__func__,
         {Argument::Handle(handle), Argument::Feature(name), Argument::Bytes(buffer, bufferSize)}},
        handle, name, PxnFeatureDataRaw, buffer,
        [&](Feature& feature) { return feature.SetRaw(buffer, bufferSize); });
}

PxnError PXN_CALL PxnFeatureRawLengthQuery(PxnHandle handle, const char* name, uint32_t* length) {
    return EnterFeature({__func__, {Argument::Handle(handle), Argument::Feature(name)}}, handle,
                        name, PxnFeatureDataRaw, length,
                        [&](Feature& feature) { return feature.GetRawLength(*length); });
}

// ---- invalidation ----

PxnError PXN_CALL PxnFeatureInvalidationRegister(PxnHandle handle, const char* name,
                                                 PxnInvalidationCallback callback,
                                                 void* userContext) {
    return EnterModule(
        {__func__,
         {Argument::Handle(handle), Argument::Feature(name), Argument::Callback(callback)}},
        handle, name && callback, [&](Backend& backend, const Target& target) {
            const PxnError result =
                target.module->With(name, [](Feature&) { return PxnErrSuccess; });
            if (result == PxnErrSuccess) {
                target.module->OnWatched(name);
                backend.Changes().Register(handle, backend.Texts().Intern(name), callback,
                                           userContext);
            }
            return result;
        });
}

PxnError PXN_CALL PxnFeatureInvalidationUnregister(PxnHandle handle, const char* name,
                                                   PxnInvalidationCallback callback) {
    return Enter(
        {__func__,
         {Argument::Handle(handle), Argument::Feature(name), Argument::Callback(callback)}},
        [&](Backend& backend) -> PxnError {
            Target target;
            if (!backend.Find(handle, target)) {
                return PxnErrBadHandle;
            }
            if (!name || !callback) {
                return PxnErrBadParameter;
            }
            target.module = nullptr; // the callback that is waited for may close the camera,
            target.frames = nullptr; // which waits until nobody uses it any more
            // The registrations of a vanished camera are removed all the same.
            const bool wasThere =
                backend.Changes().Unregister(handle, backend.Texts().Intern(name), callback);
            if (target.HasVanished()) {
                return PxnErrBadHandle;
            }
            return wasThere ? PxnErrSuccess : PxnErrNotFound;
        });
}
