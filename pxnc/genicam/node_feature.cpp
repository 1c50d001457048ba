// node_feature.cpp - features described by a camera's GenICam description
#include "pxnc/genicam/node_feature.h"

#include "pxnc/genicam/glib_owner.h"
#include "pxnc/genicam/node_description.h"
#include "pxnc/genicam/result_codes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>

namespace genicam {
namespace {

/// What the features of all node types share: access and selection.
class NodeFeature : public Feature {
public:
    NodeFeature(const PxnFeatureInfo& featureInfo, ArvGcFeatureNode* featureNode)
        : DescribedFeature(featureInfo), node(featureNode), isChunk(IsChunk(featureNode)) {}

    PxnError GetAccess(bool& readable, bool& writable) override {
        readable = false;
        writable = false;
        ErrorOwner error;
        bool usable = arv_gc_feature_node_is_implemented(node, error.Receive()) != 0;
        if (usable && !error) {
            usable = arv_gc_feature_node_is_available(node, error.Receive()) != 0;
        }
        bool locked = false;
        if (usable && !error) {
            locked = arv_gc_feature_node_is_locked(node, error.Receive()) != 0;
        }
        // A chunk is there only together with its frame.
        ArvGc* const description = arv_gc_node_get_genicam(ARV_GC_NODE(node));
        if (!error && usable && (!isChunk || arv_gc_get_buffer(description))) {
            const ArvGcAccessMode mode = StaticAccessMode(node);
            readable = mode == ARV_GC_ACCESS_MODE_RO || mode == ARV_GC_ACCESS_MODE_RW;
            writable = !locked && (mode == ARV_GC_ACCESS_MODE_WO || mode == ARV_GC_ACCESS_MODE_RW);
        }
        return ToResult(error);
    }

    std::vector<std::string> Selected() override {
        std::vector<std::string> names;
        if (ARV_IS_GC_SELECTOR(node)) {
            for (const GSList* item = arv_gc_selector_get_selected_features(ARV_GC_SELECTOR(node));
                 item; item = item->next) {
                names.emplace_back(arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(item->data)));
            }
        }
        return names;
    }

protected:
    ArvGcFeatureNode* const node;

private:
    const bool isChunk;
};

class IntNodeFeature : public NodeFeature {
public:
    using NodeFeature::NodeFeature;

    PxnError GetInt(std::int64_t& value) override {
        if (const PxnError refused = RequireReadable()) {
            return refused;
        }
        ErrorOwner error;
        value = arv_gc_integer_get_value(Integer(), error.Receive());
        return ToResult(error);
    }

    PxnError SetInt(std::int64_t value) override {
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        std::int64_t min = 0;
        std::int64_t max = 0;
        std::int64_t increment = 1;
        GetIntRange(min, max);
        GetIntIncrement(increment);
        if (value < min || value > max) {
            return PxnErrInvalidValue;
        }
        // Unsigned, because the distance from the least to the greatest value may not fit.
        const std::uint64_t distance =
            static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(min);
        if (increment > 1 && distance % static_cast<std::uint64_t>(increment) != 0) {
            return PxnErrInvalidValue;
        }
        ErrorOwner error;
        arv_gc_integer_set_value(Integer(), value, error.Receive());
        return ToResult(error);
    }

    PxnError GetIntRange(std::int64_t& min, std::int64_t& max) override {
        // An error means that the description states no limit.
        ErrorOwner error;
        min = arv_gc_integer_get_min(Integer(), error.Receive());
        min = error ? std::numeric_limits<std::int64_t>::min() : min;
        max = arv_gc_integer_get_max(Integer(), error.Receive());
        max = error ? std::numeric_limits<std::int64_t>::max() : max;
        return PxnErrSuccess;
    }

    PxnError GetIntIncrement(std::int64_t& increment) override {
        ErrorOwner error;
        increment = arv_gc_integer_get_inc(Integer(), error.Receive());
        increment = error ? 1 : std::max<std::int64_t>(increment, 1);
        return PxnErrSuccess;
    }

private:
    ArvGcInteger* Integer() const { return ARV_GC_INTEGER(node); }
};

class FloatNodeFeature : public NodeFeature {
public:
    using NodeFeature::NodeFeature;

