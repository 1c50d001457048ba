// gate_test.cpp - who may ask for what
#include "apps/serve/gate.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t kLoopbackAddress = 0x7F000001;
constexpr std::uint16_t kGatePort = 8080;
const std::string kGateToken = "0123456789abcdef";

HttpHead HeadFrom(const std::string& host, const std::string& path = "/api/state") {
    HttpHead head;
    head.method = "GET";
    head.path = path;
    head.host = host;
    return head;
}

int StatusAt(const Gate& gate, const HttpHead& head) {
    const auto answer = gate.Refuse(head);
    return answer ? answer->status : 0;
}

TEST(Gate, OpensForItsOwnAddress) {
    const Gate gate({kLoopbackAddress, kGatePort, ""});
    EXPECT_EQ(gate.Url(), "http://127.0.0.1:8080/");
    EXPECT_EQ(StatusAt(gate, HeadFrom("127.0.0.1:8080")), 0);
    EXPECT_EQ(StatusAt(gate, HeadFrom("localhost:8080")), 0);
    EXPECT_EQ(StatusAt(gate, HeadFrom("127.0.0.1")), 403);
    EXPECT_EQ(StatusAt(gate, HeadFrom("127.0.0.1:8081")), 403);
    EXPECT_EQ(StatusAt(gate, HeadFrom("192.0.2.1:8080")), 403);
    EXPECT_EQ(StatusAt(gate, HeadFrom("evil.example:8080")), 403) << "a name of somebody else";
    EXPECT_EQ(StatusAt(gate, HeadFrom("localhost.evil.example:8080")), 403);
    EXPECT_EQ(StatusAt(Gate({kLoopbackAddress, 80, ""}), HeadFrom("localhost")), 0);
}

TEST(Gate, OpensForNumbersWhenItListensEverywhere) {
    const Gate gate({0, kGatePort, kGateToken});
    HttpHead head = HeadFrom("192.0.2.1:8080");
    head.authorization = "Bearer " + kGateToken;
    EXPECT_EQ(StatusAt(gate, head), 0);
    head.host = "localhost:8080";
    EXPECT_EQ(StatusAt(gate, head), 0);
    head.host = "evil.example:8080";
    EXPECT_EQ(StatusAt(gate, head), 403);
}

TEST(Gate, IsClosedForPagesOfOthers) {
    const Gate gate({kLoopbackAddress, kGatePort, ""});
    HttpHead head = HeadFrom("localhost:8080");
    head.origin = "http://localhost:8080";
    EXPECT_EQ(StatusAt(gate, head), 0);
    for (const char* const origin :
         {"http://evil.example", "null", "https://localhost:8080", "http://127.0.0.1:8080"}) {
        head.origin = origin;
        EXPECT_EQ(StatusAt(gate, head), 403) << origin;
    }
    head.origin.clear();
    head.fetchSite = "cross-site"; // an image of another site's page has no origin
    EXPECT_EQ(StatusAt(gate, head), 403);
    head.fetchSite = "same-site";
    EXPECT_EQ(StatusAt(gate, head), 403);
    head.path = "/";
    EXPECT_EQ(StatusAt(gate, head), 0) << "a link to the page";
    head.method = "POST";
    EXPECT_EQ(StatusAt(gate, head), 403);
}

TEST(Gate, AsksForItsToken) {
    const Gate gate({kLoopbackAddress, kGatePort, kGateToken});
    EXPECT_EQ(gate.Url(), "http://127.0.0.1:8080/?token=" + kGateToken);
    HttpHead head = HeadFrom("127.0.0.1:8080");
    EXPECT_EQ(StatusAt(gate, head), 401);
    for (const std::string& wrong : {std::string("Bearer "), "Bearer " + kGateToken + "0",
                                     std::string("Bearer 0123456789abcdee"), kGateToken}) {
        head.authorization = wrong;
        EXPECT_EQ(StatusAt(gate, head), 401) << wrong;
    }
    head.authorization = "Bearer " + kGateToken;
    EXPECT_EQ(StatusAt(gate, head), 0);
    head.authorization.clear();
    head.cookie = "other=1; mivora-8080=" + kGateToken;
    EXPECT_EQ(StatusAt(gate, head), 0);
    head.cookie = "mivora-8081=" + kGateToken;
    EXPECT_EQ(StatusAt(gate, head), 401);
    head.cookie = "xmivora-8080=" + kGateToken;
    EXPECT_EQ(StatusAt(gate, head), 401);
}

TEST(Gate, ExchangesTheTokenOfThePageForACookie) {
    const Gate gate({kLoopbackAddress, kGatePort, kGateToken});
    HttpHead head = HeadFrom("127.0.0.1:8080", "/");
    head.query = "token=wrong";
    EXPECT_EQ(StatusAt(gate, head), 401);
    head.query = "token=" + kGateToken;
    const auto answer = gate.Refuse(head);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 303);
    std::string cookie;
    for (const auto& [name, value] : answer->headers) {
        cookie = name == "Set-Cookie" ? value : cookie;
    }
    EXPECT_EQ(cookie, "mivora-8080=" + kGateToken + "; Path=/; HttpOnly; SameSite=Strict");
    head.path = "/api/state";
    EXPECT_EQ(StatusAt(gate, head), 401) << "in the address of the page only";
}

TEST(Gate, MakesTokensThatDiffer) {
    const std::string token = NewToken();
    EXPECT_EQ(token.size(), 32u);
    EXPECT_EQ(token.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_NE(token, NewToken());
}

TEST(Gate, ComparesSecretsAsAWhole) {
    EXPECT_TRUE(IsSameSecret("abc", "abc"));
    EXPECT_FALSE(IsSameSecret("abc", "abd"));
    EXPECT_FALSE(IsSameSecret("abc", "ab"));
    EXPECT_FALSE(IsSameSecret("abab", "ab"));
    EXPECT_FALSE(IsSameSecret("", "ab"));
    EXPECT_FALSE(IsSameSecret("ab", ""));
}

} // namespace
