// transport_layer_config.h - what the configuration holds for the camera's transport layer
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"

#include <array>
#include <cstddef>
#include <string>

class CIniFile;
class CPyxenAPIAccess;

namespace pyxen {

/// Finds the section of the configuration whose keys fit the open camera's interface and transport
/// layer. Operations throw std::bad_alloc.
class TransportLayerConfig {
public:
    /// Reads what the keys are compared with from the two modules; a value that cannot be read is
    /// empty. Double quotes, which an ini file cannot hold, are replaced by underscores.
    TransportLayerConfig(CPyxenAPIAccess& api, PxnHandle interfaceModule, PxnHandle transportLayer,
                         Logger sink);

    /// Reads the start strategy and the name of the synchronisation file from the first section
    /// that fits; false when `ini` is null or has none: both are left unchanged then.
    bool GetFirstQueueThenSnap(const CIniFile* ini, bool& flag, std::string& syncFile) const;
    /// The values as they appear in the log, in the order of the keys.
    std::string GetShownValues() const;

private:
    // These keys select a section; they are also the names of the features. The first one is the
    // interface's, the others are the transport layer's.
    static constexpr std::array<const char*, 6> kSelectorKeys = {
        "InterfaceID", "TLID", "TLVendorName", "TLModelName", "TLVersion", "TLType"};

    std::array<std::string, kSelectorKeys.size()> values;
    const Logger log;
};

} // namespace pyxen