    PxnError GetFloat(double& value) override {
        if (const PxnError refused = RequireReadable()) {
            return refused;
        }
        ErrorOwner error;
        value = arv_gc_float_get_value(ARV_GC_FLOAT(node), error.Receive());
        return ToResult(error);
    }

    PxnError SetFloat(double value) override {
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        double min = 0;
        double max = 0;
        GetFloatRange(min, max);
        // Written so that NaN is refused as well.
        if (!(value >= min && value <= max)) {
            return PxnErrInvalidValue;
        }
        ErrorOwner error;
        arv_gc_float_set_value(ARV_GC_FLOAT(node), value, error.Receive());
        return ToResult(error);
    }

    PxnError GetFloatRange(double& min, double& max) override {
        // An error means that the description states no limit.
        ErrorOwner error;
        min = arv_gc_float_get_min(ARV_GC_FLOAT(node), error.Receive());
        min = error ? std::numeric_limits<double>::lowest() : min;
        max = arv_gc_float_get_max(ARV_GC_FLOAT(node), error.Receive());
        max = error ? std::numeric_limits<double>::max() : max;
        return PxnErrSuccess;
    }
};

class EnumNodeFeature : public NodeFeature {
public:
    EnumNodeFeature(const PxnFeatureInfo& featureInfo, ArvGcFeatureNode* featureNode,
                    skeleton::TextPool& textPool)
        : NodeFeature(featureInfo, featureNode), texts(textPool) {}

    PxnError GetEnum(const char*& entry) override {
        if (const PxnError refused = RequireReadable()) {
            return refused;
        }
        ErrorOwner error;
        const char* name = arv_gc_enumeration_get_string_value(Enumeration(), error.Receive());
        if (error) {
            return ToResult(error);
        }
        // The register may hold a number without an entry.
        if (!name) {
            return PxnErrInvalidValue;
        }
        entry = texts.Intern(name);
        return PxnErrSuccess;
    }

    PxnError SetEnum(const char* entry) override {
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        bool available = false;
        if (IsEnumEntryAvailable(entry, available) != PxnErrSuccess || !available) {
            return PxnErrInvalidValue;
        }
        ErrorOwner error;
        arv_gc_enumeration_set_string_value(Enumeration(), entry, error.Receive());
        return ToResult(error);
    }

    PxnError GetEnumEntries(std::vector<const char*>& entries) override {
        for (ArvGcFeatureNode* entry : Entries()) {
            ErrorOwner error;
            if (arv_gc_feature_node_is_implemented(entry, error.Receive()) && !error) {
                entries.push_back(texts.Intern(arv_gc_feature_node_get_name(entry)));
            }
        }
        return PxnErrSuccess;
    }

    PxnError IsEnumEntryAvailable(const char* entry, bool& available) override {
        ArvGcFeatureNode* found = Find(entry);
        if (!found) {
            return PxnErrNotFound;
        }
        ErrorOwner error;
        available = arv_gc_feature_node_is_implemented(found, error.Receive()) && !error &&
                    arv_gc_feature_node_is_available(found, error.Receive()) && !error;
        return ToResult(error);
    }

    PxnError GetEnumEntry(const char* entry, PxnFeatureEnumEntry& description) override {
        ArvGcFeatureNode* found = Find(entry);
        if (!found) {
            return PxnErrNotFound;
        }
        ErrorOwner error;
        const gint64 value = arv_gc_enum_entry_get_value(ARV_GC_ENUM_ENTRY(found), error.Receive());
        if (error) {
            return ToResult(error);
        }
        const PxnFeatureInfo entryInfo = DescribeNode(texts, found, "");
        description = {
            entryInfo.name, entryInfo.displayName, entryInfo.tooltip, entryInfo.description,
            value,          entryInfo.visibility};
        return PxnErrSuccess;
    }

private:
    ArvGcEnumeration* Enumeration() const { return ARV_GC_ENUMERATION(node); }

