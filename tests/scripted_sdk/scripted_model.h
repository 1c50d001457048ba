// scripted_model.h - what the scripted SDK has when nothing else is scripted
#pragma once

#include "pxnc.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace scripted {

struct EnumEntry {
    std::string name;
    std::int64_t intValue = 0;
    bool available = true;
    std::string displayName = {};
    std::string tooltip = {};
    std::string description = {};
    std::uint32_t visibility = PxnVisibilityBeginner;
};

/// One feature with the values of every type; `type` says which of them count.
struct Feature {
    std::string name;
    std::uint32_t type = PxnFeatureDataInt;
    std::string category = "/Scripted";
    std::string displayName;
    std::string tooltip;
    std::string description;
    std::string sfncNamespace = "Standard";
    std::string unit;
    std::string representation;
    std::uint32_t flags = PxnFeatureFlagRead | PxnFeatureFlagWrite;
    std::uint32_t pollingTime = 0;
    std::uint32_t visibility = PxnVisibilityBeginner;
    bool isStreamable = false;
    bool readable = true;  ///< what PxnFeatureAccessQuery reports; reading is refused without it
    bool writeable = true; ///< likewise

    std::int64_t intValue = 0;
    std::int64_t intMin = 0;
    std::int64_t intMax = 0;
    std::int64_t intIncrement = 1;
    std::vector<std::int64_t> validValues; ///< empty: the feature has no such set

    double floatValue = 0;
    double floatMin = 0;
    double floatMax = 0;

    std::string text; ///< value of a string, entry name of an enumeration
    std::vector<EnumEntry> entries;
    std::uint32_t maxLength = 64;

    bool boolValue = false;
    /// What PxnFeatureCommandIsDone reports call by call; done once it is used up.
    std::deque<bool> doneSequence;
    std::vector<char> raw;
    std::vector<std::string> selected; ///< features of the same module that this one selects
};

inline Feature IntFeature(std::string name, std::int64_t value, std::int64_t min, std::int64_t max,
                          std::int64_t increment = 1) {
    Feature feature;
    feature.name = std::move(name);
    feature.type = PxnFeatureDataInt;
    feature.intValue = value;
    feature.intMin = min;
    feature.intMax = max;
    feature.intIncrement = increment;
    return feature;
}

inline Feature FloatFeature(std::string name, double value, double min, double max) {
    Feature feature;
    feature.name = std::move(name);
    feature.type = PxnFeatureDataFloat;
    feature.floatValue = value;
    feature.floatMin = min;
    feature.floatMax = max;
    return feature;
}

inline Feature EnumFeature(std::string name, std::string value, std::vector<EnumEntry> entries) {
    Feature feature;
    feature.name = std::move(name);
    feature.type = PxnFeatureDataEnum;
    feature.text = std::move(value);
    feature.entries = std::move(entries);
    return feature;
}

inline Feature StringFeature(std::string name, std::string value, std::uint32_t maxLength = 64) {
    Feature feature;
    feature.name = std::move(name);
    feature.type = PxnFeatureDataString;
    feature.text = std::move(value);
    feature.maxLength = maxLength;
    return feature;
}

inline Feature BoolFeature(std::string name, bool value) {
    Feature feature;
    feature.name = std::move(name);
    feature.type = PxnFeatureDataBool;
    feature.boolValue = value;
    return feature;
}

inline Feature CommandFeature(std::string name) {
    Feature feature;
    feature.name = std::move(name);
    feature.type = PxnFeatureDataCommand;
    return feature;
}

inline Feature RawFeature(std::string name, std::vector<char> bytes) {
    Feature feature;
    feature.name = std::move(name);
    feature.type = PxnFeatureDataRaw;
    feature.raw = std::move(bytes);
    return feature;
}

/// One SDK module: its features in list order, and its registers.
struct Module {
    std::vector<Feature> features;

    /// Bytes that PxnMemoryRead finds and PxnMemoryWrite leaves; absent ones read as 0.
    std::map<std::uint64_t, std::uint8_t> registers;
    /// Results of reads of one address, used up one a read before `registers` count.
    std::map<std::uint64_t, std::deque<std::vector<std::uint8_t>>> readSequences;
    /// When set, the most bytes a read or write transfers (the rest is silently missing).
    std::optional<std::uint32_t> transferLimit;

    Feature* Find(const std::string& name) {
        for (Feature& feature : features) {
            if (feature.name == name) {
                return &feature;
            }
        }
        return nullptr;
    }
    /// The feature of that name, made as an integer when there is none.
    Feature& operator[](const std::string& name) {
        if (Feature* found = Find(name)) {
            return *found;
        }
        features.push_back(IntFeature(name, 0, 0, 0));
        return features.back();
    }
    /// Adds a feature, or puts it in the place of the one with its name.
    Feature& Put(Feature feature) {
        Feature& place = (*this)[feature.name];
        place = std::move(feature);
        return place;
    }
    void Remove(const std::string& name) {
        std::erase_if(features, [&](const Feature& feature) { return feature.name == name; });
    }
    /// Stores a 32-bit register as the camera does: big-endian.
    void SetRegister32(std::uint64_t address, std::uint32_t value) {
        for (unsigned byte = 0; byte < 4; ++byte) {
            registers[address + byte] = static_cast<std::uint8_t>(value >> (24 - 8 * byte));
        }
    }
    std::uint32_t Register32(std::uint64_t address) {
        std::uint32_t value = 0;
        for (unsigned byte = 0; byte < 4; ++byte) {
            value = (value << 8) | registers[address + byte];
        }
        return value;
    }
    /// The next read of the register returns `value`, those after it as queued or stored.
    void QueueRegister32(std::uint64_t address, std::uint32_t value) {
        std::vector<std::uint8_t> bytes;
        for (unsigned byte = 0; byte < 4; ++byte) {
            bytes.push_back(static_cast<std::uint8_t>(value >> (24 - 8 * byte)));
        }
        readSequences[address].push_back(std::move(bytes));
    }
};

