// serve_app_test.cpp - a virtual camera, served over real connections
#include "apps/serve/serve_app.h"

#include "apps/common/continuous_grab.h"
#include "apps/serve/page_files.h"
#include "tests/apps/serve/app_fixture.h"

#include <lodepng.h>

#include <set>

namespace {

using Json = nlohmann::json;

using ServeInterfaceTest = ServeAppTest;
using ServeCameraTest = ServeAppTest;
using ServeImageTest = ServeAppTest;
using ServeSecurityTest = ServeAppTest;
using ServeStreamTest = ServeAppTest;

// ---- the interface as it is described ----

TEST_F(ServeInterfaceTest, IsThatOfItsDescription) {
    Serve();
    const Json description = GetJson("/openapi.json");
    std::set<std::string> described;
    for (const auto& [path, methods] : description["paths"].items()) {
        for (const auto& [method, operation] : methods.items()) {
            std::string names;
            for (const Json& parameter : operation.value("parameters", Json::array())) {
                names +=
                    parameter["in"] == "query" ? " " + parameter["name"].get<std::string>() : "";
            }
            const std::string body = operation.contains("requestBody")
                                         ? operation["requestBody"]["content"].begin().key()
                                         : "";
            described.insert(method + " " + path + names + " | " + body);
        }
    }
    std::set<std::string> offered;
    for (const Route& route : app->Routes().Routes()) {
        std::string method = route.method;
        std::transform(method.begin(), method.end(), method.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        std::string names;
        for (const std::string& name : route.query) {
            names += " " + name;
        }
        const char* const body = route.body == RouteBody::kNone   ? ""
                                 : route.body == RouteBody::kJson ? "application/json"
                                                                  : "text/plain";
        offered.insert(method + " " + route.path + names + " | " + body);
    }
    EXPECT_EQ(described, offered);
}

/// Whether the answer has all that the description says is in it, and nothing else.
void ExpectDescribed(const Json& description, const std::string& name, const Json& answer) {
    const Json& schema = description["components"]["schemas"][name]["properties"];
    for (const auto& [key, value] : answer.items()) {
        EXPECT_TRUE(schema.contains(key)) << name << " has " << key << ", which is not described";
    }
    for (const Json& key :
         description["components"]["schemas"][name].value("required", Json::array())) {
        EXPECT_TRUE(answer.contains(key)) << name << " lacks " << key;
    }
}

TEST_F(ServeInterfaceTest, GivesTheObjectsOfItsDescription) {
    ServeGrabbing();
    const Json description = GetJson("/openapi.json");
    const Json state = State();
    ExpectDescribed(description, "State", state);
    ExpectDescribed(description, "Camera", state["camera"]);
    ExpectDescribed(description, "Account", state["account"]);
    ExpectDescribed(description, "Error", Json::parse(Get("/nothing").body));
    const Json features = GetJson("/api/features");
    for (const Json& feature : features["features"]) {
        ExpectDescribed(description, "Feature", feature);
    }
}

TEST_F(ServeInterfaceTest, HasThePageWithStrictHeaders) {
    Serve();
    const ClientAnswer page = Get("/");
    EXPECT_EQ(page.status, 200);
    EXPECT_EQ(page.headers.at("content-type"), "text/html; charset=utf-8");
    EXPECT_EQ(page.body, FindPageFile("index.html")->content);
    EXPECT_TRUE(page.headers.at("content-security-policy")
                    .starts_with("default-src 'none'; script-src 'self'"));
    EXPECT_EQ(page.headers.at("x-content-type-options"), "nosniff");
    EXPECT_EQ(page.headers.at("x-frame-options"), "DENY");
    EXPECT_EQ(Get("/page/main.js").headers.at("content-type"), "text/javascript; charset=utf-8");
    EXPECT_EQ(Get("/page/openapi.json").status, 404);
    EXPECT_EQ(Get("/page/..%2f..%2fetc%2fpasswd").status, 404);
}

// ---- the camera ----

TEST_F(ServeCameraTest, IsListedOpenedStartedStoppedAndClosed) {
    Serve();
    Json cameras = GetJson("/api/cameras");
    ASSERT_EQ(cameras.size(), 2u);
    EXPECT_EQ(cameras[0]["model"], "Camera A");
    EXPECT_EQ(cameras[0]["open"], false);
    Json state = SendJson("POST", "/api/camera/open", "{\"camera\":\"Camera B\"}");
    EXPECT_EQ(state["open"], true);
    EXPECT_EQ(state["camera"]["id"], "B");
    EXPECT_EQ(state["image"]["width"], 64);
    EXPECT_EQ(state["image"]["height"], 48);
    EXPECT_EQ(state["image"]["pixelFormat"], "Mono8");
    EXPECT_EQ(state["simulatorControl"], true);
    EXPECT_EQ(GetJson("/api/cameras")[1]["open"], true);
    EXPECT_EQ(SendJson("POST", "/api/camera/start")["grabbing"], true);
    WaitForState([](const Json& present) {
        return present["account"]["taken"] > 30 && present["rate"] > 50;
    });
    state = SendJson("POST", "/api/camera/stop");
    EXPECT_EQ(state["grabbing"], false);
    EXPECT_EQ(state["account"]["lost"], 0);
    EXPECT_EQ(state["account"]["closed"], true) << state;
    EXPECT_NE(state["account"]["sdk"], nullptr) << "at the end the SDK's counts are compared";
    state = SendJson("POST", "/api/camera/close");
    EXPECT_EQ(state["open"], false);
    EXPECT_EQ(state["camera"], nullptr);
    EXPECT_EQ(Get("/frame.jpg").status, 404);
}

TEST_F(ServeCameraTest, RefusesWhatItsStateDoesNotAllow) {
    Serve();
    EXPECT_EQ(SendJson("POST", "/api/camera/start", "{}", 409)["error"],
              "no camera is open; open one first");
    EXPECT_EQ(SendJson("POST", "/api/recording/stop", "{}", 409)["error"],
              "nothing is being recorded");
    const Json missing = SendJson("POST", "/api/camera/open", "{\"camera\":\"Camera C\"}", 404);
    EXPECT_NE(missing["error"].get<std::string>().find("Camera C"), std::string::npos) << missing;
    SendJson("POST", "/api/camera/open", "{}", 400);
    EXPECT_EQ(Get("/snap.png").status, 409);
    EXPECT_EQ(Get("/api/settings").status, 409);
    EXPECT_EQ(Get("/api/pixel?x=0&y=0").status, 404);
    EXPECT_FALSE(GetJson("/api/features")["features"].empty()) << "those of the system";
}

TEST_F(ServeCameraTest, GoesAndComesBack) {
    ServeGrabbing();
    SendJson("PUT", "/api/features/Camera/Width", "{\"value\":32,\"restart\":true}");
    Sdk("unplug A");
    WaitForState([](const Json& state) { return state["gone"] == true; });
    Sdk("set A Width 48"); // what it comes back with
    EXPECT_EQ(State()["open"], false);
    EXPECT_EQ(State()["camera"]["id"], "A") << "which one is awaited";
    SendJson("POST", "/api/camera/start", "{}", 409);
    Sdk("plug A");
    WaitForState([](const Json& state) {
        return state["grabbing"] == true && state["account"]["taken"] > 0;
    });
    EXPECT_EQ(State()["gone"], false);
    EXPECT_EQ(State()["image"]["width"], 32) << "as it was written before";
}

TEST_F(ServeCameraTest, IsNotAwaitedAnyMoreOnceItIsClosed) {
    ServeGrabbing();
    Sdk("unplug A");
    WaitForState([](const Json& state) { return state["gone"] == true; });
    const Json state = SendJson("POST", "/api/camera/close");
    EXPECT_EQ(state["gone"], false);
    EXPECT_EQ(state["camera"], nullptr);
    Sdk("plug A");
}

// ---- images ----

TEST_F(ServeImageTest, HasTheTrueValues) {
    ServeGrabbing();
    SendJson("POST", "/api/camera/stop");
    const unsigned first = GetJson("/api/pixel?x=0&y=0")["values"][0];
    const Json pixel = GetJson("/api/pixel?x=10&y=7");
    EXPECT_EQ(pixel["values"], Json::array({(first + 17) % 256}));
    EXPECT_EQ(pixel["bits"], 8);
    EXPECT_EQ(Get("/api/pixel?x=64&y=0").body,
              "{\"schema\":1,\"error\":\"x takes 0 to 63, not 64\"}\n");
    EXPECT_EQ(Get("/api/pixel?x=0&y=48").status, 400);
    EXPECT_EQ(Get("/api/pixel?x=0").status, 400);
    const Json histogram = GetJson("/api/histogram?bins=2");
    EXPECT_EQ(histogram["channels"][0][0].get<int>() + histogram["channels"][0][1].get<int>(),
              64 * 48);
    EXPECT_EQ(Get("/api/histogram?bins=3").status, 400);
    const Json profile = GetJson("/api/profile?x1=0&y1=0&x2=3&y2=0")["channels"][0];
    EXPECT_EQ(profile,
              Json::array({first, (first + 1) % 256, (first + 2) % 256, (first + 3) % 256}));
    const ClientAnswer tile = Get("/tile.png?x=60&y=40&width=100&height=3");
    EXPECT_EQ(tile.status, 200);
    std::vector<unsigned char> pixels;
    unsigned width = 0;
    unsigned height = 0;
    const std::vector<unsigned char> png(tile.body.begin(), tile.body.end());
    ASSERT_EQ(lodepng::decode(pixels, width, height, png, LCT_GREY, 8), 0u);
    EXPECT_EQ(width, 4u) << "the rest lies beyond the image";
    EXPECT_EQ(height, 3u);
    EXPECT_EQ(pixels[0], (first + 100) % 256);
}

TEST_F(ServeImageTest, AreTakenWhetherTheCameraGrabsOrNot) {
    Serve();
    SendJson("POST", "/api/camera/open", "{\"camera\":\"A\"}");
    const ClientAnswer alone = Get("/snap.tiff");
    EXPECT_EQ(alone.status, 200);
    EXPECT_EQ(alone.headers.at("content-type"), "image/tiff");
    EXPECT_TRUE(alone.body.starts_with("II*"));
    EXPECT_EQ(State()["grabbing"], false);
    SendJson("POST", "/api/camera/start");
    const ClientAnswer during = Get("/snap.png");
    EXPECT_EQ(during.status, 200);
    EXPECT_TRUE(during.body.starts_with("\x89PNG"));
    EXPECT_GT(std::stoul(during.headers.at("x-frame")), std::stoul(alone.headers.at("x-frame")));
    EXPECT_EQ(State()["grabbing"], true);
}

// ---- streams ----

/// The numbers of the next frames of a stream.
std::vector<unsigned long> StreamedFrames(HttpClient& client, std::size_t count) {
    std::vector<unsigned long> numbers;
    while (numbers.size() < count) {
        const std::string head = client.ReadUntil("\r\n\r\n");
        const std::size_t length = head.find("Content-Length: ");
        const std::size_t number = head.find("X-Frame: ");
        if (length == std::string::npos || number == std::string::npos) {
            break;
        }
        const std::string jpeg = client.ReadBytes(std::stoul(head.substr(length + 16)));
        EXPECT_TRUE(jpeg.starts_with("\xFF\xD8")) << "it is no JPEG";
        numbers.push_back(std::stoul(head.substr(number + 9)));
    }
    return numbers;
}

TEST_F(ServeStreamTest, HasFrameAfterFrame) {
    ServeGrabbing();
    HttpClient client = Client();
    client.SendBytes("GET /stream.mjpg?width=32 HTTP/1.1\r\nHost: " +
                     url.substr(7, url.size() - 8) + "\r\n\r\n");
    EXPECT_NE(client.ReadUntil("\r\n\r\n").find("multipart/x-mixed-replace; boundary=mivora-frame"),
              std::string::npos);
    const std::vector<unsigned long> numbers = StreamedFrames(client, 20);
    ASSERT_EQ(numbers.size(), 20u);
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    EXPECT_EQ(std::set<unsigned long>(numbers.begin(), numbers.end()).size(), 20u);
    EXPECT_EQ(Get("/stream.mjpg?rate=0").status, 400);
    EXPECT_EQ(Get("/frame.jpg?width=15").status, 400);
    EXPECT_TRUE(Get("/frame.jpg?width=16").body.starts_with("\xFF\xD8"));
}

TEST_F(ServeStreamTest, KeepsToItsRate) {
    ServeGrabbing();
    HttpClient client = Client();
    client.SendBytes("GET /stream.mjpg?rate=20 HTTP/1.1\r\nHost: " + url.substr(7, url.size() - 8) +
                     "\r\n\r\n");
    client.ReadUntil("\r\n\r\n");
    const std::vector<unsigned long> numbers = StreamedFrames(client, 8);
    ASSERT_EQ(numbers.size(), 8u);
    EXPECT_GE(numbers.back() - numbers.front(), 7u * 4)
        << "a hundred frames a second, of which twenty";
}

TEST_F(ServeStreamTest, OfTwentyReadersLosesNoFrame) {
    ServeGrabbing();
    const std::string request =
        "GET /stream.mjpg?width=64 HTTP/1.1\r\nHost: " + url.substr(7, url.size() - 8) + "\r\n\r\n";
    std::vector<std::unique_ptr<HttpClient>> readers;
    for (int i = 0; i < 20; ++i) {
        readers.emplace_back(new HttpClient(Client()));
        readers.back()->SendBytes(request);
    }
    HttpClient slow = Client(); // which never reads
    slow.Socket().LimitReceiveBuffer(4096);
    slow.SendBytes(request);
    for (const auto& reader : readers) {
        reader->ReadUntil("\r\n\r\n");
        EXPECT_EQ(StreamedFrames(*reader, 50).size(), 50u);
    }
    readers.clear();
    const Json state = SendJson("POST", "/api/camera/stop");
    EXPECT_EQ(state["account"]["lost"], 0) << state;
    EXPECT_EQ(state["account"]["damaged"], 0);
    EXPECT_EQ(state["account"]["sdk"]["dropped"], 0);
    EXPECT_EQ(state["account"]["closed"], true);
}

TEST_F(ServeStreamTest, ThatNobodyReadsDoesNotKeepTheProgramFromEnding) {
    ServeGrabbing();
    HttpClient slow = Client();
    slow.Socket().LimitReceiveBuffer(4096);
    slow.SendBytes("GET /stream.mjpg HTTP/1.1\r\nHost: " + url.substr(7, url.size() - 8) +
                   "\r\n\r\n");
    slow.ReadUntil("\r\n\r\n");
    HttpClient follower = Client();
    follower.SendBytes("GET /events HTTP/1.1\r\nHost: " + url.substr(7, url.size() - 8) +
                       "\r\n\r\n");
    follower.ReadUntil("event: state");
    EndServing();
}

// ---- who may ----

TEST_F(ServeSecurityTest, RefusesOthers) {
    Serve();
    EXPECT_EQ(Client().Ask("GET", "/api/state", "Host: evil.example\r\n").status, 403);
    EXPECT_EQ(Client().Ask("GET", "/api/state", "Origin: http://evil.example\r\n").status, 403);
    EXPECT_EQ(Client()
                  .Ask("POST", "/api/camera/close",
                       "Origin: null\r\nContent-Type: application/json\r\n", "{}")
                  .status,
              403);
    EXPECT_EQ(
        Client().Ask("POST", "/api/camera/close", "Content-Type: text/plain\r\n", "{}").status,
        415);
    EXPECT_EQ(Client().Ask("POST", "/api/camera/close", "", "{}").status, 415);
    EXPECT_EQ(Client().Send("POST", "/api/camera/close", "{\"a\":1}").status, 400);
    EXPECT_EQ(Client().Send("POST", "/api/camera/close", std::string(100000, '[')).status, 400);
    EXPECT_EQ(Client().Send("POST", "/api/camera/close", "{}").status, 200);
}

TEST_F(ServeSecurityTest, AsksForTheToken) {
    ServeSettings settings;
    settings.token = "0123456789abcdef";
    Serve(settings);
    EXPECT_TRUE(url.ends_with("/?token=0123456789abcdef"));
    EXPECT_EQ(Get("/").status, 401);
    EXPECT_EQ(Get("/stream.mjpg").status, 401);
    EXPECT_EQ(Get("/metrics").status, 401);
    EXPECT_EQ(
        Client().Ask("GET", "/api/state", "Authorization: Bearer 0123456789abcdeg\r\n").status,
        401);
    EXPECT_EQ(
        Client().Ask("GET", "/api/state", "Authorization: Bearer 0123456789abcdef\r\n").status,
        200);
    const ClientAnswer exchange = Get("/?token=0123456789abcdef");
    EXPECT_EQ(exchange.status, 303);
    EXPECT_EQ(exchange.headers.at("location"), "/");
    const std::string cookie = exchange.headers.at("set-cookie");
    EXPECT_EQ(
        Client()
            .Ask("GET", "/api/state", "Cookie: " + cookie.substr(0, cookie.find(';')) + "\r\n")
            .status,
        200);
}

} // namespace
