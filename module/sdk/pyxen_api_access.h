// pyxen_api_access.h - the module's only door to the camera SDK
#pragma once

#include "platform/file_version.h"
#include "platform/shared_library.h"
#include "pxnc.h"
#include "pxnc_entries.h"
#include "sdk/feature_value.h"
#include "sdk/logger.h"
#include "sdk/sdk_library.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace pyxen {
class InvalidationHub;
}

/// Loads the camera SDK's library, resolves its entries and starts it; empty until Load succeeds.
///
/// Load and Unload run on the thread that initialises the grabber. Any thread may ask IsValid at
/// any time. The entries are null outside a load, so a thread calls one only after IsValid has
/// returned true and while something of the caller's keeps Unload from running: being the
/// initialising thread, a callback that the SDK waits for, a thread that is joined or a mutex that
/// is taken before Unload.
class CPyxenAPIAccess {
public:
    CPyxenAPIAccess() = default;
    ~CPyxenAPIAccess();
    CPyxenAPIAccess(const CPyxenAPIAccess&) = delete;
    CPyxenAPIAccess& operator=(const CPyxenAPIAccess&) = delete;

    /// Loads and starts the SDK with the configuration file `configPath` (null: the SDK's
    /// default). Returns IsValid(). `sink` may be null and must outlive the object.
    bool Load(const char* configPath, pyxen::Logger sink);
    bool IsValid() const { return valid.load(); }
    /// Shuts the SDK down when it was started and frees the library.
    void Unload();

    /// One 16-bit part of the loaded file's version, 0 the most significant; 65535 when unknown.
    std::uint16_t GetFileVersionPart(unsigned part) const;

    /// Reads and writes a 32-bit device register; true when all 4 bytes were transferred. With
    /// `swap` the four bytes are reversed.
    /// Compatibility: without it byte 0 is in the top and the bottom byte and byte 3 is lost, as
    /// hosts expect.
    bool ReadRegister32(PxnHandle handle, std::uint64_t address, std::uint32_t* value, bool swap);
    bool WriteRegister32(PxnHandle handle, std::uint64_t address, std::uint32_t value, bool swap);

    /// Reads a whole string feature into `out`, which a failure leaves unchanged. Returns the SDK's
    /// code of the last call, or PxnErrOther when out of memory.
    PxnError GetStringFeature(PxnHandle handle, const char* name, std::string& out);
    /// As GetStringFeature, but takes the entry name where the feature is an enumeration.
    PxnError GetFeatureAsText(PxnHandle handle, const char* name, std::string& out);

    /// Returns the number of cameras and stores the array (freed by the caller with free), or null,
    /// in `out` unless that is null. A failure gives an empty list and log lines; while the SDK is
    /// not loaded the list is empty.
    std::uint32_t AllocateAndGetCameraList(PxnCameraInfo** out);

    /// Whether a value fits a feature's range: inclusive limits, length up to the maximum, text
    /// of one of the entries. A failed query is reported with the names and answers false.
    /// `moduleName` may be null. Booleans and bytes always fit.
    bool IsInRange(PxnHandle handle, const char* moduleName, const char* name,
                   const pyxen::FeatureValue& value) const {
        return IsInRange(handle, moduleName, name, value, log);
    }
    /// The same, reporting to `sink`.
    bool IsInRange(PxnHandle handle, const char* moduleName, const char* name,
                   const pyxen::FeatureValue& value, pyxen::Logger sink) const;
    bool IsIntInRange(PxnHandle handle, const char* moduleName, const char* name,
                      std::int64_t value) const;
    bool IsFloatInRange(PxnHandle handle, const char* moduleName, const char* name,
                        double value) const;
    bool IsStringInRange(PxnHandle handle, const char* moduleName, const char* name,
                         const char* value) const;
    bool IsEnumInRange(PxnHandle handle, const char* moduleName, const char* name,
                       const char* value) const;

#define PYXEN_DECLARE_ENTRY(name) decltype(&::name) name = nullptr;
    PXN_ENTRIES(PYXEN_DECLARE_ENTRY)
#undef PYXEN_DECLARE_ENTRY

    /// The loaded library's handle, or null.
    void* GetLibraryHandle() const {
        return library.Handle();
    }
    /// Who follows features of the loaded library; null when nothing is loaded.
    const std::shared_ptr<pyxen::InvalidationHub>& Invalidations() const {
        return invalidations;
    }
    /// Looks up an export beside the table; null when it is absent or nothing is loaded.
    void* FindExport(const char* name) const {
        return library.FindSymbol(name);
    }

private:
    void LoadSdkLibrary();
    bool LoadLibraryFrom(const std::string& directory, const std::string& file);
    /// A library that passes calls on to another one reports that one's version.
    void TakeVersionBehind();
    /// False when an entry is missing; the others are resolved all the same.
    bool ResolveEntries();
    void StartSdk(const char* configPath);

    pyxen::Logger log;
    std::string dllName;
    platform::SharedLibrary library;
    platform::FileVersion versionInfo;
    std::optional<std::array<std::uint16_t, 4>> versionBehind;
    pyxen::SdkLibraryUse libraryUse;                       // while the SDK is started
    std::shared_ptr<pyxen::InvalidationHub> invalidations; // while valid
    std::atomic<bool> valid{false};
};
