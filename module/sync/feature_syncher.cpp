// feature_syncher.cpp - reads the feature synchronisation file
#include "sync/feature_syncher.h"

#include "platform/text.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

using namespace pyxen;

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

/// Null when the file cannot be opened, or when it cannot be read at all, as a directory.
File OpenFile(const char* path) {
    File file(std::fopen(path, "rb"));
    if (file) {
        const int first = std::fgetc(file.get());
        if (first != EOF) {
            std::ungetc(first, file.get());
        } else if (std::ferror(file.get()) != 0) {
            file.reset();
        }
    }
    return file;
}

// Compatibility: no digits. The blank gets into a token in space mode only.
bool IsIdentifierByte(int byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || byte == '_' ||
           byte == ' ';
}

bool IsWhiteSpace(int byte, bool spaceMode) {
    return byte == '\r' || byte == '\n' || byte == '\t' || (byte == ' ' && !spaceMode);
}

} // namespace

int FeatureSyncher::Init(const char* path, Logger sink) {
    log = sink;
    tokenHistory.clear();
    cursor = 0;
    entries.clear();

    const File file = OpenFile(path);
    if (!file) {
        log.Error(
            "FeatureSyncher::Init: Could not open %s. No feature synchronization will happen.",
            path);
        return 0;
    }
    log.Information("FeatureSyncher::Init: Loading %s...", path);
    const int result = NoThrow(0, [&] { return ReadFile(file.get()); });
    tokenHistory.clear();
    cursor = 0;
    return result;
}

void FeatureSyncher::Clear() {
    entries.clear();
}

const std::vector<FeatureRef>* FeatureSyncher::FindSyncEntry(const char* moduleName,
                                                             const char* featureName) const {
    if (!moduleName || !featureName) {
        return nullptr;
    }
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const auto& entry) {
        return platform::CompareNoCase(entry.watched.ModuleName.c_str(), moduleName) == 0 &&
               platform::CompareNoCase(entry.watched.FeatureName.c_str(), featureName) == 0;
    });
    return found == entries.end() ? nullptr : &found->Dependencies;
}

int FeatureSyncher::ReadFile(std::FILE* file) {
    if (!Expect(file, "{") || !ParseKey(file, "SyncFeatures") || !Expect(file, "[")) {
        return 0; // Compatibility: no line
    }
    if (ExpectOptional(file, "{")) {
        for (;;) {
            if (!ReadEntry(file)) {
                return 0;
            }
            if (!ExpectOptional(file, ",")) {
                break;
            }
            if (!Expect(file, "{")) {
                return 0; // Compatibility: no line
            }
        }
    }
    if (!Expect(file, "]")) {
        LogFault("FeatureSyncher::Init: missing closing bracket");
        return 0;
    }
    if (!Expect(file, "}")) {
        LogFault("FeatureSyncher::Init: missing curly brace");
        return 0;
    }
    if (!Expect(file, "")) {
        LogFault("FeatureSyncher::Init: extra file content after SyncFeatures definition");
        return 0;
    }
    return 1;
}

bool FeatureSyncher::ReadEntry(std::FILE* file) {
    SyncFeatureEntry entry;
    if (!ParseModuleFeature(file, entry.watched)) {
        return false; // Compatibility: no line
    }
    if (!Expect(file, ",")) {
        LogFault("FeatureSyncher::Init: comma missing");
        return false;
    }
    if (!ParseDependencies(file, "Dependencies", entry.Dependencies)) {
        LogFault("FeatureSyncher::Init: missing Dependencies attribute");
        return false;
    }
    entries.push_back(std::move(entry));
    LogEntry(entries.back());
    if (!Expect(file, "}")) {
        LogFault("FeatureSyncher::Init: missing curly brace");
        return false;
    }
    return true;
}

void FeatureSyncher::LogFault(LogFormat<> text) const {
    log.Error(text);
}

void FeatureSyncher::LogEntry(const SyncFeatureEntry& entry) const {
    if (!log) {
        return;
    }
    log.Information("FeatureSyncher::Init: %s::%s will be synched with ",
                    entry.watched.ModuleName.c_str(), entry.watched.FeatureName.c_str());
    for (const FeatureRef& dependency : entry.Dependencies) {
        log.Information("  %s::%s", dependency.ModuleName.c_str(), dependency.FeatureName.c_str());
    }
}

const std::string& FeatureSyncher::ReadToken(std::FILE* file, bool spaceMode) {
    if (cursor < tokenHistory.size()) {
        return tokenHistory[cursor++]; // Compatibility: as it was first read, whatever the mode
    }
    std::string token;
    for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) {
        if (IsWhiteSpace(byte, spaceMode)) {
            if (!token.empty()) {
                break;
            }
        } else if (IsIdentifierByte(byte)) {
            token += static_cast<char>(byte);
        } else {
            if (token.empty()) {
                token = static_cast<char>(byte);
            } else {
                std::ungetc(byte, file);
            }
            break;
        }
    }
    tokenHistory.push_back(std::move(token));
    cursor = tokenHistory.size();
    return tokenHistory.back();
}

bool FeatureSyncher::Expect(std::FILE* file, const char* literal) {
    return ReadToken(file, std::strchr(literal, ' ') != nullptr) == literal;
}

bool FeatureSyncher::ExpectOptional(std::FILE* file, const char* literal) {
    // A step back never reaches behind the newest optional element, so that what was read before
    // it need not be kept: a large file takes no more memory than its entries.
    tokenHistory.erase(tokenHistory.begin(),
                       tokenHistory.begin() + static_cast<std::ptrdiff_t>(cursor));
    cursor = 0;
    if (Expect(file, literal)) {
        return true;
    }
    cursor = 0;
    return false;
}

bool FeatureSyncher::ParseKey(std::FILE* file, const char* name) {
    return Expect(file, "\"") && ReadToken(file, true) == name && Expect(file, "\"") &&
           Expect(file, ":");
}

bool FeatureSyncher::ParseStringAttribute(std::FILE* file, const char* name, std::string& value) {
    if (!ParseKey(file, name) || !Expect(file, "\"")) {
        return false;
    }
    value = ReadToken(file, true);
    if (value == "\"") {
        value.clear(); // it was the closing quote
        return true;
    }
    return Expect(file, "\"");
}

bool FeatureSyncher::ParseModuleFeature(std::FILE* file, FeatureRef& reference) {
    return ParseStringAttribute(file, "ModuleName", reference.ModuleName) && Expect(file, ",") &&
           ParseStringAttribute(file, "FeatureName", reference.FeatureName);
}

bool FeatureSyncher::ParseDependencies(std::FILE* file, const char* name,
                                       std::vector<FeatureRef>& list) {
    if (!ParseKey(file, name) || !Expect(file, "[")) {
        return false;
    }
    if (ExpectOptional(file, "{")) {
        for (;;) {
            FeatureRef reference;
            if (!ParseModuleFeature(file, reference)) {
                return false;
            }
            list.push_back(std::move(reference));
            if (!Expect(file, "}")) {
                return false;
            }
            if (!ExpectOptional(file, ",")) {
                break;
            }
            if (!Expect(file, "{")) {
                return false;
            }
        }
    }
    return Expect(file, "]");
}
