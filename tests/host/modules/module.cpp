// module.cpp - a minimal grabber module, valid or not depending on compile definitions
#include "mivora/module_entry.h"
#include "tests/host/test_grabber.h"
#include "tests/support/test_services.h"

#if defined(_MSC_VER) || defined(__MINGW32__)
#define EXPORTED extern "C" __declspec(dllexport)
#else
#define EXPORTED extern "C" __attribute__((visibility("default")))
#endif

#ifndef TEST_MODULE_SIZE
#define TEST_MODULE_SIZE sizeof(MV_MODULE_INTERFACE)
#endif
#ifndef TEST_MODULE_OWN_VERSION
#define TEST_MODULE_OWN_VERSION nullptr
#endif
#ifndef TEST_MODULE_VERSION
#define TEST_MODULE_VERSION MIVORA_INTERFACE_VERSION
#endif
#ifndef TEST_MODULE_FAMILY
#define TEST_MODULE_FAMILY kMvCompilerFamily
#endif

#ifdef TEST_MODULE_SERVICES_VERSION
IMivoraModuleServices* Services(CMivoraGrabber* grabber) {
    static TestServices services;
#ifdef TEST_MODULE_SERVICES_FOR_NOBODY
    return grabber ? nullptr : &services;
#else
    return grabber ? &services : nullptr;
#endif
}
#endif

#ifndef TEST_MODULE_SILENT
EXPORTED const MV_MODULE_INTERFACE* MivoraModuleInterface() {
#ifdef TEST_MODULE_SERVICES_VERSION
    static const MV_MODULE_INTERFACE record = {TEST_MODULE_SIZE,   TEST_MODULE_VERSION,
                                               TEST_MODULE_FAMILY, TEST_MODULE_SERVICES_VERSION,
                                               Services,           TEST_MODULE_OWN_VERSION};
#else
    static const MV_MODULE_INTERFACE record = {
        TEST_MODULE_SIZE, TEST_MODULE_VERSION,    TEST_MODULE_FAMILY, 0,
        nullptr,          TEST_MODULE_OWN_VERSION};
#endif
    return &record;
}
#endif

#ifndef TEST_MODULE_WITHOUT_ENTRIES
EXPORTED CMivoraGrabber* CreateGrabberInstance(void* instance) {
#ifdef TEST_MODULE_MAKES_NOTHING
    (void)instance;
    return nullptr;
#else
    return new TestGrabber(instance);
#endif
}

EXPORTED void DeleteGrabberInstance(CMivoraGrabber* grabber) {
    delete grabber;
}
#endif
