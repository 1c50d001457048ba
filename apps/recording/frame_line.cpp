// frame_line.cpp - the lines of a recording's index
#include "apps/recording/frame_line.h"

#include "apps/common/command_failure.h"
#include "apps/common/json_text.h"
#include "apps/common/layout_members.h"
#include "apps/recording/recording_json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>

namespace {

using Json = nlohmann::json;

constexpr std::array<const char*, 5> kStatusNames = {"complete", "incomplete", "dropped", "lost",
                                                     "damaged"};

void AppendNumber(std::string& text, std::uint64_t number) {
    std::array<char, 20> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text.append(digits.data(), end);
}

void AppendMember(std::string& text, const char* name, std::uint64_t number) {
    text += ",\"";
    text += name;
    text += "\":";
    AppendNumber(text, number);
}

void AppendMember(std::string& text, const char* name, const std::optional<std::uint64_t>& number) {
    if (number) {
        AppendMember(text, name, *number);
    } else {
        text += ",\"";
        text += name;
        text += "\":null";
    }
}

FrameStatus StatusOf(const Json& line) {
    const std::string name = Needed(TextOf(line, "status"), "status");
    const auto found = std::find(kStatusNames.begin(), kStatusNames.end(), name);
    if (found == kStatusNames.end()) {
        throw CommandFailure("\"status\" is none");
    }
    return static_cast<FrameStatus>(found - kStatusNames.begin());
}

// A recording names nothing outside its directory.
std::string FileOf(const Json& line) {
    std::string name = TextOf(line, "file").value_or("");
    if (name.find_first_of("/\\:") != std::string::npos || name.starts_with("..")) {
        throw CommandFailure("\"file\" is no name of a file in the recording's directory");
    }
    return name;
}

} // namespace

const char* FrameStatusName(FrameStatus status) {
    return kStatusNames[static_cast<std::size_t>(status)];
}

void FrameLine::AppendJson(std::string& text, const ImageLayout& common) const {
    text += "{\"n\":";
    AppendNumber(text, n);
    AppendMember(text, "frameId", stamp.frameId);
    AppendMember(text, "timestampNs", stamp.timestampNs);
    AppendMember(text, "hostNs", stamp.hostNs);
    text += ",\"status\":\"";
    text += FrameStatusName(status);
    text += "\",\"file\":";
    if (file.empty()) {
        text += "null";
    } else {
        // Names of frames have nothing to escape.
        text += '"';
        text += file;
        text += '"';
    }
    AppendMember(text, "offset", offset);
    AppendMember(text, "bytes", bytes);
    if (!file.empty() && layout != common) {
        const auto members = LayoutMembers(layout);
        const auto commonMembers = LayoutMembers(common);
        for (std::size_t i = 0; i < members.size(); ++i) {
            if (members[i].value != commonMembers[i].value) {
                AppendMember(text, members[i].name, members[i].value);
            }
        }
    }
    if (!note.empty()) {
        text += ",\"note\":" + JsonText(note);
    }
    text += '}';
}

FrameLine ParseFrameLine(const std::string& text, const ImageLayout& common) {
    const Json object = Json::parse(text, nullptr, false);
    if (!object.is_object()) {
        throw CommandFailure("no JSON object");
    }
    FrameLine line;
    line.n = Needed(NumberOf(object, "n"), "n");
    line.stamp.frameId = NumberOf(object, "frameId");
    line.stamp.timestampNs = NumberOf(object, "timestampNs");
    line.stamp.hostNs = NumberOf(object, "hostNs");
    line.status = StatusOf(object);
    line.file = FileOf(object);
    line.offset = NumberOf(object, "offset").value_or(0);
    line.bytes = NumberOf(object, "bytes").value_or(0);
    line.note = TextOf(object, "note").value_or("");
    line.layout = common;
    ReadLayout(object, line.layout);
    return line;
}
