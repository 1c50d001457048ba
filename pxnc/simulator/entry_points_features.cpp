// Features of every type.

#include "pxnc/simulator/sdk.h"

#include <cstring>

using namespace pxsim;

namespace {

// Looks the feature up and runs `action(feature, target)` with the module's values locked.
template <class Action>
PxnError OnFeature(const char* entry, PxnHandle handle, const char* name, Action action) noexcept {
    return CallOn(entry, handle, [&](Simulator&, const HandleTarget& target) -> PxnError {
        if (name == nullptr) {
            return PxnErrBadParameter;
        }
        platform::MutexLock lock(target.module->ValueMutex());
        Feature* feature = target.module->FindVisible(name);
        return feature == nullptr ? PxnErrNotFound : action(*feature, target);
    });
}

// The same for one type of feature.
template <class T, class Action>
PxnError OnTyped(const char* entry, PxnHandle handle, const char* name, Action action) noexcept {
    return OnFeature(entry, handle, name, [&](Feature& feature, const HandleTarget& target) {
        auto* typed = dynamic_cast<T*>(&feature);
        return typed == nullptr ? PxnErrWrongType : action(*typed, target);
    });
}

// Reads from a readable feature of type T into `out`, which must not be null.
template <class T, class Out, class Read>
PxnError ReadInto(const char* entry, PxnHandle handle, const char* name, Out* out,
                  Read read) noexcept {
    return OnTyped<T>(entry, handle, name, [&](const T& feature, const HandleTarget&) -> PxnError {
        if (out == nullptr) {
            return PxnErrBadParameter;
        }
        if (!feature.IsReadable()) {
            return PxnErrInvalidAccess;
        }
        *out = read(feature);
        return PxnErrSuccess;
    });
}

template <class T, class Write>
PxnError WriteTo(const char* entry, PxnHandle handle, const char* name, Write write) noexcept {
    return OnTyped<T>(entry, handle, name, [&](T& feature, const HandleTarget& target) -> PxnError {
        return target.writable ? write(feature) : PxnErrInvalidAccess;
    });
}

PxnError CopyText(const std::string& text, char* buffer, uint32_t bufferSize, bool terminated,
                  uint32_t* sizeFilled) {
    if (sizeFilled == nullptr || (buffer == nullptr && bufferSize != 0)) {
        return PxnErrBadParameter;
    }
    const std::size_t needed = text.size() + (terminated ? 1 : 0);
    *sizeFilled = static_cast<uint32_t>(needed);
    if (buffer == nullptr) {
        return PxnErrSuccess;
    }
    std::memcpy(buffer, text.c_str(), std::min<std::size_t>(needed, bufferSize));
    if (needed <= bufferSize) {
        return PxnErrSuccess;
    }
    if (terminated && bufferSize > 0) {
        buffer[bufferSize - 1] = 0;
    }
    return PxnErrMoreData;
}

std::vector<const Feature*> VisibleFeatures(const Module& module) {
    std::vector<const Feature*> visible;
    for (const auto& feature : module.Features()) {
        if (!feature->IsHidden()) {
            visible.push_back(feature.get());
        }
    }
    return visible;
}

} // namespace

PxnError PXN_CALL PxnFeaturesList(PxnHandle handle, PxnFeatureInfo* features, uint32_t capacity,
                                  uint32_t* found, uint32_t size) {
    const char* entry = __func__;
    return CallOn(entry, handle, [&](Simulator&, const HandleTarget& target) -> PxnError {
        if (size != sizeof *features) {
            return PxnErrStructSize;
        }
        const std::vector<const Feature*> visible = VisibleFeatures(*target.module);
        return FillList(
            entry, visible.size(), features, capacity, found,
            [&](std::size_t index, PxnFeatureInfo& info) { info = visible[index]->Info(); });
    });
}

