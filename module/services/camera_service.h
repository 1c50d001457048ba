// camera_service.h - the grabber's list of cameras, for hosts
#pragma once

#include "mivora/module_services.h"
#include "services/service_context.h"

namespace pyxen {

/// Passes each camera of the grabber's list. Throws std::bad_alloc. Any thread.
ServiceOutcome ListCameras(ServiceContext& context, MV_CAMERA_RECEIVER receiver,
                           void* receiverContext);

} // namespace pyxen
