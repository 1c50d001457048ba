// json_body_test.cpp - JSON that requests bring
#include "apps/serve/json_body.h"

#include "apps/serve/request_failure.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace {

std::string BodyProblem(const std::string& text) {
    try {
        ParseJsonBody(text, {"a", "b"});
    } catch (const RequestFailure& failure) {
        EXPECT_EQ(failure.Status(), kBadRequest);
        return failure.what();
    }
    return {};
}

TEST(JsonBody, IsAnObjectOfKnownMembers) {
    EXPECT_EQ(BodyProblem("{}"), "");
    EXPECT_EQ(BodyProblem("{\"a\":[{}],\"b\":\"[[[[\"}"), "");
    EXPECT_EQ(BodyProblem("{\"c\":1}"), "the body has a member \"c\", which is not taken here");
    EXPECT_EQ(BodyProblem("[]"), "the body is no JSON object");
    EXPECT_EQ(BodyProblem(""), "the body is no JSON: byte 1 is wrong");
    EXPECT_EQ(BodyProblem("{\"a\":1,}"), "the body is no JSON: byte 8 is wrong");
    EXPECT_NE(BodyProblem("{\"a\":1} x"), "");
    EXPECT_EQ(BodyProblem("{\"a\":1e999}"), "the body has a number that is too large");
    EXPECT_NE(BodyProblem("{\"a\":\"\xFF\"}"), "") << "the text is no UTF-8";
}

TEST(JsonBody, IsNotNestedTooDeeply) {
    const auto nested = [](std::size_t depth) {
        return "{\"a\":" + std::string(depth, '[') + std::string(depth, ']') + "}";
    };
    EXPECT_EQ(BodyProblem(nested(31)), "");
    EXPECT_EQ(BodyProblem(nested(32)), "the body is nested more than 32 times");
    EXPECT_EQ(BodyProblem(nested(200000)), "the body is nested more than 32 times");
    EXPECT_EQ(BodyProblem("{\"a\":\"\\\"" + std::string(40, '[') + "\"}"), "")
        << "brackets in texts do not count";
}

TEST(JsonBody, HasTextsAndNumbers) {
    const nlohmann::json body = ParseJsonBody("{\"a\":\"x\",\"b\":7}", {"a", "b"});
    EXPECT_EQ(TextMember(body, "a"), "x");
    EXPECT_EQ(NumberMember(body, "b", 0, 7), 7u);
    EXPECT_THROW(NumberMember(body, "b", 0, 6), RequestFailure);
    EXPECT_THROW(NumberMember(body, "a", 0, 6), RequestFailure);
    EXPECT_THROW(TextMember(body, "b"), RequestFailure);
    EXPECT_THROW(TextMember(body, "c"), RequestFailure);
    EXPECT_THROW(NumberMember(nlohmann::json{{"n", -1}}, "n", 0, 6), RequestFailure);
    EXPECT_THROW(NumberMember(nlohmann::json{{"n", 1.5}}, "n", 0, 6), RequestFailure);
}

} // namespace
