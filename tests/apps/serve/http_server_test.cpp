// http_server_test.cpp - connections, among them those that want to do harm
#include "apps/serve/http_server.h"

#include "platform/event.h"
#include "tests/apps/serve/http_client.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr std::uint32_t kServerHost = 0x7F000001;

/// Sends as long as its reader takes.
class EndlessStream final : public IHttpStream {
public:
    explicit EndlessStream(std::atomic<int>& openStreams) : open(openStreams) { ++open; }
    ~EndlessStream() override { --open; }
    bool SendNext(const HttpSink& sink) override { return sink(part.data(), part.size()); }

private:
    std::atomic<int>& open;
    const std::string part = std::string(65536, 'x');
};

/// Sends nothing until the test ends it.
class QuietStream final : public IHttpStream {
public:
    QuietStream(std::atomic<int>& openStreams, platform::Event& endOfStream)
        : open(openStreams), end(endOfStream) {
        ++open;
    }
    ~QuietStream() override { --open; }
    bool SendNext(const HttpSink&) override { return !end.Wait(1); }

private:
    std::atomic<int>& open;
    platform::Event& end;
};

class TestHandler final : public IHttpHandler {
public:
    std::optional<HttpAnswer> Refuse(const HttpHead& head) override {
        return head.path == "/refused" ? std::optional(ErrorAnswer(403, "not you")) : std::nullopt;
    }
    HttpAnswer Handle(const HttpRequest& request) override {
        HttpAnswer answer;
        const std::string& path = request.head.path;
        if (path == "/endless") {
            answer.stream = std::make_unique<EndlessStream>(open);
        } else if (path == "/quiet") {
            answer.stream = std::make_unique<QuietStream>(open, endOfQuiet);
        } else if (path == "/wait") {
            waiting.Set();
            goOn.Wait(platform::kInfinite);
        } else if (path == "/broken") {
            throw std::runtime_error("a fault");
        } else {
            answer.body = path + "|" + request.head.query + "|" + request.body;
        }
        return answer;
    }
    std::vector<std::pair<std::string, std::string>> CommonHeaders() const override {
        return {{"X-Common", "yes"}};
    }

    std::atomic<int> open{0};
    platform::Event waiting;
    platform::Event goOn;
    platform::Event endOfQuiet;
};

class HttpServerTest : public testing::Test {
protected:
    void StartServer(const HttpLimits& limits = {}) {
        server.emplace(handler, limits);
        server->Listen(kServerHost, 0);
        server->Start();
    }
    HttpClient Client() { return HttpClient(server->Port()); }

    TestHandler handler;
    std::optional<HttpServer> server;
};

TEST_F(HttpServerTest, AnswersSeveralRequestsOfOneConnection) {
    StartServer();
    HttpClient client = Client();
    const ClientAnswer first = client.Get("/a?b=1");
    EXPECT_EQ(first.status, 200);
    EXPECT_EQ(first.body, "/a|b=1|");
    EXPECT_EQ(first.headers.at("x-common"), "yes");
    EXPECT_EQ(client.Send("POST", "/post", "{\"c\":2}").body, "/post||{\"c\":2}");
    EXPECT_EQ(client.Ask("HEAD", "/a", "").headers.at("content-length"), "4");
}

TEST_F(HttpServerTest, EndsTheConnectionWhenTheClientWantsThat) {
    StartServer();
    HttpClient client = Client();
    EXPECT_EQ(client.Ask("GET", "/a", "Connection: close\r\n").status, 200);
    EXPECT_TRUE(client.ReadsEnd());
}

TEST_F(HttpServerTest, AnswersWithTheReasonOfWhatIsRefused) {
    StartServer();
    HttpClient client = Client();
    EXPECT_EQ(client.Get("/refused").status, 403);
    EXPECT_EQ(client.Get("/a").status, 200) << "the connection goes on";
    const ClientAnswer broken = client.Get("/broken");
    EXPECT_EQ(broken.status, 500);
    EXPECT_EQ(broken.body, "{\"schema\":1,\"error\":\"a fault\"}\n");
}

TEST_F(HttpServerTest, DoesNotReadTheBodyOfWhatIsRefused) {
    StartServer();
    HttpClient client = Client();
    EXPECT_EQ(client.Send("POST", "/refused", std::string(100000, 'x')).status, 403);
    EXPECT_TRUE(client.ReadsEnd());
}

TEST_F(HttpServerTest, RefusesHeadsAndEndsTheConnection) {
    StartServer();
    for (const auto& [request, status] : std::vector<std::pair<std::string, int>>{
             {"NONSENSE\r\n\r\n", 400},
             {"GET /" + std::string(3000, 'a') + " HTTP/1.1\r\nHost: a\r\n\r\n", 414},
             {"GET / HTTP/1.1\r\nHost: a\r\nA: " + std::string(1000000, 'x'), 431},
             {"POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 2000000\r\n\r\n" +
                  std::string(2000000, 'x'),
              413},
             {"POST / HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n",
              411}}) {
        HttpClient client = Client();
        client.SendBytes(request); // the server may end while much of it is on its way
        EXPECT_EQ(client.ReadAnswer().status, status) << request.substr(0, 50);
        EXPECT_TRUE(client.ReadsEnd());
    }
    EXPECT_EQ(Client().Get("/a").status, 200);
}

TEST_F(HttpServerTest, IsNotKeptWaitingByHeadsAndBodiesThatDoNotCome) {
    HttpLimits limits;
    limits.headMs = 50;
    limits.bodyMs = 50;
    limits.idleMs = 50;
    StartServer(limits);
    HttpClient silent = Client();
    EXPECT_TRUE(silent.ReadsEnd());
    HttpClient half = Client();
    half.SendBytes("GET / HTTP/1.1\r\nHo");
    EXPECT_TRUE(half.ReadsEnd());
    HttpClient bodiless = Client();
    bodiless.SendBytes("POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 10\r\n\r\nhalf");
    EXPECT_TRUE(bodiless.ReadsEnd());
}

