// serve_app.h - a camera for browsers and scripts
#pragma once

#include "apps/common/log_file.h"
#include "apps/serve/gate.h"
#include "apps/serve/http_server.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class IGrabberMaker;
struct AppOptions;

struct ServeSettings {
    std::uint32_t address = 0x7F000001;
    std::uint16_t port = 0; ///< 0: a free one
    std::string token;      ///< empty: none
    std::string recordings; ///< the directory of recordings
    std::string camera;     ///< that is opened and started; empty: none
    std::vector<std::string> set;
    HttpLimits limits;
};

/// Serves the page and the interface. Made, run and destroyed on one thread, the camera's.
class ServeApp final : private IHttpHandler, private ICameraListener, private ILogObserver {
public:
    /// Initialises the grabber and listens. Throws CommandFailure.
    ServeApp(const AppOptions& options, IGrabberMaker& maker, const ServeSettings& settings);
    ~ServeApp();
    ServeApp(const ServeApp&) = delete;
    ServeApp& operator=(const ServeApp&) = delete;

    /// What a browser opens; with the token if there is one.
    std::string Url() const { return gate->Url(); }
    /// Returns after End or when the user interrupts the program.
    void Run();
    /// Any thread.
    void End() { owner.End(); }
    const RouteTable& Routes() const { return routes; }

private:
    std::optional<HttpAnswer> Refuse(const HttpHead& head) override;
    HttpAnswer Handle(const HttpRequest& request) override;
    std::vector<std::pair<std::string, std::string>> CommonHeaders() const override;
    void OnFeatureChanged(const FeatureDescription& feature,
                          const std::optional<ServiceValue>& value) override;
    void OnLogLine(int level, const std::string& text) override;

    const ServeSettings settings;
    StateBoard board;
    FrameHolder frames;
    CameraSession session;
    CameraOwner owner;
    ServeParts parts;
    RouteTable routes;
    std::optional<Gate> gate;
    HttpServer server; // last: it uses all other members
};
