// serve_features_test.cpp - features, settings, recordings and events of a served camera
#include "apps/serve/serve_app.h"

#include "platform/file_system.h"
#include "tests/apps/serve/app_fixture.h"

namespace {

using Json = nlohmann::json;

using ServeFeatureTest = ServeAppTest;
using ServeSettingsTest = ServeAppTest;
using ServeRecordingTest = ServeAppTest;
using ServeEventTest = ServeAppTest;
using ServeScriptTest = ServeAppTest;
using ServeMetricsTest = ServeAppTest;

const std::string kWidthPath = "/api/features/Camera/Width";

TEST_F(ServeFeatureTest, AreWrittenAndRefusedWithTheReason) {
    Serve();
    SendJson("POST", "/api/camera/open", "{\"camera\":\"A\"}");
    const Json width = GetJson(kWidthPath);
    EXPECT_EQ(width["schema"], 1);
    EXPECT_EQ(width["value"], 64);
    EXPECT_EQ(width["access"], "RW");
    EXPECT_EQ(width["category"], "/ImageFormatControl");
    EXPECT_EQ(SendJson("PUT", kWidthPath, "{\"value\":32}")["value"], 32);
    EXPECT_EQ(State()["image"]["width"], 32);
    EXPECT_EQ(SendJson("PUT", kWidthPath, "{\"value\":\"48\"}")["value"], 48);
    EXPECT_EQ(SendJson("PUT", kWidthPath, "{\"value\":33}", 422)["error"],
              "Camera/Width takes 16 to 64 in steps of 4, not 33");
    SendJson("PUT", kWidthPath, "{\"value\":\"wide\"}", 422);
    SendJson("PUT", kWidthPath, "{\"value\":null}", 400);
    SendJson("PUT", kWidthPath, "{\"value\":[1]}", 400);
    SendJson("PUT", kWidthPath, "{}", 400);
    EXPECT_EQ(SendJson("PUT", "/api/features/Camera/Girth", "{\"value\":1}", 404)["error"],
              "Camera has no feature \"Girth\"");
    EXPECT_EQ(GetJson(kWidthPath)["value"], 48);
    EXPECT_EQ(SendJson("PUT", "/api/features/Camera/DeviceUserID",
                       "{\"value\":\"\xC3\xA4 \\\"x\\\"\"}")["value"],
              "\xC3\xA4 \"x\"");
    EXPECT_EQ(
        SendJson("PUT", "/api/features/Camera/PixelFormat", "{\"value\":\"Mono12\"}")["value"],
        "Mono12");
    EXPECT_EQ(State()["image"]["bits"], 12);
}

TEST_F(ServeFeatureTest, AreWrittenInAPauseOfTheAcquisitionOnDemand) {
    ServeGrabbing();
    SendJson("PUT", kWidthPath, "{\"value\":32}", 409);
    EXPECT_EQ(SendJson("PUT", kWidthPath, "{\"value\":32,\"restart\":true}")["value"], 32);
    WaitForState([](const Json& state) {
        return state["grabbing"] == true && state["image"]["width"] == 32;
    });
    SendJson("PUT", kWidthPath, "{\"value\":33,\"restart\":true}", 422);
    EXPECT_EQ(State()["grabbing"], true);
}

TEST_F(ServeFeatureTest, AreExecuted) {
    Serve();
    SendJson("POST", "/api/camera/open", "{\"camera\":\"A\"}");
    SendJson("POST", "/api/features/Camera/TimestampLatch/execute");
    SendJson("POST", "/api/features/Camera/Width/execute", "{}", 422);
}

TEST_F(ServeFeatureTest, SayWhatFollowsThemAndWhatAWriteWouldChange) {
    directory.Write(
        "PxnC.xml",
        "<PxnC>\n<camera kind=\"serial\" id=\"S\" sensorWidth=\"640\" sensorHeight=\"64\"/></PxnC>\n");
    options.configFile = directory.Write(
        "host.ini", "[TLSpecificConfig_0]\nTLType=CL\nFeatureSyncFile=board.sync\n");
    directory.Write(
        "board.sync",
        "{\"SyncFeatures\":[{\"ModuleName\":\"Camera\",\"FeatureName\":\"Width\","
        "\"Dependencies\":[{\"ModuleName\":\"Localdevice\",\"FeatureName\":\"InputWidth\"}]}]}");
    Serve();
    SendJson("POST", "/api/camera/open", "{\"camera\":\"S\"}");
    const Json alone = GetJson("/api/synchronisation?feature=Camera/Width");
    const Json follower = {{"module", "Localdevice"}, {"name", "InputWidth"}};
    EXPECT_EQ(alone["followers"], Json::array({follower}));
    EXPECT_EQ(alone["changes"], Json::array());
    const Json dry = GetJson("/api/synchronisation?feature=Camera/Width&value=320");
    EXPECT_EQ(dry["reason"], nullptr);
    ASSERT_EQ(dry["changes"].size(), 2u) << dry;
    EXPECT_EQ(dry["changes"][0]["from"], 640);
    EXPECT_EQ(dry["changes"][0]["to"], 320);
    EXPECT_EQ(dry["changes"][1]["feature"], follower);
    EXPECT_EQ(GetJson(kWidthPath)["value"], 640) << "nothing is written";
    const Json refused = GetJson("/api/synchronisation?feature=Camera/Width&value=641");
    EXPECT_EQ(refused["reason"], "Camera/Width takes 16 to 640 in steps of 2, not 641");
    EXPECT_EQ(refused["changes"], Json::array());
    EXPECT_EQ(Get("/api/synchronisation?feature=Width").status, 400);
    EXPECT_EQ(GetJson("/api/synchronisation?feature=Camera/Height")["followers"], Json::array());
}

TEST_F(ServeSettingsTest, AreSavedComparedAndLoaded) {
    Serve();
    SendJson("POST", "/api/camera/open", "{\"camera\":\"A\"}");
    const std::string saved = Get("/api/settings").body;
    SendJson("PUT", kWidthPath, "{\"value\":32}");
    const auto post = [&](const std::string& target, const std::string& text) {
        return Client().Ask("POST", target, "Content-Type: text/plain\r\n", text);
    };
    EXPECT_EQ(Json::parse(post("/api/settings/diff", saved).body)["differences"],
              Json::parse("[{\"setting\":\"Camera/Width\",\"camera\":\"32\",\"file\":\"64\"}]"));
    const Json loaded = Json::parse(post("/api/settings", saved).body);
    EXPECT_EQ(loaded["changed"],
              Json::parse("[{\"setting\":\"Camera/Width\",\"from\":\"32\",\"to\":\"64\"}]"));
    EXPECT_EQ(loaded["refused"], Json::array());
    EXPECT_EQ(State()["image"]["width"], 64);
    const ClientAnswer broken = post("/api/settings", "{\"a\":1}");
    EXPECT_EQ(broken.status, 422);
    EXPECT_EQ(broken.body.find(platform::DirectoryOf(directory.Path())), std::string::npos)
        << "no path of this computer";
    EXPECT_EQ(post("/api/settings/diff", "nothing").status, 422);
    SendJson("POST", "/api/camera/start");
    SendJson("PUT", "/api/features/Camera/Width", "{\"value\":32,\"restart\":true}");
    EXPECT_EQ(Json::parse(post("/api/settings", saved).body)["refused"].size(), 1u);
    EXPECT_EQ(Json::parse(post("/api/settings?restart=1", saved).body)["changed"].size(), 1u);
    EXPECT_EQ(State()["grabbing"], true);
}

TEST_F(ServeRecordingTest, IsMadeWatchedAndFetched) {
    ServeGrabbing();
    SendJson("POST", "/api/recording/start",
             "{\"frames\":20,\"format\":\"raw\",\"name\":\"first\"}");
    SendJson("POST", "/api/recording/start",
             "{\"frames\":20,\"format\":\"raw\",\"name\":\"first\"}", 409);
    WaitForState([](const Json& state) { return state["recording"]["done"] == true; });
    const Json recording = State()["recording"];
    EXPECT_EQ(recording["error"], nullptr);
    EXPECT_EQ(recording["written"], 20);
    EXPECT_EQ(recording["lost"], 0);
    EXPECT_EQ(State()["grabbing"], true) << "the page goes on";
    const Json list = GetJson("/api/recordings")["recordings"];
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]["name"], "first");
    const Json description = GetJson("/api/recordings/first/recording.json");
    EXPECT_EQ(description["frames"]["recorded"], 20) << description;
    const ClientAnswer frame = Get("/api/recordings/first/frame-000020.raw");
    EXPECT_EQ(frame.body.size(), 64u * 48);
    EXPECT_EQ(frame.body, directory.Read("recordings/first/frame-000020.raw"));
    EXPECT_EQ(frame.headers.at("content-disposition"), "attachment; filename=\"frame-000020.raw\"");
    EXPECT_EQ(Get("/api/recordings/first/..%2f..%2fhost.ini").status, 404);
    EXPECT_EQ(Get("/api/recordings/../host.ini").status, 404);
    SendJson("POST", "/api/recording/start", "{\"frames\":1,\"format\":\"raw\",\"name\":\"../x\"}",
             400);
    SendJson("POST", "/api/recording/start", "{\"frames\":1,\"format\":\"gif\",\"name\":\"x\"}",
             400);
    SendJson("POST", "/api/recording/start", "{\"frames\":-1,\"format\":\"raw\",\"name\":\"x\"}",
             400);
}

