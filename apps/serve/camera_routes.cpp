// camera_routes.cpp - the cameras, and opening, closing, starting and stopping one
#include "apps/serve/json_body.h"
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"

#include <nlohmann/json.hpp>

namespace {

/// What every order to the camera returns.
HttpAnswer StateAnswer(const ServeParts& parts) {
    return JsonAnswer(StateJson(parts.board.Read().state));
}

void OpenNamed(ServeParts& parts, const std::string& wanted) {
    parts.owner.Do([&](CameraSession& session) {
        try {
            session.Open(wanted);
        } catch (const CameraMissing& missing) {
            throw RequestFailure(kNotFound, missing.Message());
        }
    });
}

void AddOrder(RouteTable& table, ServeParts& parts, const char* path,
              void (CameraSession::*order)()) {
    table.Add({.method = "POST",
               .path = path,
               .body = RouteBody::kJson,
               .run = [&parts, order](const RouteCall& call) {
                   ParseJsonBody(call.request.body, {});
                   parts.owner.Do([order](CameraSession& session) { (session.*order)(); });
                   return StateAnswer(parts);
               }});
}

} // namespace

void AddCameraRoutes(RouteTable& table, ServeParts& parts) {
    table.Add({.path = "/api/cameras", .run = [&parts](const RouteCall&) {
                   parts.owner.WantList();
                   return JsonAnswer(CamerasJson(parts.board.Read().state));
               }});
    table.Add({.path = "/api/state", .run = [&parts](const RouteCall&) {
                   return StateAnswer(parts);
               }});
    table.Add({.method = "POST",
               .path = "/api/camera/open",
               .body = RouteBody::kJson,
               .run = [&parts](const RouteCall& call) {
                   const nlohmann::json body = ParseJsonBody(call.request.body, {"camera"});
                   OpenNamed(parts, TextMember(body, "camera"));
                   return StateAnswer(parts);
               }});
    AddOrder(table, parts, "/api/camera/close", &CameraSession::Close);
    AddOrder(table, parts, "/api/camera/start", &CameraSession::Start);
    AddOrder(table, parts, "/api/camera/stop", &CameraSession::Stop);
}
