// scripted_module.h - a module of the model as the skeleton sees it
#pragma once

#include "pxnc/skeleton/module.h"
#include "pxnc/skeleton/text_pool.h"

#include <memory>

namespace scripted {

/// The module of that handle, which is looked up in the model at every call, since tests change the
/// model at any time.
std::shared_ptr<skeleton::Module> MakeModule(PxnHandle handle, skeleton::TextPool& texts);

} // namespace scripted