TEST_F(ServeRecordingTest, EndsEarlyWithTheReason) {
    Serve();
    SendJson("POST", "/api/camera/open", "{\"camera\":\"A\"}");
    SendJson("POST", "/api/recording/start",
             "{\"frames\":0,\"format\":\"stack\",\"name\":\"open-end\"}");
    WaitForState([](const Json& state) {
        return state["grabbing"] == true && state["recording"]["written"] > 2;
    });
    SendJson("POST", "/api/recording/stop");
    WaitForState([](const Json& state) { return state["recording"]["done"] == true; });
    SendJson("POST", "/api/recording/start",
             "{\"frames\":100000,\"format\":\"raw\",\"name\":\"cut\"}");
    WaitForState([](const Json& state) { return state["recording"]["written"] > 2; });
    SendJson("PUT", kWidthPath, "{\"value\":32,\"restart\":true}", 409);
    SendJson("POST", "/api/camera/stop");
    WaitForState([](const Json& state) { return state["recording"]["done"] == true; });
    const std::string error = State()["recording"]["error"];
    EXPECT_TRUE(error.starts_with("the acquisition was stopped after ")) << error;
    EXPECT_NE(error.find(" of 100000 frames"), std::string::npos);
}

TEST_F(ServeRecordingTest, IsWholeWhenTheProgramEnds) {
    ServeGrabbing();
    SendJson("POST", "/api/recording/start", "{\"frames\":0,\"format\":\"raw\",\"name\":\"last\"}");
    WaitForState([](const Json& state) { return state["recording"]["written"] > 2; });
    EndServing();
    const Json description = Json::parse(directory.Read("recordings/last/recording.json"));
    EXPECT_GT(description["frames"]["recorded"], 2) << description;
}

