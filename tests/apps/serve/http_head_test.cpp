// http_head_test.cpp - heads of requests that are taken and refused
#include "apps/serve/http_head.h"

#include <gtest/gtest.h>

namespace {

HttpHead TakenHead(const std::string& text) {
    HttpHead head;
    const auto refusal = ReadHttpHead(text, head);
    EXPECT_FALSE(refusal) << refusal->reason;
    return head;
}

int RefusedHead(const std::string& text) {
    HttpHead head;
    const auto refusal = ReadHttpHead(text, head);
    return refusal ? refusal->status : 0;
}

std::string GetHead(const std::string& headers) {
    return "GET / HTTP/1.1\r\nHost: a\r\n" + headers + "\r\n";
}

TEST(HttpHead, IsReadWithWhatCounts) {
    const HttpHead head = TakenHead("PUT /api/x%20y?a=1&b=%41 HTTP/1.1\r\n"
                                    "HOST: 127.0.0.1:80\r\n"
                                    "Origin:http://a\r\n"
                                    "Sec-Fetch-Site: same-origin \r\n"
                                    "Authorization: Bearer t\r\n"
                                    "Cookie: c=d\r\n"
                                    "Content-Type: application/json\r\n"
                                    "Content-Length: 12\r\n"
                                    "X-Other: \xC3\xA4\r\n\r\n");
    EXPECT_EQ(head.method, "PUT");
    EXPECT_EQ(head.path, "/api/x y");
    EXPECT_EQ(head.query, "a=1&b=%41");
    EXPECT_EQ(head.host, "127.0.0.1:80");
    EXPECT_EQ(head.origin, "http://a");
    EXPECT_EQ(head.fetchSite, "same-origin");
    EXPECT_EQ(head.authorization, "Bearer t");
    EXPECT_EQ(head.cookie, "c=d");
    EXPECT_EQ(head.contentType, "application/json");
    EXPECT_EQ(head.contentLength, 12u);
    EXPECT_FALSE(head.isLast);
}

TEST(HttpHead, SaysWhetherTheConnectionEnds) {
    EXPECT_FALSE(TakenHead(GetHead("Connection: keep-alive\r\n")).isLast);
    EXPECT_TRUE(TakenHead(GetHead("Connection: Close\r\n")).isLast);
    EXPECT_TRUE(TakenHead("GET / HTTP/1.0\r\nHost: a\r\n\r\n").isLast);
    EXPECT_FALSE(TakenHead("GET / HTTP/1.0\r\nHost: a\r\nConnection: Keep-Alive\r\n\r\n").isLast);
}

TEST(HttpHead, ThatIsNoneIsRefused) {
    EXPECT_EQ(RefusedHead(""), 400);
    EXPECT_EQ(RefusedHead("GET /\r\n\r\n"), 400);
    EXPECT_EQ(RefusedHead("GET  / HTTP/1.1\r\nHost: a\r\n\r\n"), 400);
    EXPECT_EQ(RefusedHead("GET / HTTP/1.1\r\nHost: a\r\n"), 400) << "it has no end";
    EXPECT_EQ(RefusedHead("GET / HTTP/1.1\nHost: a\n\n"), 400);
    EXPECT_EQ(RefusedHead("GET / HTTP/2.0\r\nHost: a\r\n\r\n"), 505);
    EXPECT_EQ(RefusedHead("DELETE / HTTP/1.1\r\nHost: a\r\n\r\n"), 405);
    EXPECT_EQ(RefusedHead("get / HTTP/1.1\r\nHost: a\r\n\r\n"), 405);
    EXPECT_EQ(RefusedHead("GET / HTTP/1.1\r\n\r\n"), 400) << "it has no Host";
    EXPECT_EQ(RefusedHead(GetHead("")), 0);
}

TEST(HttpHead, HasATargetOfThisServer) {
    const auto target = [](const std::string& text) {
        return RefusedHead("GET " + text + " HTTP/1.1\r\nHost: a\r\n\r\n");
    };
    EXPECT_EQ(target("/a/b"), 0);
    EXPECT_EQ(target("http://other/"), 400);
    EXPECT_EQ(target("*"), 400);
    EXPECT_EQ(target("/a#b"), 400);
    EXPECT_EQ(target("/\xC3\xA4"), 400);
    EXPECT_EQ(target("/%"), 400);
    EXPECT_EQ(target("/%4"), 400);
    EXPECT_EQ(target("/%4g"), 400);
    EXPECT_EQ(target("/%00"), 400);
    EXPECT_EQ(target("/%0d%0aSet-Cookie:x"), 400);
    EXPECT_EQ(target("/" + std::string(kLongestTarget - 1, 'a')), 0);
    EXPECT_EQ(target("/" + std::string(kLongestTarget, 'a')), 414);
}

TEST(HttpHead, HasHeadersThatTwoReadersUnderstandAlike) {
    const auto headers = [](const std::string& text) {
        return RefusedHead(GetHead(text));
    };
    EXPECT_EQ(headers("no colon\r\n"), 400);
    EXPECT_EQ(headers(": x\r\n"), 400);
    EXPECT_EQ(headers("Name : x\r\n"), 400);
    EXPECT_EQ(headers("A: b\r\n folded\r\n"), 400);
    EXPECT_EQ(headers("A: b\rc\r\n"), 400);
    EXPECT_EQ(headers("Host: b\r\n"), 400) << "it is there twice";
    EXPECT_EQ(headers("Origin: a\r\nOrigin: b\r\n"), 400);
    EXPECT_EQ(headers(std::string("A: b\0c\r\n", 9)), 400);
}

TEST(HttpHead, IsNotTooLong) {
    std::string many;
    for (int i = 0; i < 63; ++i) {
        many += "A: b\r\n";
    }
    EXPECT_EQ(RefusedHead(GetHead(many)), 0);
    EXPECT_EQ(RefusedHead(GetHead(many + "A: b\r\n")), 431);
    EXPECT_EQ(RefusedHead(GetHead("A: " + std::string(kLongestHead, 'x') + "\r\n")), 431);
}

TEST(HttpHead, SaysTheLengthOfABodyOnce) {
    const auto post = [](const std::string& headers) {
        return RefusedHead("POST / HTTP/1.1\r\nHost: a\r\n" + headers + "\r\n");
    };
    EXPECT_EQ(post("Content-Length: 0\r\n"), 0);
    EXPECT_EQ(post("Content-Length: 1048576\r\n"), 0);
    EXPECT_EQ(post("Content-Length: 1048577\r\n"), 413);
    EXPECT_EQ(post("Content-Length: 99999999999999999999999\r\n"), 413);
    EXPECT_EQ(post(""), 411);
    EXPECT_EQ(post("Content-Length: -1\r\n"), 400);
    EXPECT_EQ(post("Content-Length: 1,1\r\n"), 400);
    EXPECT_EQ(post("Content-Length: 1\r\nContent-Length: 1\r\n"), 400);
    EXPECT_EQ(post("Transfer-Encoding: chunked\r\n"), 411);
    EXPECT_EQ(post("Content-Length: 1\r\nTransfer-Encoding: chunked\r\n"), 411);
    EXPECT_EQ(post("Content-Length: 1\r\nContent-Encoding: gzip\r\n"), 415);
    EXPECT_EQ(post("Content-Length: 1\r\nContent-Encoding: identity\r\n"), 0);
    EXPECT_EQ(RefusedHead(GetHead("Content-Length: 1\r\n")), 400) << "GET has no body";
}

TEST(DecodePercent, TakesPlusAsABlankInQueriesOnly) {
    EXPECT_EQ(DecodePercent("a+b%2B%7e", true), "a b+~");
    EXPECT_EQ(DecodePercent("a+b", false), "a+b");
    EXPECT_FALSE(DecodePercent("%7f", true));
    EXPECT_FALSE(DecodePercent("a%", true));
}

} // namespace
