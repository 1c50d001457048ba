// route_table.h - which requests there are
#pragma once

#include "apps/serve/http_server.h"
#include "apps/serve/query.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

enum class RouteBody {
    kNone, ///< no body, as of GET
    kJson, ///< an object
    kText
};

/// A request that a route was found for.
struct RouteCall {
    const HttpRequest& request;
    std::map<std::string, std::string> path; ///< what stands for the words in braces
    Query query;
};

struct Route {
    const char* method = "GET"; ///< of GET also HEAD
    std::string path{};         ///< "/api/features/{module}/{name}"
    std::vector<std::string> query{};
    RouteBody body = RouteBody::kNone;
    std::function<HttpAnswer(const RouteCall& call)> run{};
};

/// The routes of a server. Set up by one thread, then used by any.
class RouteTable {
public:
    void Add(Route route) { routes.push_back(std::move(route)); }
    const std::vector<Route>& Routes() const { return routes; }

    /// The answer of the method and path before the body is read, unless there is a route: 404,
    /// 405, or 415 for a body that is not declared as the route takes it.
    std::optional<HttpAnswer> Refuse(const HttpHead& head) const;
    /// Runs the route; RequestFailure and CommandFailure become answers.
    HttpAnswer Run(const HttpRequest& request) const;

private:
    const Route* Find(const HttpHead& head, std::map<std::string, std::string>& words) const;

    std::vector<Route> routes;
};

/// True if a path of a request has this form; fills the words.
bool MatchRoute(const std::string& form, const std::string& path,
                std::map<std::string, std::string>& words);
