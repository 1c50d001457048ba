// transport_layer_config.cpp - the section of the configuration that fits the camera's connection
#include "grabber/transport_layer_config.h"

#include "platform/file_system.h"
#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"

#include <algorithm>

namespace {

std::string ReadText(const CIniFile& ini, const std::string& section, const char* key) {
    std::string text(ini.GetText(section.c_str(), key, "", nullptr, 0), '\0');
    ini.GetText(section.c_str(), key, "", text.data(), static_cast<uint32_t>(text.size() + 1));
    return text;
}

/// As values are shown in the log: a blank and the quoted text.
std::string Shown(const std::string& value) {
    return " \"" + value + "\"";
}

} // namespace

void CMivoraKVNPyxenClass::LoadTransportLayerConfig() {
    firstQueueThenSnap = false;
    NoThrow(false, [this] {
        const Logger log(GetLogSink());
        SelectorValues values;
        std::string shownValues;
        for (std::size_t i = 0; i < kSelectorKeys.size(); ++i) {
            const FeatureCache& cache =
                cameraCaches[i == 0 ? kInterfaceCache : kTransportLayerCache];
            std::string& text = values.texts[i];
            if (api.GetFeatureAsText(cache.GetHandle(), kSelectorKeys[i], text) != PxnErrSuccess) {
                text.clear();
            }
            // The configuration file cannot hold a double quote.
            std::replace(text.begin(), text.end(), '"', '_');
            shownValues += Shown(text);
        }
        std::string syncFile;
        if (!GetFirstQueueThenSnap(values, firstQueueThenSnap, syncFile)) {
            log.Information(
                "CMivoraKVNPyxenClass::OpenActCamera: No TL specific configuration found for%s",
                shownValues.c_str());
        }
        if (syncFile.empty()) {
            log.Information(
                "CMivoraKVNPyxenClass::OpenActCamera: No feature synchronization file found.");
            return true;
        }
        const std::string directory = GetConfigDirectory();
        const std::string path =
            directory.empty() ? syncFile : directory + platform::kPathSeparator + syncFile;
        if (featureSyncher.Init(path.c_str(), log)) {
            log.Information("CMivoraKVNPyxenClass::OpenActCamera: Successfully loaded %s.",
                            path.c_str());
        }
        // What a faulty file declares before its fault holds all the same.
        syncEngine.SyncModuleFeatures(&cameraCaches[kCameraCache], true);
        return true;
    });
}

bool CMivoraKVNPyxenClass::GetFirstQueueThenSnap(const SelectorValues& values, bool& flag,
                                                 std::string& syncFile) {
    const CIniFile* const ini = GetIni();
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
            if (ReadText(*ini, section, kSelectorKeys[i]) == values.texts[i]) {
                matchText += Shown(values.texts[i]);
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
        Logger(GetLogSink())
            .Information(
                "CMivoraKVNPyxenClass::GetFirstQueueThenSnap: Found TL specific configuration for%s in %s/%s.",
                matchText.c_str(), ini->GetPath(), section.c_str());
        return true;
    }
}
