// recording_routes.cpp - making recordings, and taking them away
#include "apps/common/json_text.h"
#include "apps/serve/json_body.h"
#include "apps/serve/recordings.h"
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

namespace {

constexpr std::array<std::string_view, 5> kRecordingFormats = {"png", "tiff", "pnm", "raw",
                                                               "stack"};
constexpr std::uint64_t kMostRecordedFrames = 100000000;

std::string FormatMember(const nlohmann::json& body) {
    const std::string format = TextMember(body, "format");
    if (std::find(kRecordingFormats.begin(), kRecordingFormats.end(), format) ==
        kRecordingFormats.end()) {
        throw RequestFailure(kBadRequest,
                             "format takes png, tiff, pnm, raw or stack, not " + format);
    }
    return format;
}

HttpAnswer StartRecordingAnswer(ServeParts& parts, const RouteCall& call) {
    const nlohmann::json body = ParseJsonBody(call.request.body, {"frames", "format", "name"});
    RecordingWish wish;
    wish.frames = NumberMember(body, "frames", 0, kMostRecordedFrames);
    wish.format = FormatMember(body);
    wish.name = TextMember(body, "name");
    wish.directory = NewRecordingPath(parts.recordings, wish.name);
    parts.owner.Do([&](CameraSession& session) { session.StartRecording(wish); });
    return JsonAnswer(StateJson(parts.board.Read().state));
}

HttpAnswer ListRecordingsAnswer(const ServeParts& parts) {
    std::vector<JsonValue> list;
    for (const StoredRecording& recording : ListRecordings(parts.recordings)) {
        std::vector<JsonValue> files;
        files.reserve(recording.files.size());
        for (const StoredFile& file : recording.files) {
            files.push_back(JsonObject({{"name", file.name}, {"bytes", file.bytes}}));
        }
        list.push_back(JsonObject({{"name", recording.name}, {"files", JsonArray(files)}}));
    }
    return JsonAnswer(JsonReport({{"recordings", JsonArray(list)}}).Text());
}

HttpAnswer DownloadAnswer(const ServeParts& parts, const RouteCall& call) {
    const std::string& name = call.path.at("file");
    auto stream = OpenRecordedFile(parts.recordings, call.path.at("name"), name);
    HttpAnswer answer;
    answer.type = "application/octet-stream";
    answer.headers.emplace_back("Content-Disposition", "attachment; filename=\"" + name + "\"");
    answer.streamBytes = stream->Bytes();
    if (answer.streamBytes != 0) {
        answer.stream = std::move(stream);
    }
    return answer;
}

} // namespace

void AddRecordingRoutes(RouteTable& table, ServeParts& parts) {
    table.Add({.method = "POST",
               .path = "/api/recording/start",
               .body = RouteBody::kJson,
               .run = [&parts](const RouteCall& call) {
                   return StartRecordingAnswer(parts, call);
               }});
    table.Add({.method = "POST",
               .path = "/api/recording/stop",
               .body = RouteBody::kJson,
               .run = [&parts](const RouteCall& call) {
                   ParseJsonBody(call.request.body, {});
                   parts.owner.Do([](CameraSession& session) { session.StopRecording(); });
                   return JsonAnswer(StateJson(parts.board.Read().state));
               }});
    table.Add({.path = "/api/recordings", .run = [&parts](const RouteCall&) {
                   return ListRecordingsAnswer(parts);
               }});
    table.Add({.path = "/api/recordings/{name}/{file}", .run = [&parts](const RouteCall& call) {
                   return DownloadAnswer(parts, call);
               }});
}
