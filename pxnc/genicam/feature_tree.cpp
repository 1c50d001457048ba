#include "pxnc/genicam/feature_tree.h"

#include "pxnc/genicam/glib_owner.h"
#include "pxnc/genicam/local_feature.h"
#include "pxnc/genicam/node_feature.h"
#include "pxnc/genicam/result_codes.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <string>

namespace genicam {

namespace {

constexpr char kTimingCategory[] = "/AcquisitionControl";

class TreeWalk {
public:
    TreeWalk(TextPool& textPool, ArvGc* gc, bool canWrite,
             std::vector<std::unique_ptr<Feature>>& featureList)
        : texts(textPool), description(gc), writeable(canWrite), features(featureList) {}

    void Visit(const char* name, const std::string& path) {
        ArvGcNode* node = arv_gc_get_node(description, name);
        // A node is visited once, so a description that runs in circles ends too.
        if (node == nullptr || !ARV_IS_GC_FEATURE_NODE(node) || !visited.insert(node).second) {
            return;
        }
        if (!ARV_IS_GC_CATEGORY(node)) {
            auto feature = MakeNodeFeature(texts, ARV_GC_FEATURE_NODE(node),
                                           path.empty() ? "/Root" : path, writeable);
            if (feature != nullptr) {
                features.push_back(std::move(feature));
            }
            return;
        }
        const bool isRoot = std::strcmp(name, "Root") == 0;
        const std::string below = isRoot ? path : path + "/" + name;
        for (const GSList* item = arv_gc_category_get_features(ARV_GC_CATEGORY(node));
             item != nullptr; item = item->next) {
            Visit(static_cast<const char*>(item->data), below);
        }
    }

private:
    TextPool& texts;
    ArvGc* const description;
    const bool writeable;
    std::vector<std::unique_ptr<Feature>>& features;
    std::set<ArvGcNode*> visited;
};

bool Contains(const std::vector<std::unique_ptr<Feature>>& features, const char* name) {
    return std::any_of(features.begin(), features.end(), [name](const auto& feature) {
        return std::strcmp(feature->Name(), name) == 0;
    });
}

/// Adds the description's own node `name` from outside the categories; false when there is none.
bool AppendHiddenNode(TextPool& texts, ArvCamera* camera, bool writeable, const char* name,
                      std::vector<std::unique_ptr<Feature>>& features) {
    ArvGcNode* node = arv_device_get_feature(arv_camera_get_device(camera), name);
    if (node == nullptr || !ARV_IS_GC_FEATURE_NODE(node)) {
        return false;
    }
    auto feature = MakeNodeFeature(texts, ARV_GC_FEATURE_NODE(node), kTimingCategory, writeable);
    if (feature == nullptr) {
        return false;
    }
    features.push_back(std::move(feature));
    return true;
}

using Limits = LocalFeatures::FloatLimits;

/// One of the timing values as Aravis' camera object serves it.
struct CameraValue {
    double (*get)(ArvCamera*, GError**);
    void (*set)(ArvCamera*, double, GError**);
    void (*getBounds)(ArvCamera*, double*, double*, GError**);
};

void AppendCameraValue(TextPool& texts, ArvCamera* camera, bool writeable,
                       const LocalDescription& description, const CameraValue& value,
                       std::vector<std::unique_ptr<Feature>>& features) {
    LocalFeatures::Writer<double> write;
    if (writeable) {
        write = [camera, value](const double& wanted) {
            ErrorOwner error;
            value.set(camera, wanted, error.Receive());
            return ToResult(error);
        };
    }
    LocalFeatures(texts, features)
        .AddFloat(
            description,
            [camera, value](Limits& limits) {
                ErrorOwner error;
                value.getBounds(camera, &limits.min, &limits.max, error.Receive());
                return ToResult(error);
            },
            [camera, value](double& present) {
                ErrorOwner error;
                present = value.get(camera, error.Receive());
                return ToResult(error);
            },
            std::move(write));
}

} // namespace

void AppendDescribedFeatures(TextPool& texts, ArvGc* description, bool writeable,
                             std::vector<std::unique_ptr<Feature>>& features) {
    TreeWalk(texts, description, writeable, features).Visit("Root", "");
}

void AppendStandardTiming(TextPool& texts, ArvCamera* camera, bool writeable,
                          std::vector<std::unique_ptr<Feature>>& features) {
    ErrorOwner error;
    if (!Contains(features, "ExposureTime") &&
        !AppendHiddenNode(texts, camera, writeable, "ExposureTime", features) &&
        arv_camera_is_exposure_time_available(camera, error.Receive()) && !error) {
        AppendCameraValue(texts, camera, writeable,
                          {"ExposureTime", kTimingCategory, "Exposure Time",
                           "Exposure duration; this camera knows it under another name.",
                           PxnVisibilityBeginner, "us"},
                          {arv_camera_get_exposure_time, arv_camera_set_exposure_time,
                           arv_camera_get_exposure_time_bounds},
                          features);
    }
    if (!Contains(features, "AcquisitionFrameRate") &&
        !AppendHiddenNode(texts, camera, writeable, "AcquisitionFrameRate", features) &&
        arv_camera_is_frame_rate_available(camera, error.Receive()) && !error) {
        AppendCameraValue(texts, camera, writeable,
                          {"AcquisitionFrameRate", kTimingCategory, "Acquisition Frame Rate",
                           "Frames per second; this camera knows it under another name.",
                           PxnVisibilityBeginner, "Hz"},
                          {arv_camera_get_frame_rate, arv_camera_set_frame_rate,
                           arv_camera_get_frame_rate_bounds},
                          features);
    }
}

} // namespace genicam
