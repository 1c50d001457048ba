// feature_tree.h - all features that a camera's GenICam description offers
#pragma once

#include "pxnc/genicam/feature.h"
#include "pxnc/skeleton/text_pool.h"

#include <arv.h>

#include <memory>
#include <vector>

namespace genicam {

/// Walks the description's categories from "Root" and appends a feature for every node on the way,
/// in the description's order; a feature that several categories name is listed under the first.
void AppendDescribedFeatures(skeleton::TextPool& texts, ArvGc* description,
                             std::vector<std::unique_ptr<Feature>>& features);

/// Appends "ExposureTime" (microseconds) and "AcquisitionFrameRate" (hertz) where `features` lack
/// them: the description's node of that name when it has one outside the categories, else what
/// `camera` makes of the names that older cameras use.
void AppendStandardTiming(skeleton::TextPool& texts, ArvCamera* camera,
                          std::vector<std::unique_ptr<Feature>>& features);

} // namespace genicam
