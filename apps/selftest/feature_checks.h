// feature_checks.h - checks of parameters, features and settings
#pragma once

#include "apps/selftest/selftest.h"

#include <vector>

std::vector<SelftestCheck> FeatureSelftestChecks();