PxnError PXN_CALL PxnFeatureInfoQuery(PxnHandle handle, const char* name, PxnFeatureInfo* info,
                                      uint32_t size) {
    return OnFeature(__func__, handle, name,
                     [&](Feature& feature, const HandleTarget&) -> PxnError {
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
    const char* entry = __func__;
    return OnFeature(entry, handle, name, [&](Feature& feature, const HandleTarget&) -> PxnError {
        if (size != sizeof *features) {
            return PxnErrStructSize;
        }
        std::vector<const Feature*> visible;
        for (const Feature* selected : feature.Selected()) {
            if (!selected->IsHidden()) {
                visible.push_back(selected);
            }
        }
        return FillList(
            entry, visible.size(), features, capacity, found,
            [&](std::size_t index, PxnFeatureInfo& info) { info = visible[index]->Info(); });
    });
}

PxnError PXN_CALL PxnFeatureAccessQuery(PxnHandle handle, const char* name, PxnBool* readable,
                                        PxnBool* writeable) {
    return OnFeature(__func__, handle, name,
                     [&](Feature& feature, const HandleTarget& target) -> PxnError {
                         if (readable == nullptr && writeable == nullptr) {
                             return PxnErrBadParameter;
                         }
                         if (readable != nullptr) {
                             *readable = feature.IsReadable() ? 1 : 0;
                         }
                         if (writeable != nullptr) {
                             *writeable = target.writable && feature.IsWritable() ? 1 : 0;
                         }
                         return PxnErrSuccess;
                     });
}

// ---- integer ----

PxnError PXN_CALL PxnFeatureIntGet(PxnHandle handle, const char* name, int64_t* value) {
    return ReadInto<IntFeature>(__func__, handle, name, value,
                                [](const IntFeature& feature) { return feature.Get(); });
}

PxnError PXN_CALL PxnFeatureIntSet(PxnHandle handle, const char* name, int64_t value) {
    return WriteTo<IntFeature>(__func__, handle, name,
                               [&](IntFeature& feature) { return feature.Set(value); });
}

PxnError PXN_CALL PxnFeatureIntRangeQuery(PxnHandle handle, const char* name, int64_t* min,
                                          int64_t* max) {
    return OnTyped<IntFeature>(__func__, handle, name,
                               [&](const IntFeature& feature, const HandleTarget&) -> PxnError {
                                   if (min == nullptr || max == nullptr) {
                                       return PxnErrBadParameter;
                                   }
                                   *min = feature.LowerLimit();
                                   *max = feature.UpperLimit();
                                   return PxnErrSuccess;
                               });
}

PxnError PXN_CALL PxnFeatureIntIncrementQuery(PxnHandle handle, const char* name,
                                              int64_t* increment) {
    return OnTyped<IntFeature>(__func__, handle, name,
                               [&](const IntFeature& feature, const HandleTarget&) -> PxnError {
                                   if (increment == nullptr) {
                                       return PxnErrBadParameter;
                                   }
                                   *increment = feature.Step();
                                   return PxnErrSuccess;
                               });
}

PxnError PXN_CALL PxnFeatureIntValidValueSetQuery(PxnHandle handle, const char* name,
                                                  int64_t* buffer, uint32_t capacity,
                                                  uint32_t* setSize) {
    const char* entry = __func__;
    return OnTyped<IntFeature>(
        entry, handle, name, [&](const IntFeature& feature, const HandleTarget&) -> PxnError {
            const std::vector<int64_t>& values = feature.ValidValueSet();
            if (values.empty()) {
                return PxnErrValidValueSetNotPresent;
            }
            return FillList(entry, values.size(), buffer, capacity, setSize,
                            [&](std::size_t index, int64_t& value) { value = values[index]; });
        });
}

// ---- float ----

PxnError PXN_CALL PxnFeatureFloatGet(PxnHandle handle, const char* name, double* value) {
    return ReadInto<FloatFeature>(__func__, handle, name, value,
                                  [](const FloatFeature& feature) { return feature.Get(); });
}

PxnError PXN_CALL PxnFeatureFloatSet(PxnHandle handle, const char* name, double value) {
    return WriteTo<FloatFeature>(__func__, handle, name,
                                 [&](FloatFeature& feature) { return feature.Set(value); });
}

PxnError PXN_CALL PxnFeatureFloatRangeQuery(PxnHandle handle, const char* name, double* min,
                                            double* max) {
    return OnTyped<FloatFeature>(__func__, handle, name,
                                 [&](const FloatFeature& feature, const HandleTarget&) -> PxnError {
                                     if (min == nullptr || max == nullptr) {
                                         return PxnErrBadParameter;
                                     }
                                     *min = feature.LowerLimit();
                                     *max = feature.UpperLimit();
                                     return PxnErrSuccess;
                                 });
}

// ---- enumeration ----

PxnError PXN_CALL PxnFeatureEnumGet(PxnHandle handle, const char* name, const char** value) {
    return ReadInto<EnumFeature>(__func__, handle, name, value,
                                 [](const EnumFeature& feature) { return feature.Get(); });
}

PxnError PXN_CALL PxnFeatureEnumSet(PxnHandle handle, const char* name, const char* value) {
    return WriteTo<EnumFeature>(__func__, handle, name, [&](EnumFeature& feature) -> PxnError {
        return value == nullptr ? PxnErrBadParameter : feature.Set(value);
    });
}

PxnError PXN_CALL PxnFeatureEnumRangeQuery(PxnHandle handle, const char* name, const char** entries,
                                           uint32_t capacity, uint32_t* found) {
    const char* entry = __func__;
    return OnTyped<EnumFeature>(
        entry, handle, name, [&](const EnumFeature& feature, const HandleTarget&) {
            return FillList(entry, feature.List().size(), entries, capacity, found,
                            [&](std::size_t index, const char*& text) {
                                text = feature.List()[index].info.name;
                            });
        });
}

PxnError PXN_CALL PxnFeatureEnumIsAvailable(PxnHandle handle, const char* name, const char* entry,
                                            PxnBool* available) {
    return OnTyped<EnumFeature>(__func__, handle, name,
                                [&](const EnumFeature& feature, const HandleTarget&) -> PxnError {
                                    if (entry == nullptr || available == nullptr) {
                                        return PxnErrBadParameter;
                                    }
                                    const EnumFeature::Entry* found = feature.FindEntry(entry);
                                    if (found == nullptr) {
                                        return PxnErrNotFound;
                                    }
                                    *available = !found->available || found->available() ? 1 : 0;
                                    return PxnErrSuccess;
                                });
}

PxnError PXN_CALL PxnFeatureEnumAsInt(PxnHandle handle, const char* name, const char* entry,
                                      int64_t* value) {
    return OnTyped<EnumFeature>(__func__, handle, name,
                                [&](const EnumFeature& feature, const HandleTarget&) -> PxnError {
                                    if (entry == nullptr || value == nullptr) {
                                        return PxnErrBadParameter;
                                    }
                                    const EnumFeature::Entry* found = feature.FindEntry(entry);
                                    if (found == nullptr) {
                                        return PxnErrNotFound;
                                    }
                                    *value = found->info.intValue;
                                    return PxnErrSuccess;
                                });
}

PxnError PXN_CALL PxnFeatureEnumAsString(PxnHandle handle, const char* name, int64_t value,
                                         const char** entry) {
    return OnTyped<EnumFeature>(__func__, handle, name,
                                [&](const EnumFeature& feature, const HandleTarget&) -> PxnError {
                                    if (entry == nullptr) {
                                        return PxnErrBadParameter;
                                    }
                                    for (const EnumFeature::Entry& one : feature.List()) {
                                        if (one.info.intValue == value) {
                                            *entry = one.info.name;
                                            return PxnErrSuccess;
                                        }
                                    }
                                    return PxnErrNotFound;
                                });
}

PxnError PXN_CALL PxnFeatureEnumEntryGet(PxnHandle handle, const char* name, const char* entry,
                                         PxnFeatureEnumEntry* info, uint32_t size) {
    return OnTyped<EnumFeature>(__func__, handle, name,
                                [&](const EnumFeature& feature, const HandleTarget&) -> PxnError {
                                    if (entry == nullptr || info == nullptr) {
                                        return PxnErrBadParameter;
                                    }
                                    if (size != sizeof *info) {
                                        return PxnErrStructSize;
                                    }
                                    const EnumFeature::Entry* found = feature.FindEntry(entry);
                                    if (found == nullptr) {
                                        return PxnErrNotFound;
                                    }
                                    *info = found->info;
                                    return PxnErrSuccess;
                                });
}

// ---- string ----

PxnError PXN_CALL PxnFeatureStringGet(PxnHandle handle, const char* name, char* buffer,
                                      uint32_t bufferSize, uint32_t* sizeFilled) {
    return OnTyped<StringFeature>(
        __func__, handle, name, [&](const StringFeature& feature, const HandleTarget&) -> PxnError {
            return feature.IsReadable()
                       ? CopyText(feature.Get(), buffer, bufferSize, true, sizeFilled)
                       : PxnErrInvalidAccess;
        });
}

PxnError PXN_CALL PxnFeatureStringSet(PxnHandle handle, const char* name, const char* value) {
    return WriteTo<StringFeature>(__func__, handle, name, [&](StringFeature& feature) -> PxnError {
        return value == nullptr ? PxnErrBadParameter : feature.Set(value);
    });
}

PxnError PXN_CALL PxnFeatureStringMaxlengthQuery(PxnHandle handle, const char* name,
                                                 uint32_t* maxLength) {
    return OnTyped<StringFeature>(
        __func__, handle, name, [&](const StringFeature& feature, const HandleTarget&) -> PxnError {
            if (maxLength == nullptr) {
                return PxnErrBadParameter;
            }
            *maxLength = feature.Limit();
            return PxnErrSuccess;
        });
}

// ---- boolean ----

PxnError PXN_CALL PxnFeatureBoolGet(PxnHandle handle, const char* name, PxnBool* value) {
    return ReadInto<BoolFeature>(
        __func__, handle, name, value,
        [](const BoolFeature& feature) -> PxnBool { return feature.Get() ? 1 : 0; });
}

PxnError PXN_CALL PxnFeatureBoolSet(PxnHandle handle, const char* name, PxnBool value) {
    return WriteTo<BoolFeature>(__func__, handle, name,
                                [&](BoolFeature& feature) { return feature.Set(value != 0); });
}

// ---- command ----

PxnError PXN_CALL PxnFeatureCommandRun(PxnHandle handle, const char* name) {
    bool startsOrStops = false;
    const PxnError answer =
        WriteTo<CommandFeature>(__func__, handle, name, [&](CommandFeature& feature) {
            startsOrStops = feature.IsStartOrStop();
            return feature.Run();
        });
    if (startsOrStops) {
        TellFirst();
    }
    return answer;
}

PxnError PXN_CALL PxnFeatureCommandIsDone(PxnHandle handle, const char* name, PxnBool* done) {
    return OnTyped<CommandFeature>(
        __func__, handle, name,
        [&](const CommandFeature& feature, const HandleTarget&) -> PxnError {
            if (done == nullptr) {
                return PxnErrBadParameter;
            }
            *done = feature.IsDone() ? 1 : 0;
            return PxnErrSuccess;
        });
}

// ---- raw ----

PxnError PXN_CALL PxnFeatureRawGet(PxnHandle handle, const char* name, char* buffer,
                                   uint32_t bufferSize, uint32_t* sizeFilled) {
    return OnTyped<RawFeature>(
        __func__, handle, name, [&](const RawFeature& feature, const HandleTarget&) -> PxnError {
            return feature.IsReadable()
                       ? CopyText(feature.Get(), buffer, bufferSize, false, sizeFilled)
                       : PxnErrInvalidAccess;
        });
}

PxnError PXN_CALL PxnFeatureRawSet(PxnHandle handle, const char* name, const char* buffer,
                                   uint32_t bufferSize) {
    return WriteTo<RawFeature>(__func__, handle, name, [&](RawFeature& feature) -> PxnError {
        return buffer == nullptr ? PxnErrBadParameter
                                 : feature.Set(std::string(buffer, bufferSize));
    });
}

PxnError PXN_CALL PxnFeatureRawLengthQuery(PxnHandle handle, const char* name, uint32_t* length) {
    return OnTyped<RawFeature>(__func__, handle, name,
                               [&](const RawFeature& feature, const HandleTarget&) -> PxnError {
                                   if (length == nullptr) {
                                       return PxnErrBadParameter;
                                   }
                                   *length = static_cast<uint32_t>(feature.Get().size());
                                   return PxnErrSuccess;
                               });
}

// ---- invalidation ----

PxnError PXN_CALL PxnFeatureInvalidationRegister(PxnHandle handle, const char* name,
                                                 PxnInvalidationCallback callback,
                                                 void* userContext) {
    return CallOn(__func__, handle,
                  [&](Simulator& simulator, const HandleTarget& target) -> PxnError {
                      if (name == nullptr || callback == nullptr) {
                          return PxnErrBadParameter;
                      }
                      const Feature* feature = target.module->FindVisible(name);
                      if (feature == nullptr) {
                          return PxnErrNotFound;
                      }
                      simulator.Events().Register(handle, feature->Name(), callback, userContext);
                      ++simulator.Counts().registered;
                      return PxnErrSuccess;
                  });
}

PxnError PXN_CALL PxnFeatureInvalidationUnregister(PxnHandle handle, const char* name,
                                                   PxnInvalidationCallback callback) {
    return Call(__func__, [&](Simulator& simulator) -> PxnError {
        HandleTarget target;
        if (!simulator.Handles().Find(handle, target)) {
            return PxnErrBadHandle;
        }
        if (name == nullptr || callback == nullptr) {
            return PxnErrBadParameter;
        }
        const Feature* feature = target.module->FindVisible(name);
        // A vanished camera's registrations can still be given back.
        if (feature == nullptr ||
            !simulator.Events().Unregister(handle, feature->Name(), callback)) {
            return target.vanished ? PxnErrBadHandle : PxnErrNotFound;
        }
        ++simulator.Counts().unregistered;
        return target.vanished ? PxnErrBadHandle : PxnErrSuccess;
    });
}
