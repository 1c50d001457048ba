// scripted_module.cpp - a module of the model as the skeleton sees it
#include "tests/scripted_sdk/scripted_module.h"

#include "pxnc/skeleton/feature.h"
#include "tests/scripted_sdk/model_lookup.h"
#include "tests/scripted_sdk/nonsense.h"
#include "tests/scripted_sdk/sdk_state.h"

#include <algorithm>
#include <cstring>

namespace scripted {
namespace {

PxnFeatureInfo InfoOf(const Feature& feature, skeleton::TextPool& texts) {
    PxnFeatureInfo info{};
    info.name = Say(texts, feature.name);
    info.category = Say(texts, feature.category);
    info.displayName = Say(texts, feature.displayName);
    info.tooltip = Say(texts, feature.tooltip);
    info.description = Say(texts, feature.description);
    info.sfncNamespace = Say(texts, feature.sfncNamespace);
    info.unit = Say(texts, feature.unit);
    info.representation = Say(texts, feature.representation);
    info.featureDataType = feature.type;
    info.featureFlags = feature.flags;
    info.pollingTime = feature.pollingTime;
    info.visibility = feature.visibility;
    info.isStreamable = feature.isStreamable ? 1 : 0;
    info.hasSelectedFeatures = feature.selected.empty() ? 0 : 1;
    return info;
}

/// A feature of the model, for the length of one call.
class ScriptedFeature final : public skeleton::Feature {
public:
    ScriptedFeature(scripted::Feature& featureOfModel, skeleton::TextPool& pool)
        : feature(featureOfModel), texts(pool) {}

    std::uint32_t DataType() const override { return feature.type; }
    PxnFeatureInfo Info() const override { return InfoOf(feature, texts); }
    PxnError GetAccess(bool& readable, bool& writable) override {
        readable = feature.readable;
        writable = feature.writeable;
        return PxnErrSuccess;
    }
    std::vector<std::string> Selected() override { return feature.selected; }

    PxnError GetInt(std::int64_t& value) override {
        const PxnError result = Read(value, feature.intValue);
        Distort(value);
        return result;
    }
    PxnError SetInt(std::int64_t value) override {
        return Write(feature.intValue, value, value >= feature.intMin && value <= feature.intMax);
    }
    PxnError GetIntRange(std::int64_t& min, std::int64_t& max) override {
        min = feature.intMin;
        max = feature.intMax;
        Distort(min, max);
        return PxnErrSuccess;
    }
    PxnError GetIntIncrement(std::int64_t& increment) override {
        increment = feature.intIncrement;
        DistortIncrement(increment);
        return PxnErrSuccess;
    }
    PxnError GetIntValueSet(std::vector<std::int64_t>& values) override {
        values = feature.validValues;
        return values.empty() ? PxnErrValidValueSetNotPresent : PxnErrSuccess;
    }

    PxnError GetFloat(double& value) override {
        const PxnError result = Read(value, feature.floatValue);
        Distort(value);
        return result;
    }
    PxnError SetFloat(double value) override {
        return Write(feature.floatValue, value,
                     value >= feature.floatMin && value <= feature.floatMax);
    }
    PxnError GetFloatRange(double& min, double& max) override {
        min = feature.floatMin;
        max = feature.floatMax;
        Distort(min, max);
        return PxnErrSuccess;
    }

    PxnError GetEnum(const char*& entry) override { return Read(entry, Say(texts, feature.text)); }
    PxnError SetEnum(const char* name) override {
        const EnumEntry* const entry = FindEntry(name);
        return Write(feature.text, Plain(name), entry && entry->available);
    }
    PxnError GetEnumEntries(std::vector<const char*>& names) override {
        for (const EnumEntry& entry : feature.entries) {
            names.push_back(Say(texts, entry.name));
        }
        return PxnErrSuccess;
    }
    PxnError IsEnumEntryAvailable(const char* name, bool& isAvailable) override {
        const EnumEntry* const entry = FindEntry(name);
        isAvailable = entry && entry->available;
        return entry ? PxnErrSuccess : PxnErrNotFound;
    }
    PxnError GetEnumEntry(const char* name, PxnFeatureEnumEntry& info) override {
        const EnumEntry* const entry = FindEntry(name);
        if (!entry) {
            return PxnErrNotFound;
        }
        info = {};
        info.name = Say(texts, entry->name);
        info.displayName = Say(texts, entry->displayName);
        info.tooltip = Say(texts, entry->tooltip);
        info.description = Say(texts, entry->description);
        info.intValue = entry->intValue;
        info.visibility = entry->visibility;
        return PxnErrSuccess;
    }

    PxnError GetString(std::string& value) override { return Read(value, Garble(feature.text)); }
    PxnError SetString(const char* value) override {
        return Write(feature.text, value, std::strlen(value) <= feature.maxLength);
    }
    PxnError GetStringMaxLength(std::uint32_t& length) override {
        length = Miscount("longest text", feature.maxLength);
        return PxnErrSuccess;
    }

    PxnError GetBool(bool& value) override { return Read(value, feature.boolValue); }
    PxnError SetBool(bool value) override { return Write(feature.boolValue, value); }

