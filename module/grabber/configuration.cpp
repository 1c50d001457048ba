// configuration.cpp - what the module keeps in the grabber's section
#include "grabber/configuration.h"

#include "grabber/camera_identity.h"
#include "imaging/conversion_helpers.h"
#include "mivora/grabber.h"
#include "sdk/no_throw.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace pyxen {

namespace {

constexpr const char* kUniqueIdKey = "UniqueId";
constexpr const char* kConversionThreadsKey = "ConversionThreads";
constexpr std::size_t kLongestUniqueId = 1023;

struct GrabberSection {
    explicit GrabberSection(std::int32_t number) { InitGrabberSectStr(name, sizeof name, number); }
    char name[64];
};

bool IsBlank(char character) {
    return character == ' ' || character == '\t' || character == '\v' || character == '\f';
}

/// Whether a line of the file could not hold the text as it is, or would look like a quoted one.
bool NeedsQuotes(std::string_view text) {
    if (text.empty()) {
        return false;
    }
    return IsBlank(text.front()) || IsBlank(text.back()) || text.front() == '"' ||
           text.find_first_of("\r\n") != std::string_view::npos;
}

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : text) {
        switch (character) {
        case '\r':
            quoted += "\\r";
            break;
        case '\n':
            quoted += "\\n";
            break;
        case '"':
        case '\\':
            quoted += '\\';
            [[fallthrough]];
        default:
            quoted += character;
            break;
        }
    }
    return quoted + '"';
}

/// The text that a value stands for.
std::string Unquoted(std::string_view value) {
    if (value.size() < 2 || value.front() != '"' || value.back() != '"') {
        return std::string(value);
    }
    value = value.substr(1, value.size() - 2);
    std::string text;
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (value[at] != '\\' || at + 1 == value.size()) {
            text += value[at];
            continue;
        }
        ++at;
        text += value[at] == 'r' ? '\r' : value[at] == 'n' ? '\n' : value[at];
    }
    return text;
}

std::string ReadValue(const CIniFile& ini, const char* section) {
    std::string value(ini.GetText(section, kUniqueIdKey, "", nullptr, 0), '\0');
    ini.GetText(section, kUniqueIdKey, "", value.data(),
                static_cast<std::uint32_t>(value.size() + 1));
    return value;
}

} // namespace

bool LoadChosenCamera(const CIniFile* ini, std::int32_t sectionNumber, CameraIdentity& identity) {
    return NoThrow(false, [&] {
        std::string id;
        if (ini) {
            id = Unquoted(ReadValue(*ini, GrabberSection(sectionNumber).name));
            id.resize(std::min(id.size(), kLongestUniqueId));
        }
        return identity.Select(id.c_str());
    });
}

std::uint32_t LoadConversionThreads(const CIniFile* ini, std::int32_t sectionNumber) {
    constexpr auto kMost = static_cast<std::int32_t>(ConversionHelpers::kMostThreads);
    const std::int32_t count =
        ini ? ini->GetInt32(GrabberSection(sectionNumber).name, kConversionThreadsKey, 1) : 1;
    return static_cast<std::uint32_t>(std::clamp(count, 1, kMost));
}

bool SaveChosenCamera(CIniFile* ini, std::int32_t sectionNumber, const char* id) {
    return NoThrow(false, [&] {
        const std::string text = id ? id : "";
        return !ini || ini->WriteText(GrabberSection(sectionNumber).name, kUniqueIdKey,
                                      NeedsQuotes(text) ? Quoted(text).c_str() : text.c_str());
    });
}

} // namespace pyxen