    std::vector<ArvGcFeatureNode*> Entries() const {
        std::vector<ArvGcFeatureNode*> entries;
        for (const GSList* item = arv_gc_enumeration_get_entries(Enumeration()); item;
             item = item->next) {
            ArvGcFeatureNode* const entry = ARV_GC_FEATURE_NODE(item->data);
            if (arv_gc_feature_node_get_name(entry)) { // a faulty description may leave it out
                entries.push_back(entry);
            }
        }
        // Aravis keeps them last one first.
        std::reverse(entries.begin(), entries.end());
        return entries;
    }

    ArvGcFeatureNode* Find(const char* name) const {
        for (ArvGcFeatureNode* entry : Entries()) {
            if (std::strcmp(arv_gc_feature_node_get_name(entry), name) == 0) {
                return entry;
            }
        }
        return nullptr;
    }

    skeleton::TextPool& texts;
};

class StringNodeFeature : public NodeFeature {
public:
    using NodeFeature::NodeFeature;

    PxnError GetString(std::string& value) override {
        if (const PxnError refused = RequireReadable()) {
            return refused;
        }
        ErrorOwner error;
        const char* text = arv_gc_string_get_value(ARV_GC_STRING(node), error.Receive());
        // A register that could not be read leaves Aravis with a text that has no end.
        value = text && !error ? text : "";
        return ToResult(error);
    }

    PxnError SetString(const char* value) override {
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        std::uint32_t maxLength = 0;
        if (const PxnError failed = GetStringMaxLength(maxLength)) {
            return failed;
        }
        if (std::strlen(value) > maxLength) {
            return PxnErrInvalidValue;
        }
        ErrorOwner error;
        arv_gc_string_set_value(ARV_GC_STRING(node), value, error.Receive());
        return ToResult(error);
    }

    PxnError GetStringMaxLength(std::uint32_t& maxLength) override {
        ErrorOwner error;
        const gint64 length = arv_gc_string_get_max_length(ARV_GC_STRING(node), error.Receive());
        maxLength = static_cast<std::uint32_t>(std::clamp<gint64>(length, 0, G_MAXINT32));
        return ToResult(error);
    }
};

class BoolNodeFeature : public NodeFeature {
public:
    using NodeFeature::NodeFeature;

    PxnError GetBool(bool& value) override {
        if (const PxnError refused = RequireReadable()) {
            return refused;
        }
        ErrorOwner error;
        value = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), error.Receive()) != 0;
        return ToResult(error);
    }

    PxnError SetBool(bool value) override {
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        ErrorOwner error;
        arv_gc_boolean_set_value(ARV_GC_BOOLEAN(node), value, error.Receive());
        return ToResult(error);
    }
};

class CommandNodeFeature : public NodeFeature {
public:
    using NodeFeature::NodeFeature;

    PxnError Run() override {
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        ErrorOwner error;
        arv_gc_command_execute(ARV_GC_COMMAND(node), error.Receive());
        return ToResult(error);
    }

    bool IsStartOrStop() const override {
        static constexpr std::string_view kNames[] = {"AcquisitionStart", "AcquisitionStop",
                                                      "AcquisitionAbort"};
        return std::find(std::begin(kNames), std::end(kNames), Name()) != std::end(kNames);
    }

    PxnError IsDone(bool& done) override {
        // Descriptions give a polling time to commands that take a while; any other command is done
        // when the camera has acknowledged the write.
        ArvGcPropertyNode* link = FindProperty(node, "pValue");
        ArvGcNode* value = link ? arv_gc_property_node_get_linked_node(link) : nullptr;
        done = true;
        if (Info().pollingTime == 0 || !value || !ARV_IS_GC_INTEGER(value) ||
            StaticAccessMode(ARV_GC_FEATURE_NODE(value)) != ARV_GC_ACCESS_MODE_RW) {
            return PxnErrSuccess;
        }
        ErrorOwner error;
        const gint64 present = arv_gc_integer_get_value(ARV_GC_INTEGER(value), error.Receive());
        ArvGcPropertyNode* start = FindProperty(node, "CommandValue");
        if (!error && start) {
            done = present != arv_gc_property_node_get_int64(start, error.Receive());
        }
        return ToResult(error);
    }
};