    PxnError Run() override { return feature.writeable ? PxnErrSuccess : PxnErrInvalidAccess; }
    PxnError IsDone(bool& isDone) override {
        isDone = true;
        if (!feature.doneSequence.empty()) {
            isDone = feature.doneSequence.front();
            feature.doneSequence.pop_front();
        }
        return PxnErrSuccess;
    }

    PxnError GetRaw(std::vector<char>& bytes) override { return Read(bytes, feature.raw); }
    PxnError SetRaw(const char* bytes, std::uint32_t size) override {
        return Write(feature.raw, std::vector<char>(bytes, bytes + size));
    }
    PxnError GetRawLength(std::uint32_t& length) override {
        length = Miscount("bytes", static_cast<std::uint32_t>(feature.raw.size()));
        return PxnErrSuccess;
    }

private:
    template <typename Value>
    PxnError Read(Value& value, const Value& present) const {
        if (!feature.readable) {
            return PxnErrInvalidAccess;
        }
        value = present;
        return PxnErrSuccess;
    }
    template <typename Place, typename Value>
    PxnError Write(Place& place, const Value& value, bool isValid = true) const {
        if (!feature.writeable) {
            return PxnErrInvalidAccess;
        }
        if (!isValid) {
            return PxnErrInvalidValue;
        }
        place = value;
        return PxnErrSuccess;
    }
    const EnumEntry* FindEntry(const char* name) const {
        const std::string plain = Plain(name);
        const auto found =
            std::find_if(feature.entries.begin(), feature.entries.end(),
                         [&](const EnumEntry& entry) { return entry.name == plain; });
        return found == feature.entries.end() ? nullptr : &*found;
    }

    scripted::Feature& feature;
    skeleton::TextPool& texts;
};

class ScriptedModule final : public skeleton::Module {
public:
    ScriptedModule(PxnHandle handleOfModule, skeleton::TextPool& pool)
        : handle(handleOfModule), texts(pool) {}

    std::vector<PxnFeatureInfo> ListFeatures() override {
        std::vector<PxnFeatureInfo> infos;
        WithModule([&](const scripted::Module& module) {
            for (const scripted::Feature& feature : module.features) {
                infos.push_back(InfoOf(feature, texts));
            }
            return PxnErrSuccess;
        });
        return infos;
    }
    PxnError With(const char* name,
                  skeleton::FunctionRef<PxnError(skeleton::Feature&)> use) override {
        return WithModule([&](scripted::Module& module) -> PxnError {
            scripted::Feature* const feature = module.Find(Plain(name));
            if (!feature) {
                return PxnErrNotFound;
            }
            ScriptedFeature adapter(*feature, texts);
            return use(adapter);
        });
    }
    PxnError GetPayloadSize(std::uint32_t& bytes) override {
        return With("PayloadSize", [&](skeleton::Feature& feature) {
            std::int64_t value = 0;
            const PxnError result = feature.GetInt(value);
            bytes = static_cast<std::uint32_t>(value);
            return result;
        });
    }
    PxnError ReadMemory(std::uint64_t address, char* buffer, std::uint32_t size,
                        std::uint32_t& done) override {
        return WithModule([&](scripted::Module& module) {
            std::vector<std::uint8_t> bytes;
            const auto sequence = module.readSequences.find(address);
            if (sequence != module.readSequences.end() && !sequence->second.empty()) {
                bytes = sequence->second.front();
                sequence->second.pop_front();
            } else {
                for (std::uint32_t i = 0; i < size; ++i) {
                    const auto stored = module.registers.find(address + i);
                    bytes.push_back(stored == module.registers.end() ? 0 : stored->second);
                }
            }
            const std::uint32_t most = std::min(size, module.transferLimit.value_or(size));
            done = std::min(static_cast<std::uint32_t>(bytes.size()), most);
            std::copy_n(bytes.begin(), done, buffer);
            done += Excess();
            return PxnErrSuccess;
        });
    }
    PxnError WriteMemory(std::uint64_t address, const char* bytes, std::uint32_t size,
                         std::uint32_t& done) override {
        return WithModule([&](scripted::Module& module) {
            done = std::min(size, module.transferLimit.value_or(size));
            for (std::uint32_t i = 0; i < done; ++i) {
                module.registers[address + i] = static_cast<std::uint8_t>(bytes[i]);
            }
            done += Excess();
            return PxnErrSuccess;
        });
    }

private:
    static std::uint32_t Excess() {
        return WithModel([](const Model& model) { return model.nonsense.excess; });
    }
    template <typename Use>
    PxnError WithModule(Use use) {
        return WithModel([&](Model& model) -> PxnError {
            scripted::Module* const module = FindPlace(model, handle).module;
            return module ? use(*module) : PxnErrBadHandle;
        });
    }

    const PxnHandle handle;
    skeleton::TextPool& texts;
};

} // namespace

std::shared_ptr<skeleton::Module> MakeModule(PxnHandle handle, skeleton::TextPool& texts) {
    return std::make_shared<ScriptedModule>(handle, texts);
}

} // namespace scripted
