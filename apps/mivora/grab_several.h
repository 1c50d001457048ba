// grab_several.h - the command "grab" with several cameras
#pragma once

#include "apps/common/app_options.h"
#include "apps/mivora/grab_options.h"

class IGrabberMaker;

/// Opens all cameras of the options, each with a grabber of its own, starts them together, records
/// each into a folder of its own, and prints one report. Throws FramesMissing or CommandFailure
/// unless all that was wanted has been done.
void GrabFromSeveral(const AppOptions& app, const GrabOptions& options, IGrabberMaker& maker);
