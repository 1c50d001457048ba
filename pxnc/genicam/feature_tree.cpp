// feature_tree.cpp - all features that a camera's GenICam description offers
#include "pxnc/genicam/feature_tree.h"

#include "pxnc/genicam/feature.h"
#include "pxnc/genicam/glib_owner.h"
#include "pxnc/genicam/node_feature.h"
#include "pxnc/genicam/result_codes.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <string>

namespace genicam {
namespace {

constexpr char kTimingCategory[] = "/AcquisitionControl";
constexpr unsigned kDeepestCategory = 64;

class TreeWalk {
public:
    TreeWalk(skeleton::TextPool& textPool, ArvGc* gc,
             std::vector<std::unique_ptr<Feature>>& featureList)
        : texts(textPool), description(gc), features(featureList) {}

    void Visit(const char* name, const std::string& path, unsigned depth = 0) {
        ArvGcNode* node = arv_gc_get_node(description, name);
        // A node is visited once, so a description that runs in circles ends too.
        if (!node || !ARV_IS_GC_FEATURE_NODE(node) || !visited.insert(node).second) {
            return;
        }
        if (!ARV_IS_GC_CATEGORY(node)) {
            auto feature =
                MakeNodeFeature(texts, ARV_GC_FEATURE_NODE(node), path.empty() ? "/Root" : path);
            if (feature) {
                features.push_back(std::move(feature));
            }
            return;
        }
        if (depth > kDeepestCategory) {
            return;
        }
        const bool isRoot = std::strcmp(name, "Root") == 0;
        const std::string below = isRoot ? path : path + "/" + name;
        for (const GSList* item = arv_gc_category_get_features(ARV_GC_CATEGORY(node)); item;
             item = item->next) {
            Visit(static_cast<const char*>(item->data), below, depth + 1);
        }
    }

private:
    skeleton::TextPool& texts;
    ArvGc* const description;
    std::vector<std::unique_ptr<Feature>>& features;
    std::set<ArvGcNode*> visited;
};

bool Contains(const std::vector<std::unique_ptr<Feature>>& features, const char* name) {
    return std::any_of(features.begin(), features.end(), [name](const auto& feature) {
        return std::strcmp(feature->Name(), name) == 0;
    });
}

/// Adds the description's own node `name` from outside the categories; false when there is none.
bool AppendHiddenNode(skeleton::TextPool& texts, ArvCamera* camera, const char* name,
                      std::vector<std::unique_ptr<Feature>>& features) {
    ArvGcNode* node = arv_device_get_feature(arv_camera_get_device(camera), name);
    if (!node || !ARV_IS_GC_FEATURE_NODE(node)) {
        return false;
    }
    auto feature = MakeNodeFeature(texts, ARV_GC_FEATURE_NODE(node), kTimingCategory);
    if (!feature) {
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

void AppendCameraValue(skeleton::TextPool& texts, ArvCamera* camera,
                       const LocalDescription& description, const CameraValue& value,
                       std::vector<std::unique_ptr<Feature>>& features) {
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
            [camera, value](const double& wanted) {
                ErrorOwner error;
                value.set(camera, wanted, error.Receive());
                return ToResult(error);
            });
}

} // namespace

void AppendDescribedFeatures(skeleton::TextPool& texts, ArvGc* description,
                             std::vector<std::unique_ptr<Feature>>& features) {
    TreeWalk(texts, description, features).Visit("Root", "");
}

void AppendStandardTiming(skeleton::TextPool& texts, ArvCamera* camera,
                          std::vector<std::unique_ptr<Feature>>& features) {
    ErrorOwner error;
    if (!Contains(features, "ExposureTime") &&
        !AppendHiddenNode(texts, camera, "ExposureTime", features) &&
        arv_camera_is_exposure_time_available(camera, error.Receive()) && !error) {
        AppendCameraValue(texts, camera,
                          {"ExposureTime", kTimingCategory, "Exposure Time",
                           "Exposure duration; this camera knows it under another name.",
                           PxnVisibilityBeginner, "us"},
                          {arv_camera_get_exposure_time, arv_camera_set_exposure_time,
                           arv_camera_get_exposure_time_bounds},
                          features);
    }
    if (!Contains(features, "AcquisitionFrameRate") &&
        !AppendHiddenNode(texts, camera, "AcquisitionFrameRate", features) &&
        arv_camera_is_frame_rate_available(camera, error.Receive()) && !error) {
        AppendCameraValue(texts, camera,
                          {"AcquisitionFrameRate", kTimingCategory, "Acquisition Frame Rate",
                           "Frames per second; this camera knows it under another name.",
                           PxnVisibilityBeginner, "Hz"},
                          {arv_camera_get_frame_rate, arv_camera_set_frame_rate,
                           arv_camera_get_frame_rate_bounds},
                          features);
    }
}

} // namespace genicam