class RawNodeFeature : public NodeFeature {
public:
    using NodeFeature::NodeFeature;

    PxnError GetRaw(std::vector<char>& bytes) override {
        std::uint32_t length = 0;
        if (const PxnError refused = RequireReadable()) {
            return refused;
        }
        if (const PxnError failed = GetRawLength(length)) {
            return failed;
        }
        bytes.resize(length);
        if (length == 0) {
            return PxnErrSuccess;
        }
        ErrorOwner error;
        arv_gc_register_get(ARV_GC_REGISTER(node), bytes.data(), length, error.Receive());
        return ToResult(error);
    }

    PxnError SetRaw(const char* bytes, std::uint32_t size) override {
        std::uint32_t length = 0;
        if (const PxnError refused = RequireWritable()) {
            return refused;
        }
        if (const PxnError failed = GetRawLength(length)) {
            return failed;
        }
        if (size != length) {
            return PxnErrInvalidValue;
        }
        if (length == 0) {
            return PxnErrSuccess;
        }
        ErrorOwner error;
        arv_gc_register_set(ARV_GC_REGISTER(node), bytes, size, error.Receive());
        return ToResult(error);
    }

    PxnError GetRawLength(std::uint32_t& length) override {
        ErrorOwner error;
        const guint64 bytes = arv_gc_register_get_length(ARV_GC_REGISTER(node), error.Receive());
        length = static_cast<std::uint32_t>(std::min<guint64>(bytes, G_MAXINT32));
        return ToResult(error);
    }
};

} // namespace

std::unique_ptr<Feature> MakeNodeFeature(skeleton::TextPool& texts, ArvGcFeatureNode* node,
                                         const std::string& category) {
    if (ARV_IS_GC_CATEGORY(node) || ARV_IS_GC_PORT(node)) {
        return nullptr;
    }
    PxnFeatureInfo info = DescribeNode(texts, node, category.c_str());
    const auto unit = [&texts](const char* text) {
        return texts.Intern(text ? text : "");
    };
    // Enumerations and register-backed numbers implement several of these interfaces, so the order
    // matters.
    if (ARV_IS_GC_COMMAND(node)) {
        info.featureDataType = PxnFeatureDataCommand;
        return std::make_unique<CommandNodeFeature>(info, node);
    }
    if (ARV_IS_GC_ENUMERATION(node)) {
        info.featureDataType = PxnFeatureDataEnum;
        return std::make_unique<EnumNodeFeature>(info, node, texts);
    }
    if (ARV_IS_GC_BOOLEAN(node)) {
        info.featureDataType = PxnFeatureDataBool;
        return std::make_unique<BoolNodeFeature>(info, node);
    }
    if (ARV_IS_GC_STRING(node)) {
        info.featureDataType = PxnFeatureDataString;
        return std::make_unique<StringNodeFeature>(info, node);
    }
    if (ARV_IS_GC_FLOAT(node)) {
        info.featureDataType = PxnFeatureDataFloat;
        info.unit = unit(arv_gc_float_get_unit(ARV_GC_FLOAT(node)));
        info.representation =
            texts.Intern(RepresentationName(arv_gc_float_get_representation(ARV_GC_FLOAT(node))));
        return std::make_unique<FloatNodeFeature>(info, node);
    }
    if (ARV_IS_GC_INTEGER(node)) {
        info.featureDataType = PxnFeatureDataInt;
        info.unit = unit(arv_gc_integer_get_unit(ARV_GC_INTEGER(node)));
        info.representation = texts.Intern(
            RepresentationName(arv_gc_integer_get_representation(ARV_GC_INTEGER(node))));
        return std::make_unique<IntNodeFeature>(info, node);
    }
    if (ARV_IS_GC_REGISTER(node)) {
        info.featureDataType = PxnFeatureDataRaw;
        return std::make_unique<RawNodeFeature>(info, node);
    }
    return nullptr;
}

} // namespace genicam
