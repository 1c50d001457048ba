// query_test.cpp - parameters of requests
#include "apps/serve/query.h"

#include "apps/serve/request_failure.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

std::string QueryProblem(const std::function<void()>& read) {
    try {
        read();
    } catch (const RequestFailure& failure) {
        EXPECT_EQ(failure.Status(), kBadRequest);
        return failure.what();
    }
    return {};
}

TEST(Query, HasTheParametersThatAreTaken) {
    const Query query("x=12&name=a+b%26&empty=", {"x", "name", "empty", "more"});
    EXPECT_EQ(query.Number("x", 0, 100), 12u);
    EXPECT_EQ(query.Text("name"), "a b&");
    EXPECT_EQ(query.Text("empty"), "");
    EXPECT_FALSE(query.Has("more"));
    EXPECT_EQ(query.Number("more", 0, 9, 7), 7u);
    EXPECT_EQ(Query("", {}).Has("x"), false);
}

TEST(Query, RefusesWhatIsNotTaken) {
    EXPECT_EQ(QueryProblem([] { Query("y=1", {"x"}); }),
              "the query has a parameter \"y\", which is not taken here");
    EXPECT_EQ(QueryProblem([] { Query("x=1&x=2", {"x"}); }), "the query has \"x\" twice");
    EXPECT_EQ(QueryProblem([] { Query("x=%zz", {"x"}); }),
              "the query has an escape that cannot be decoded");
    EXPECT_EQ(QueryProblem([] { Query("&", {"x"}); }),
              "the query has a parameter \"\", which is not taken here");
}

TEST(Query, SaysWhichNumbersAreTaken) {
    const Query query("n=7&text=abc&minus=-1&big=4294967296&real=0.5&none=nan",
                      {"n", "text", "minus", "big", "real", "none"});
    EXPECT_EQ(QueryProblem([&] { query.Number("n", 1, 6); }),
              "n takes a whole number from 1 to 6, not 7");
    EXPECT_NE(QueryProblem([&] { query.Number("text", 1, 6); }), "");
    EXPECT_NE(QueryProblem([&] { query.Number("minus", 0, 6); }), "");
    EXPECT_NE(QueryProblem([&] { query.Number("big", 0, 0xFFFFFFFF); }), "");
    EXPECT_EQ(QueryProblem([&] { query.Number("missing", 0, 6); }), "the query lacks \"missing\"");
    EXPECT_DOUBLE_EQ(query.Real("real", 0, 1, 9), 0.5);
    EXPECT_DOUBLE_EQ(query.Real("missing", 0, 1, 9), 9);
    EXPECT_EQ(QueryProblem([&] { query.Real("n", 0.1, 6, 1); }),
              "n takes a number from 0.1 to 6, not 7");
    EXPECT_NE(QueryProblem([&] { query.Real("none", 0, 6, 1); }), "");
}

} // namespace
