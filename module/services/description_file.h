// description_file.h - the file in a camera that describes its features
#pragma once

#include "mivora/module_services.h"
#include "services/service_context.h"

namespace pyxen {

/// Reads the file from the open camera's registers and passes it on, by the rules of GigE Vision
/// (the first URL register) or USB3 Vision (the manifest table). Throws std::bad_alloc. Any thread.
ServiceOutcome ReadDescriptionFile(ServiceContext& context, MV_DATA_RECEIVER receiver,
                                   void* receiverContext);

} // namespace pyxen