TEST_F(HttpServerTest, CutsAReaderThatIsTooSlow) {
    HttpLimits limits;
    limits.sendMs = 100;
    StartServer(limits);
    HttpClient slow = Client();
    slow.Socket().LimitReceiveBuffer(4096);
    slow.SendBytes("GET /endless HTTP/1.1\r\nHost: a\r\n\r\n");
    slow.ReadUntil("\r\n\r\n");
    EXPECT_EQ(handler.open, 1);
    // Others are served meanwhile.
    EXPECT_EQ(Client().Get("/a").status, 200);
    EXPECT_TRUE(support::WaitUntil([&] { return handler.open == 0; }));
}

TEST_F(HttpServerTest, NoticesThatTheReaderOfAQuietStreamHasGone) {
    StartServer();
    {
        HttpClient client = Client();
        client.SendBytes("GET /quiet HTTP/1.1\r\nHost: a\r\n\r\n");
        client.ReadUntil("\r\n\r\n");
        EXPECT_EQ(handler.open, 1);
    }
    EXPECT_TRUE(support::WaitUntil([&] { return handler.open == 0; }));
}

TEST_F(HttpServerTest, EndsAStreamThatHasAnEnd) {
    StartServer();
    HttpClient client = Client();
    client.SendBytes("GET /quiet HTTP/1.1\r\nHost: a\r\n\r\n");
    client.ReadUntil("\r\n\r\n");
    handler.endOfQuiet.Set();
    EXPECT_TRUE(client.ReadsEnd());
}

TEST_F(HttpServerTest, MakesRoomByEndingWhoWaitsLongest) {
    HttpLimits limits;
    limits.connections = 4;
    StartServer(limits);
    std::vector<std::unique_ptr<HttpClient>> clients;
    for (int i = 0; i < 4; ++i) {
        clients.push_back(std::make_unique<HttpClient>(server->Port()));
        EXPECT_EQ(clients.back()->Get("/a").status, 200);
    }
    EXPECT_EQ(clients[0]->Get("/a").status, 200); // now the second waits longest
    EXPECT_EQ(Client().Get("/a").status, 200);
    EXPECT_TRUE(clients[1]->ReadsEnd());
    EXPECT_EQ(clients[0]->Get("/a").status, 200);
}

TEST_F(HttpServerTest, RefusesWhenAllConnectionsAreBusy) {
    HttpLimits limits;
    limits.connections = 1;
    StartServer(limits);
    HttpClient busy = Client();
    busy.SendBytes("GET /wait HTTP/1.1\r\nHost: a\r\n\r\n");
    handler.waiting.Wait(platform::kInfinite);
    HttpClient refused = Client();
    EXPECT_EQ(refused.ReadAnswer().status, 503);
    handler.goOn.Set();
    EXPECT_EQ(busy.ReadAnswer().status, 200);
    EXPECT_EQ(server->Counts().refused, 1u);
}

TEST_F(HttpServerTest, LivesThroughAThousandConnections) {
    StartServer();
    HttpClient stream = Client();
    stream.SendBytes("GET /endless HTTP/1.1\r\nHost: a\r\n\r\n");
    stream.ReadUntil("\r\n\r\n");
    std::vector<std::unique_ptr<HttpClient>> crowd;
    for (int i = 0; i < 1000; ++i) {
        crowd.push_back(std::make_unique<HttpClient>(server->Port()));
    }
    // Who comes while those before are still being ended may be refused once.
    EXPECT_TRUE(support::WaitUntil([&] { return Client().Get("/a").status == 200; }));
    EXPECT_EQ(stream.ReadBytes(1000000).size(), 1000000u) << "the stream was disturbed";
    EXPECT_LE(server->Counts().connections, HttpLimits().connections);
}

TEST_F(HttpServerTest, LimitsTheRateOfRequests) {
    HttpLimits limits;
    limits.requestsPerSecond = 1;
    StartServer(limits);
    HttpClient client = Client();
    int refused = 0;
    for (int i = 0; i < 10; ++i) {
        const ClientAnswer answer = client.Get("/a");
        refused += answer.status == 429 ? 1 : 0;
    }
    EXPECT_GE(refused, 5);
}

TEST_F(HttpServerTest, StopsWhileClientsReadAndWait) {
    StartServer();
    HttpClient idle = Client();
    EXPECT_EQ(idle.Get("/a").status, 200);
    HttpClient reading = Client();
    reading.SendBytes("GET /endless HTTP/1.1\r\nHost: a\r\n\r\n");
    reading.ReadUntil("\r\n\r\n");
    HttpClient quiet = Client();
    quiet.SendBytes("GET /quiet HTTP/1.1\r\nHost: a\r\n\r\n");
    quiet.ReadUntil("\r\n\r\n");
    server->Stop();
    EXPECT_EQ(handler.open, 0);
    EXPECT_TRUE(idle.ReadsEnd());
    EXPECT_TRUE(quiet.ReadsEnd());
}

TEST_F(HttpServerTest, SaysWhyItCannotListen) {
    StartServer();
    HttpServer other(handler);
    EXPECT_ANY_THROW(other.Listen(kServerHost, server->Port()));
}

TEST_F(HttpServerTest, EndsWithoutHavingStarted) {
    HttpServer unused(handler);
    unused.Listen(kServerHost, 0);
    EXPECT_NE(unused.Port(), 0);
}

} // namespace