struct TransportLayer : Module {
    std::string id;
    std::string name;
    std::string modelName;
    std::string vendor;
    std::string version;
    std::string path;
    std::uint32_t type = PxnTransportLayerGEV;
};

struct Interface : Module {
    std::string id;
    std::string name;
    std::uint32_t type = PxnTransportLayerGEV;
    std::size_t transportLayer = 0; ///< index into Model::transportLayers
};

struct Camera : Module {
    std::string id;
    std::string extendedId;
    std::string name;
    std::string modelName;
    std::string serial;
    std::uint32_t permittedAccess = PxnAccessModeFull | PxnAccessModeRead;
    std::size_t interface = 0; ///< index into Model::interfaces
    Module localDevice;
    std::vector<Module> streams;
};

/// What an SDK promises about frames. Each promise that is set here is broken.
struct BrokenPromises {
    bool unannouncedFramesAreQueued = false; ///< else PxnErrNotFound
    bool callbacksOverlap = false;           ///< else those of a camera take turns
    /// Deliver calls back for a frame that was handed back and not queued again.
    bool framesAreHandedBackTwice = false;
};

/// What stands before or in place of every text of the SDK. A text that has something before it can
/// still be looked up, with or without.
enum class TextNonsense {
    kNone,
    kNull, ///< empty where the host's memory is filled
    kEmpty,
    kLong, ///< 100 kB
    kNotUtf8,
    kPlaceholders, ///< of printf
    kControls,     ///< of a terminal, and the end of a line
};

/// What is reported for every number of records, bytes and streams.
enum class CountNonsense {
    kNone,
    kZero,
    kHalfOfAll, ///< 2^31
    kMost,
    kGrowing,   ///< one more at every call
    kShrinking, ///< half as many at every second call
};

/// What is reported for every value, limit and increment.
enum class NumberNonsense {
    kNone,
    kUpsideDown, ///< limits exchanged, increments 0
    kNotANumber,
    kInfinite,
    kLeast, ///< of the type; as limits, both extremes
    kMost,
};

struct Nonsense {
    TextNonsense texts = TextNonsense::kNone;
    CountNonsense counts = CountNonsense::kNone;
    NumberNonsense numbers = NumberNonsense::kNone;
    /// Registers are reported to have transferred that many more bytes than asked.
    std::uint32_t excess = 0;
    /// Camera records of open cameras name streams and have no list of them.
    bool areStreamsMissing = false;
    std::string soundCount = {};                     ///< the entry whose numbers stay true
    std::map<std::string, std::uint32_t> calls = {}; ///< so far, by what was counted
};

struct Model {
    PxnVersionInfo version{2, 1, 0};
    Module system;
    Module chunk; ///< what the handle of a chunk access callback reads
    std::vector<TransportLayer> transportLayers;
    std::vector<Interface> interfaces;
    std::vector<Camera> cameras;
    /// Numbers that calls of a list entry report as found, one a call, in place of the true one
    /// (as a module that changes between counting and filling would). Records are filled as far
    /// as there are any.
    std::map<std::string, std::deque<std::uint32_t>> foundAnswers;
    /// True: PxnCaptureFrameWait finds its frame complete at once.
    bool completeWaitsAtOnce = false;
    BrokenPromises broken;
    Nonsense nonsense;
};

// Handles. Index 0 is named "camera0", "interface0" and so on in the recorded calls; streams of
// other cameras than the first are named "camera1.stream0".
inline PxnHandle SystemHandle() {
    return PXN_SYSTEM_HANDLE;
}
inline PxnHandle MakeHandle(std::uintptr_t value) {
    return reinterpret_cast<PxnHandle>(value);
}
inline PxnHandle CameraHandle(std::size_t camera = 0) {
    return MakeHandle(0x100000 + camera);
}
inline PxnHandle LocalDeviceHandle(std::size_t camera = 0) {
    return MakeHandle(0x200000 + camera);
}
inline PxnHandle InterfaceHandle(std::size_t index = 0) {
    return MakeHandle(0x300000 + index);
}
inline PxnHandle TransportLayerHandle(std::size_t index = 0) {
    return MakeHandle(0x400000 + index);
}
inline PxnHandle StreamHandle(std::size_t camera = 0, std::size_t stream = 0) {
    return MakeHandle(0x500000 + camera * 0x100 + stream);
}
inline PxnHandle ChunkHandle() {
    return MakeHandle(0x600000);
}

} // namespace scripted
