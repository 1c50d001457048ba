// fuzz_genicam_description.cpp - the features made of a camera's GenICam description
#include "pxnc/genicam/description_check.h"
#include "pxnc/genicam/feature_tree.h"
#include "pxnc/genicam/length_limit.h"
#include "pxnc/skeleton/stored_value.h"
#include "pxnc/skeleton/text_pool.h"
#include "tests/pxnc/genicam/memory_device.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

void UseNumbers(genicam::Feature& feature) {
    std::int64_t least = 0;
    std::int64_t most = 0;
    std::int64_t value = 0;
    std::vector<std::int64_t> values;
    feature.GetIntRange(least, most);
    feature.GetIntIncrement(value);
    if (feature.DataType() == PxnFeatureDataInt && value < 1) {
        std::abort(); // no host expects less
    }
    feature.GetIntValueSet(values);
    feature.GetInt(value);
    feature.SetInt(least);
    feature.SetInt(most);
    feature.SetInt(value);
    double lowest = 0;
    double highest = 0;
    double real = 0;
    feature.GetFloatRange(lowest, highest);
    feature.GetFloat(real);
    feature.SetFloat(lowest);
    feature.SetFloat(highest);
    feature.SetFloat(real);
}

void UseEntries(genicam::Feature& feature) {
    std::vector<const char*> entries;
    feature.GetEnumEntries(entries);
    for (const char* const entry : entries) {
        bool isAvailable = false;
        PxnFeatureEnumEntry description = {};
        if (!entry || feature.IsEnumEntryAvailable(entry, isAvailable) == PxnErrNotFound) {
            std::abort(); // a listed entry must be found
        }
        feature.GetEnumEntry(entry, description);
        feature.SetEnum(entry);
    }
    const char* current = nullptr;
    if (feature.GetEnum(current) == PxnErrSuccess && !current) {
        std::abort();
    }
}

void UseBytes(genicam::Feature& feature) {
    std::uint32_t length = 0;
    std::string text;
    feature.GetStringMaxLength(length);
    if (feature.GetString(text) == PxnErrSuccess) {
        feature.SetString(text.c_str());
    }
    feature.SetString("");
    std::vector<char> bytes;
    if (feature.GetRaw(bytes) == PxnErrSuccess) {
        if (feature.GetRawLength(length) == PxnErrSuccess && length != bytes.size()) {
            std::abort();
        }
        feature.SetRaw(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }
}

/// What a host may ask of a feature, in the order in which dialogs do.
void Use(genicam::Feature& feature) {
    const PxnFeatureInfo info = feature.Info();
    for (const char* const text :
         {info.name, info.category, info.displayName, info.tooltip, info.description,
          info.sfncNamespace, info.unit, info.representation}) {
        if (!text) {
            std::abort(); // every text is one, if an empty one
        }
    }
    bool isReadable = false;
    bool isWritable = false;
    feature.GetAccess(isReadable, isWritable);
    feature.Selected();
    std::string stored;
    skeleton::ReadAsText(feature, stored);
    UseNumbers(feature);
    UseEntries(feature);
    UseBytes(feature);
    bool flag = false;
    feature.GetBool(flag);
    feature.SetBool(!flag);
    feature.IsStartOrStop();
    feature.Run();
    feature.IsDone(flag);
}

} // namespace

// The description, which also fills the camera's registers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto device = genicam_test::MakeMemoryDevice(text, text);
    ArvGc* const description = arv_device_get_genicam(device.get());
    if (!description) {
        return 0;
    }
    genicam::LimitRegisterLengths(description);
    if (genicam::CheckDescription(description, text) != PxnErrSuccess) {
        return 0;
    }
    skeleton::TextPool texts;
    std::vector<std::unique_ptr<genicam::Feature>> features;
    genicam::AppendDescribedFeatures(texts, description, features);
    genicam::ErrorOwner error;
    const genicam::ObjectOwner<ArvCamera> camera(
        arv_camera_new_with_device(device.get(), error.Receive()));
    if (camera) {
        genicam::AppendStandardTiming(texts, camera.get(), features);
    }
    for (const auto& feature : features) {
        Use(*feature);
    }
    return 0;
}
