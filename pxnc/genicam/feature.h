// feature.h - what modules and their features are made of here
#pragma once

#include "pxnc/skeleton/feature_module.h"
#include "pxnc/skeleton/local_feature.h"

namespace genicam {

using Feature = skeleton::DescribedFeature;
using Module = skeleton::FeatureModule;
using skeleton::LocalDescription;
using skeleton::LocalFeatures;

} // namespace genicam
