// page_routes.cpp - the page and the description of the interface
#include "apps/serve/page_files.h"
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"

namespace {

HttpAnswer PageAnswer(const std::string& name) {
    const PageFile* const file = FindPageFile(name);
    if (!file) {
        throw RequestFailure(kNotFound, "the page has no file " + name);
    }
    HttpAnswer answer;
    answer.type = PageFileType(name);
    answer.body = file->content;
    return answer;
}

} // namespace

void AddPageRoutes(RouteTable& table) {
    table.Add({.path = "/", .query = {"token"}, .run = [](const RouteCall&) {
                   return PageAnswer("index.html");
               }});
    table.Add({.path = "/page/{file}", .run = [](const RouteCall& call) {
                   return PageAnswer(call.path.at("file"));
               }});
    table.Add({.path = "/openapi.json", .run = [](const RouteCall&) {
                   return JsonAnswer(std::string(OpenApiText()));
               }});
}
