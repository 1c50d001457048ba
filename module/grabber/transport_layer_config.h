// transport_layer_config.h - what selects a section of the per-transport-layer configuration
#pragma once

#include "grabber/mivora_kvn_pyxen_class.h"

#include <array>
#include <cstddef>
#include <string>

/// The keys that select a section, which are also the names of the features they are compared
/// with, in the order in which they are read and shown. The first is the interface's, the others
/// are the transport layer's.
inline constexpr std::array<const char*, 6> kSelectorKeys = {
    "InterfaceID", "TLID", "TLVendorName", "TLModelName", "TLVersion", "TLType"};

/// The open camera's values of the selector keys; empty where they cannot be read.
struct CMivoraKVNPyxenClass::SelectorValues {
    std::array<std::string, kSelectorKeys.size()> texts;
};
