// route_table_test.cpp - finding routes, and what becomes of failures
#include "apps/serve/route_table.h"

#include "apps/common/command_failure.h"
#include "apps/serve/request_failure.h"

#include <gtest/gtest.h>

namespace {

HttpHead RouteHead(const std::string& method, const std::string& path,
                   const std::string& contentType = {}) {
    HttpHead head;
    head.method = method;
    head.path = path;
    head.contentType = contentType;
    return head;
}

RouteTable SomeRoutes() {
    RouteTable table;
    table.Add({.path = "/a/{word}/c", .query = {"q"}, .run = [](const RouteCall& call) {
                   return JsonAnswer(call.path.at("word") + call.query.Text("q"));
               }});
    table.Add({.method = "PUT",
               .path = "/a/{word}/c",
               .body = RouteBody::kJson,
               .run = [](const RouteCall&) -> HttpAnswer {
                   throw RequestFailure(kRefusedValue, "too big");
               }});
    table.Add({.method = "POST",
               .path = "/text",
               .body = RouteBody::kText,
               .run = [](const RouteCall&) -> HttpAnswer {
                   throw CommandFailure("it failed", {"because"});
               }});
    return table;
}

int RefusedStatus(const RouteTable& table, const HttpHead& head) {
    const auto answer = table.Refuse(head);
    return answer ? answer->status : 0;
}

TEST(RouteTable, MatchesPathsByTheirSegments) {
    std::map<std::string, std::string> words;
    EXPECT_TRUE(MatchRoute("/", "/", words));
    EXPECT_TRUE(MatchRoute("/a/{x}/{y}", "/a/b/c", words));
    EXPECT_EQ(words, (std::map<std::string, std::string>{{"x", "b"}, {"y", "c"}}));
    EXPECT_FALSE(MatchRoute("/a/{x}", "/a", words));
    EXPECT_FALSE(MatchRoute("/a/{x}", "/a/", words));
    EXPECT_FALSE(MatchRoute("/a/{x}", "/a/b/c", words));
    EXPECT_FALSE(MatchRoute("/a", "/a/", words));
    EXPECT_FALSE(MatchRoute("/a", "//a", words));
    EXPECT_FALSE(MatchRoute("/a", "/A", words));
    EXPECT_TRUE(MatchRoute("/a/{x}", "/a/..", words)) << "what a word may be is for the route";
}

TEST(RouteTable, RefusesWhatHasNoRoute) {
    const RouteTable table = SomeRoutes();
    EXPECT_EQ(RefusedStatus(table, RouteHead("GET", "/a/b/c")), 0);
    EXPECT_EQ(RefusedStatus(table, RouteHead("HEAD", "/a/b/c")), 0);
    EXPECT_EQ(RefusedStatus(table, RouteHead("GET", "/nothing")), 404);
    EXPECT_EQ(RefusedStatus(table, RouteHead("GET", "/text")), 405);
    const auto answer = table.Refuse(RouteHead("POST", "/a/b/c"));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->headers.at(0).second, "GET, PUT");
}

TEST(RouteTable, RefusesBodiesOfAnotherType) {
    const RouteTable table = SomeRoutes();
    EXPECT_EQ(RefusedStatus(table, RouteHead("PUT", "/a/b/c", "application/json")), 0);
    EXPECT_EQ(RefusedStatus(table, RouteHead("PUT", "/a/b/c", "application/json; charset=utf-8")),
              0);
    EXPECT_EQ(RefusedStatus(table, RouteHead("PUT", "/a/b/c")), 415);
    EXPECT_EQ(RefusedStatus(table, RouteHead("PUT", "/a/b/c", "text/plain")), 415)
        << "which the page of another server could send";
    EXPECT_EQ(RefusedStatus(table, RouteHead("POST", "/text", "text/plain;charset=UTF-8")), 0);
    EXPECT_EQ(RefusedStatus(table, RouteHead("POST", "/text", "application/json")), 415);
}

TEST(RouteTable, MakesAnswersOfFailures) {
    const RouteTable table = SomeRoutes();
    HttpRequest request{RouteHead("GET", "/a/b/c"), ""};
    request.head.query = "q=1";
    EXPECT_EQ(table.Run(request).body, "b1\n");
    request.head.query = "other=1";
    EXPECT_EQ(table.Run(request).status, 400);
    const HttpAnswer refused = table.Run({RouteHead("PUT", "/a/b/c"), "{}"});
    EXPECT_EQ(refused.status, 422);
    EXPECT_EQ(refused.body, "{\"schema\":1,\"error\":\"too big\"}\n");
    const HttpAnswer failed = table.Run({RouteHead("POST", "/text"), ""});
    EXPECT_EQ(failed.status, 409);
    EXPECT_EQ(failed.body, "{\"schema\":1,\"error\":\"it failed; because\"}\n");
}

} // namespace
