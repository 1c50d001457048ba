// plugin_entry.cpp - what the host finds in the module
#include "grabber/mivora_kvn_pyxen_class.h"
#include "mivora/module_definition.h"
#include "sdk/no_throw.h"

#include <type_traits>

using namespace pyxen;

namespace {

IMivoraModuleServices* ServicesOf(CMivoraGrabber* grabber) {
    return grabber ? &static_cast<CMivoraKVNPyxenClass*>(grabber)->Services() : nullptr;
}

} // namespace

extern "C" {

MIVORA_MODULE_EXPORT CMivoraGrabber* CreateGrabberInstance(void* instance) {
    return NoThrow<CMivoraGrabber*>(nullptr,
                                    [instance] { return new CMivoraKVNPyxenClass(instance); });
}

MIVORA_MODULE_EXPORT void DeleteGrabberInstance(CMivoraGrabber* grabber) {
    delete grabber;
}

MIVORA_MODULE_EXPORT const MV_MODULE_INTERFACE* MivoraModuleInterface() {
    static constexpr MV_MODULE_INTERFACE kInterface = {sizeof(MV_MODULE_INTERFACE),
                                                       MIVORA_INTERFACE_VERSION,
                                                       kMvCompilerFamily,
                                                       MIVORA_SERVICES_BASE_VERSION,
                                                       ServicesOf,
                                                       kMvModuleVersion};
    return &kInterface;
}

// The entries are what the host's types say they are.
static_assert(std::is_same_v<decltype(&CreateGrabberInstance), MV_CREATE_GRABBER>);
static_assert(std::is_same_v<decltype(&DeleteGrabberInstance), MV_DELETE_GRABBER>);
static_assert(std::is_same_v<decltype(&MivoraModuleInterface), MV_MODULE_INTERFACE_QUERY>);
}
