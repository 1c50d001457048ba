// route_table.cpp - which requests there are
#include "apps/serve/route_table.h"

#include "apps/common/command_failure.h"
#include "apps/serve/request_failure.h"

#include <string_view>

namespace {

std::string_view TakeSegment(std::string_view& path) {
    path.remove_prefix(1); // the slash
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view segment = path.substr(0, end);
    path.remove_prefix(end);
    return segment;
}

bool IsOfType(const std::string& contentType, std::string_view wanted) {
    const std::string_view type = contentType;
    const std::string_view name = type.substr(0, type.find(';'));
    return name.substr(0, name.find_last_not_of(' ') + 1) == wanted;
}

/// The reason is what a service or the log said, if anything; else the failure itself.
std::string ReasonOf(const CommandFailure& failure) {
    std::string reason = failure.Message();
    for (const std::string& detail : failure.Details()) {
        reason += "; " + detail;
    }
    return reason;
}

} // namespace

bool MatchRoute(const std::string& form, const std::string& path,
                std::map<std::string, std::string>& words) {
    words.clear();
    std::string_view formRest = form;
    std::string_view pathRest = path;
    while (!formRest.empty() && !pathRest.empty()) {
        const std::string_view wanted = TakeSegment(formRest);
        const std::string_view segment = TakeSegment(pathRest);
        if (wanted.starts_with('{')) {
            if (segment.empty()) {
                return false;
            }
            words.emplace(wanted.substr(1, wanted.size() - 2), segment);
        } else if (wanted != segment) {
            return false;
        }
    }
    return formRest.empty() && pathRest.empty();
}

const Route* RouteTable::Find(const HttpHead& head,
                              std::map<std::string, std::string>& words) const {
    const std::string_view method = head.method == "HEAD" ? "GET" : std::string_view(head.method);
    for (const Route& route : routes) {
        if (method == route.method && MatchRoute(route.path, head.path, words)) {
            return &route;
        }
    }
    return nullptr;
}

std::optional<HttpAnswer> RouteTable::Refuse(const HttpHead& head) const {
    std::map<std::string, std::string> words;
    if (const Route* const route = Find(head, words)) {
        if (route->body == RouteBody::kJson && !IsOfType(head.contentType, "application/json")) {
            return ErrorAnswer(kUnsupportedMedia, head.path + " takes a body of application/json");
        }
        if (route->body == RouteBody::kText && !IsOfType(head.contentType, "text/plain")) {
            return ErrorAnswer(kUnsupportedMedia, head.path + " takes a body of text/plain");
        }
        return std::nullopt;
    }
    std::string allowed;
    for (const Route& route : routes) {
        if (MatchRoute(route.path, head.path, words)) {
            allowed += (allowed.empty() ? "" : ", ") + std::string(route.method);
        }
    }
    if (allowed.empty()) {
        return ErrorAnswer(kNotFound, "there is no " + head.path);
    }
    HttpAnswer answer = ErrorAnswer(405, head.path + " takes " + allowed + ", not " + head.method);
    answer.headers.emplace_back("Allow", allowed);
    return answer;
}

HttpAnswer RouteTable::Run(const HttpRequest& request) const {
    RouteCall call{request, {}, {}};
    const Route* const route = Find(request.head, call.path);
    try {
        call.query = Query(request.head.query, route->query);
        return route->run(call);
    } catch (const RequestFailure& failure) {
        return ErrorAnswer(failure.Status(), failure.what());
    } catch (const CommandFailure& failure) {
        return ErrorAnswer(kConflict, ReasonOf(failure));
    }
}
