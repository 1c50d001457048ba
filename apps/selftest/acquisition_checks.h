// acquisition_checks.h - checks of opening, buffers, modes and stopping
#pragma once

#include "apps/selftest/selftest.h"

#include <vector>

std::vector<SelftestCheck> AcquisitionSelftestChecks();
