// serve_app.cpp - a camera for browsers and scripts
#include "apps/serve/serve_app.h"

#include "apps/common/json_text.h"
#include "apps/serve/feature_json.h"
#include "mivora/log_sink.h"

#include <exception>

namespace {

/// In the lines that the module logs of each frame.
constexpr const char* kFrameLine = "::FrameCallback: ";

} // namespace

ServeApp::ServeApp(const AppOptions& options, IGrabberMaker& maker,
                   const ServeSettings& serveSettings)
    : settings(serveSettings),
      session(options, maker, settings.set, {board, frames, *this}),
      owner(session),
      parts{owner, board, frames, settings.recordings,
            [this] {
                return server.Counts();
            }},
      server(*this, settings.limits) {
    AddPageRoutes(routes);
    AddCameraRoutes(routes, parts);
    AddStreamRoutes(routes, parts);
    AddImageRoutes(routes, parts);
    AddFeatureRoutes(routes, parts);
    AddSettingsRoutes(routes, parts);
    AddSimulatorRoutes(routes, parts);
    AddRecordingRoutes(routes, parts);
    AddEventRoutes(routes, parts);
    AddMetricsRoutes(routes, parts);
    session.Base().Log().Watch(this);
    server.Listen(settings.address, settings.port);
    gate.emplace(GateSettings{settings.address, server.Port(), settings.token});
    if (!settings.camera.empty()) {
        session.Open(settings.camera);
        session.Start();
    }
    server.Start();
}

ServeApp::~ServeApp() {
    owner.End();
    server.Stop();
    session.Base().Log().Watch(nullptr);
}

void ServeApp::Run() {
    owner.Run();
    server.Stop();
}

std::optional<HttpAnswer> ServeApp::Refuse(const HttpHead& head) {
    auto refused = gate->Refuse(head);
    return refused ? std::move(refused) : routes.Refuse(head);
}

HttpAnswer ServeApp::Handle(const HttpRequest& request) {
    return routes.Run(request);
}

std::vector<std::pair<std::string, std::string>> ServeApp::CommonHeaders() const {
    return SecurityHeaders();
}

void ServeApp::OnFeatureChanged(const FeatureDescription& feature,
                                const std::optional<ServiceValue>& value) {
    parts.events.Publish("feature", FeatureJson(feature, value));
}

void ServeApp::OnLogLine(int level, const std::string& text) {
    session.NoteLogLine(level, text);
    if (level != kMvLogError && text.find(kFrameLine) != std::string::npos) {
        return; // one for each frame would leave nothing else to be read
    }
    parts.events.Publish("log", JsonObject({{"level", level}, {"text", text}}).Text());
}
