// app_fixture.cpp - a served camera, virtual, for tests
#include "tests/apps/serve/app_fixture.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/event.h"
#include "platform/file_system.h"
#include "tests/support/run_program.h"
#include "tests/support/wait_until.h"

namespace {

constexpr unsigned kStatePatienceMs = 60000;

std::string ServedCameraXml(const std::string& id) {
    return "<camera id=\"" + id + "\" extendedId=\"Eth0|" + id + "\" model=\"Camera " + id +
           "\" sensorWidth=\"64\" sensorHeight=\"64\">\n"
           "<feature name=\"Height\" value=\"48\"/>\n"
           "<feature name=\"ExposureTime\" value=\"1000\"/>\n"
           "<feature name=\"AcquisitionFrameRate\" value=\"100\"/>\n</camera>\n";
}

} // namespace

struct LinkedGrabbers::Grabbers {
    std::vector<std::unique_ptr<CMivoraKVNPyxenClass>> made;
};

LinkedGrabbers::LinkedGrabbers() : grabbers(std::make_unique<Grabbers>()) {}

LinkedGrabbers::~LinkedGrabbers() = default;

CMivoraGrabber* LinkedGrabbers::Create() {
    return grabbers->made.emplace_back(std::make_unique<CMivoraKVNPyxenClass>(nullptr)).get();
}

void LinkedGrabbers::Delete(CMivoraGrabber* grabber) {
    std::erase_if(grabbers->made, [grabber](const auto& made) { return made.get() == grabber; });
}

IMivoraModuleServices* LinkedGrabbers::Services(CMivoraGrabber* grabber, std::string&) {
    return &static_cast<CMivoraKVNPyxenClass*>(grabber)->Services();
}

ServeAppTest::ServeAppTest()
    : recordings(directory.PathOf("recordings")),
      home("PYXEN_HOME", support::BuiltFile("simulator")) {
    options.configFile = directory.Write("host.ini", "[Grabber_0]\n");
    directory.Write("PxnC.xml",
                    "<PxnC>\n" + ServedCameraXml("A") + ServedCameraXml("B") + "</PxnC>\n");
    Sdk("clear"); // loads the library before the test changes PYXEN_HOME
}

ServeAppTest::~ServeAppTest() {
    EndServing();
    Sdk("clear");
}

void ServeAppTest::RunApp(const ServeSettings& settings) {
    try {
        ServeApp served(options, maker, settings);
        app = &served;
        url = served.Url();
        const std::size_t colon = url.rfind(':');
        port = static_cast<std::uint16_t>(std::stoul(url.substr(colon + 1)));
        isServing.Set();
        served.Run();
    } catch (const std::exception& thrown) {
        failure = thrown.what();
    }
    app = nullptr;
    isServing.Set();
}

void ServeAppTest::Serve(ServeSettings settings) {
    settings.recordings = recordings;
    thread = std::thread([this, settings] { RunApp(settings); });
    isServing.Wait(platform::kInfinite);
    ASSERT_EQ(failure, "");
}

void ServeAppTest::ServeGrabbing() {
    ServeSettings settings;
    settings.camera = "Camera A";
    Serve(settings);
    WaitForState([](const nlohmann::json& state) { return state["account"]["taken"] > 0; });
}

void ServeAppTest::EndServing() {
    if (thread.joinable()) {
        if (app) {
            app->End();
        }
        thread.join();
    }
}

nlohmann::json ServeAppTest::GetJson(const std::string& target) {
    const ClientAnswer answer = Get(target);
    EXPECT_EQ(answer.status, 200) << target << ": " << answer.body;
    return nlohmann::json::parse(answer.body);
}

nlohmann::json ServeAppTest::SendJson(const std::string& method, const std::string& target,
                                      const std::string& json, int status) {
    const ClientAnswer answer = Client().Send(method, target, json);
    EXPECT_EQ(answer.status, status) << target << ": " << answer.body;
    return nlohmann::json::parse(answer.body);
}

void ServeAppTest::WaitForState(const std::function<bool(const nlohmann::json& state)>& isSo) {
    nlohmann::json last;
    HttpClient client = Client();
    const bool came = support::WaitUntil(
        [&] {
            last = nlohmann::json::parse(client.Get("/api/state").body);
            return last.contains("open") && isSo(last);
        },
        kStatePatienceMs);
    ASSERT_TRUE(came) << last;
}

void ServeAppTest::Sdk(const std::string& command) {
    std::string answer;
    EXPECT_EQ(sdk.Run(command, answer), 0) << command << ": " << answer;
}
