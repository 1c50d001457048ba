// transport_layer_config.cpp - what the configuration holds for the camera's transport layer
#include "grabber/transport_layer_config.h"

#include "mivora/ini_file.h"
#include "sdk/format_text.h"
#include "sdk/pyxen_api_access.h"

#include <algorithm>
#include <cstdint>

namespace pyxen {

namespace {

std::string ReadText(const CIniFile& ini, const std::string& section, const char* key) {
    std::string text(ini.GetText(section.c_str(), key, "", nullptr, 0), '\0');
    const std::uint32_t length = ini.GetText(section.c_str(), key, "", text.data(),
                                             static_cast<std::uint32_t>(text.size() + 1));
    text.resize(std::min<std::size_t>(text.size(), length)); // shorter when out of memory
    return text;
}

/// As values are shown in the log: a blank and the quoted text.
std::string Shown(const std::string& value) {
    return " \"" + value + "\"";
}

} // namespace

TransportLayerConfig::TransportLayerConfig(CPyxenAPIAccess& api, PxnHandle interfaceModule,
                                           PxnHandle transportLayer, Logger sink)
    : log(sink) {
    for (std::size_t i = 0; i < kSelectorKeys.size(); ++i) {
        const PxnHandle module = i == 0 ? interfaceModule : transportLayer;
        if (api.GetFeatureAsText(module, kSelectorKeys[i], values[i]) != PxnErrSuccess) {
            values[i].clear();
        }
        std::replace(values[i].begin(), values[i].end(), '"', '_');
    }
}

std::string TransportLayerConfig::GetShownValues() const {
    std::string shown;
    for (const std::string& value : values) {
        shown += Shown(value);
    }
    return shown;
}

bool TransportLayerConfig::GetFirstQueueThenSnap(const CIniFile* ini, bool& flag,
                                                 std::string& syncFile) const {
    if (!ini) {
        return false;
    }
    for (uint64_t number = 0;; ++number) {
        const std::string section = FormatText("TLSpecificConfig_%I64u", number);
        std::size_t present = 0;
        bool matches = true;
        std::string matchText;
        for (std::size_t i = 0; i < kSelectorKeys.size(); ++i) {
            if (!ini->HasKey(section.c_str(), kSelectorKeys[i])) {
                continue;
            }
            ++present;
            if (ReadText(*ini, section, kSelectorKeys[i]) == values[i]) {
                matchText += Shown(values[i]);
            } else {
                matches = false;
            }
        }
        // A gap ends the search, whatever stands behind it.
        if (present == 0) {
            return false;
        }
        if (!matches) {
            continue;
        }
        flag = ini->GetInt32(section.c_str(), "FirstQueueThenStartSnap", 0) != 0;
        syncFile = ReadText(*ini, section, "FeatureSyncFile");
        log.Information(
            "CMivoraKVNPyxenClass::GetFirstQueueThenSnap: Found TL specific configuration for%s in %s/%s.",
            matchText.c_str(), ini->GetPath(), section.c_str());
        return true;
    }
}

} // namespace pyxen
