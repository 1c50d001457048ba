// module_loader.cpp - loads grabber modules for an application
#include "mivora/module_loader.h"

#include "mivora/module_entry.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kMaxModulePathLength = 32768;

static_assert(offsetof(MV_MODULE_INTERFACE, servicesVersion) == kMvModuleInterfaceSmallest);

struct Entries {
    MV_CREATE_GRABBER create = nullptr;
    MV_DELETE_GRABBER destroy = nullptr;
    MV_MODULE_INTERFACE_QUERY query = nullptr;
    std::uint32_t servicesVersion = 0;
    MV_SERVICES_QUERY services = nullptr;
};

/// Takes over what the record says about services, if it is long enough to say anything.
void TakeServices(const MV_MODULE_INTERFACE& record, Entries& entries) {
    if (record.size >= offsetof(MV_MODULE_INTERFACE, version)) {
        entries.servicesVersion = record.servicesVersion;
        entries.services = record.services;
    }
}

std::string VersionOfRecord(const MV_MODULE_INTERFACE& record) {
    return record.size >= sizeof(MV_MODULE_INTERFACE) && record.version ? record.version : "";
}

/// Looks up a symbol; appends its name to `missing` if the module does not export it.
template <typename Function>
void FindEntry(const platform::SharedLibrary& library, const char* name, Function& function,
               std::string& missing) {
    function = reinterpret_cast<Function>(library.FindSymbol(name));
    if (!function) {
        missing.append(missing.empty() ? "" : ", ").append(name);
    }
}

/// The reason why the module cannot be used; empty if it can.
std::string Incompatibility(const MV_MODULE_INTERFACE* record) {
    if (!record) {
        return "it says nothing about its interface";
    }
    // The size is the first member and thus valid for every layout of the record.
    if (record->size < kMvModuleInterfaceSmallest) {
        return "its interface record has " + std::to_string(record->size) + " bytes, fewer than " +
               std::to_string(kMvModuleInterfaceSmallest);
    }
    std::string reason;
    if (record->interfaceVersion != MIVORA_INTERFACE_VERSION) {
        reason = "it was built for version " + std::to_string(record->interfaceVersion) +
                 " of the grabber interface, this host has version " +
                 std::to_string(MIVORA_INTERFACE_VERSION);
    }
    const char* const family = record->compilerFamily ? record->compilerFamily : "unknown C++ ABI";
    if (std::strcmp(family, kMvCompilerFamily) != 0) {
        reason.append(reason.empty() ? "" : "; ")
            .append("it was built with the ")
            .append(family)
            .append(", this host with the ")
            .append(kMvCompilerFamily);
    }
    return reason;
}

} // namespace

struct CModuleLoader::Impl {
    /// Runs an operation whose failures have an error text.
    template <typename Result, typename Body>
    Result Run(Result fallback, Body body) noexcept {
        try {
            error.clear();
            return body();
        } catch (const std::bad_alloc&) {
            error = "out of memory"; // too short to need memory itself
        } catch (...) {
            error = "it has thrown";
        }
        return fallback;
    }
    bool Refuse(const std::string& file, const std::string& reason) {
        error = "Cannot use the grabber module \"" + file + "\": " + reason;
        return false;
    }

    platform::SharedLibrary library;
    Entries entries;
    std::string path;
    std::string version;
    std::string error;
    std::vector<CMivoraGrabber*> grabbers;
};

CModuleLoader::CModuleLoader() : impl(new Impl) {}

CModuleLoader::~CModuleLoader() {
    Unload();
    delete impl;
}

bool CModuleLoader::Load(const char* path) {
    Unload();
    return impl->Run(false, [&] {
        if (!path || *path == '\0') {
            return impl->Refuse("", "no file was named");
        }
        std::string file = platform::FullPath(path, kMaxModulePathLength);
        if (file.empty() || !platform::PathExists(file)) {
            return impl->Refuse(path, "there is no such file");
        }
        platform::SharedLibrary library;
        std::string reason;
        if (!library.Load(file, true, &reason)) {
            return impl->Refuse(file, reason);
        }
        Entries entries;
        std::string missing;
        FindEntry(library, kMvModuleInterfaceName, entries.query, missing);
        FindEntry(library, kMvCreateGrabberName, entries.create, missing);
        FindEntry(library, kMvDeleteGrabberName, entries.destroy, missing);
        if (!missing.empty()) {
            return impl->Refuse(file, "it does not export " + missing);
        }
        const MV_MODULE_INTERFACE* const record = entries.query();
        reason = Incompatibility(record);
        if (!reason.empty()) {
            return impl->Refuse(file, reason);
        }
        TakeServices(*record, entries);
        impl->version = VersionOfRecord(*record);
        impl->library = std::move(library);
        impl->entries = entries;
        impl->path = std::move(file);
        return true;
    });
}

bool CModuleLoader::IsLoaded() const {
    return impl->library.IsLoaded();
}

void CModuleLoader::Unload() {
    while (!impl->grabbers.empty()) {
        DeleteGrabber(impl->grabbers.back());
    }
    impl->library.Unload();
    impl->entries = Entries();
    impl->path.clear();
    impl->version.clear();
}

const char* CModuleLoader::GetPath() const {
    return impl->path.c_str();
}

const char* CModuleLoader::GetModuleVersion() const {
    return impl->version.c_str();
}

CMivoraGrabber* CModuleLoader::CreateGrabber() {
    return impl->Run(static_cast<CMivoraGrabber*>(nullptr), [&]() -> CMivoraGrabber* {
        if (!IsLoaded()) {
            impl->error = "No grabber module is loaded";
            return nullptr;
        }
        // Reserved first, so that recording the new grabber cannot fail.
        impl->grabbers.reserve(impl->grabbers.size() + 1);
        CMivoraGrabber* const grabber = impl->entries.create(impl->library.Handle());
        if (!grabber) {
            impl->error = "The grabber module \"" + impl->path + "\" made no grabber";
            return nullptr;
        }
        impl->grabbers.push_back(grabber);
        return grabber;
    });
}

void CModuleLoader::DeleteGrabber(CMivoraGrabber* grabber) {
    const auto found = std::find(impl->grabbers.begin(), impl->grabbers.end(), grabber);
    if (found != impl->grabbers.end()) {
        impl->grabbers.erase(found);
        impl->entries.destroy(grabber);
    }
}

IMivoraModuleServices* CModuleLoader::GetServices(CMivoraGrabber* grabber) {
    return impl->Run(static_cast<IMivoraModuleServices*>(nullptr), [&]() -> IMivoraModuleServices* {
        const std::vector<CMivoraGrabber*>& grabbers = impl->grabbers;
        if (std::find(grabbers.begin(), grabbers.end(), grabber) == grabbers.end()) {
            impl->error = "The grabber was not made by the loaded module";
            return nullptr;
        }
        const std::string module = "The grabber module \"" + impl->path + "\" ";
        if (!impl->entries.services) {
            impl->error = module + "offers no services";
            return nullptr;
        }
        if (impl->entries.servicesVersion != MIVORA_SERVICES_BASE_VERSION) {
            impl->error = module + "offers version " +
                          std::to_string(impl->entries.servicesVersion) +
                          " of the services, this host has version " +
                          std::to_string(MIVORA_SERVICES_BASE_VERSION);
            return nullptr;
        }
        IMivoraModuleServices* const services = impl->entries.services(grabber);
        if (!services) {
            impl->error = module + "offers no services for this grabber";
        }
        return services;
    });
}

const char* CModuleLoader::GetErrorText() const {
    return impl->error.c_str();
}