/// The data of the next event of this name.
Json NextEvent(HttpClient& client, const std::string& name) {
    client.ReadUntil("event: " + name + "\ndata: ");
    const std::string data = client.ReadUntil("\n\n");
    return data.empty() ? Json() : Json::parse(data);
}

TEST_F(ServeEventTest, TellOfStatesCamerasFeaturesAndTheLog) {
    Serve();
    HttpClient follower = Client();
    follower.SendBytes("GET /events HTTP/1.1\r\nHost: " + url.substr(7, url.size() - 8) +
                       "\r\n\r\n");
    EXPECT_EQ(NextEvent(follower, "cameras").size(), 2u);
    EXPECT_EQ(NextEvent(follower, "state")["open"], false);
    SendJson("POST", "/api/camera/open", "{\"camera\":\"A\"}");
    EXPECT_FALSE(NextEvent(follower, "log")["text"].get<std::string>().empty());
    EXPECT_EQ(NextEvent(follower, "state")["open"], true);
    Sdk("set A Width 32"); // by the camera itself
    Json feature;
    do {
        feature = NextEvent(follower, "feature");
    } while (!feature.empty() && feature["name"] != "Width");
    EXPECT_EQ(feature["value"], 32);
    Sdk("unplug B");
    Json cameras;
    do {
        cameras = NextEvent(follower, "cameras");
    } while (cameras.size() == 2);
    EXPECT_EQ(cameras.size(), 1u);
}

TEST_F(ServeScriptTest, RunsOnTheSimulator) {
    ServeGrabbing();
    const auto put = [&](const std::string& text) {
        return Client().Ask("PUT", "/api/simulator/script", "Content-Type: text/plain\r\n", text);
    };
    EXPECT_EQ(put("# the temperature\nset A DeviceTemperature 71.5\n").status, 200);
    EXPECT_EQ(Get("/api/simulator/script").body,
              "# the temperature\nset A DeviceTemperature 71.5\n");
    for (const char* const line :
         {"script x", "# a\n\n after 1 script x", "at-call any 1 script x"}) {
        EXPECT_EQ(put(line).status, 422) << "it would read a file of this computer";
    }
    const ClientAnswer refused = put("set A Width 32\nnonsense\n");
    EXPECT_EQ(refused.status, 422);
    EXPECT_EQ(refused.body.find(".txt"), std::string::npos) << refused.body;
}

TEST_F(ServeMetricsTest, AreCountsAndTimes) {
    ServeGrabbing();
    WaitForState([](const Json& state) { return state["rate"] > 0; });
    const ClientAnswer answer = Get("/metrics");
    EXPECT_TRUE(answer.headers.at("content-type").starts_with("text/plain; version=0.0.4"));
    const auto value = [&](const std::string& name) {
        const std::size_t at = answer.body.find("\n" + name + " ");
        return at == std::string::npos ? -1.0 : std::stod(answer.body.substr(at + name.size() + 2));
    };
    EXPECT_EQ(value("mivora_camera_grabbing"), 1);
    EXPECT_GT(value("mivora_frames_taken_total"), 0);
    EXPECT_EQ(value("mivora_frames_lost_total"), 0);
    EXPECT_GT(value("mivora_frame_latency_seconds_count"), 0);
    EXPECT_EQ(value("mivora_frame_latency_seconds_bucket{le=\"+Inf\"}"),
              value("mivora_frame_latency_seconds_count"));
    EXPECT_GE(value("mivora_http_requests_total"), 1);
    EXPECT_GE(value("mivora_frames_waiting"), 0);
}

} // namespace
