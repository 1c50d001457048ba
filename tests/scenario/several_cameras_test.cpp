// several_cameras_test.cpp - one program grabs from several cameras
//
// Recordings have MIVORA_RECORDED_FRAMES frames of each camera, 150 without it.
#include "platform/environment.h"
#include "tests/scenario/program_test.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

namespace scenario {
namespace {

class SeveralCameras : public ProgramTest {
protected:
    static std::string FrameCount() {
        const std::string wanted = platform::GetEnvironment("MIVORA_RECORDED_FRAMES");
        return wanted.empty() ? "150" : wanted;
    }
    /// Cameras "A", "B" and so on of 64 x 64 pixels, with 100 frames per second.
    void UseCameras(std::size_t count, const std::string& behind = {}) {
        std::string text = "<PxnC>\n";
        for (std::size_t i = 0; i < count; ++i) {
            const std::string id(1, static_cast<char>('A' + i));
            text += "<camera id=\"" + id + "\" model=\"Camera " + id + "\" serial=\"S/" + id +
                    "\" sensorWidth=\"64\" sensorHeight=\"64\">"
                    "<feature name=\"ExposureTime\" value=\"1000\"/>"
                    "<feature name=\"AcquisitionFrameRate\" value=\"100\"/></camera>\n";
        }
        directory.Write("PxnC.xml", text + behind + "</PxnC>\n");
    }
    support::ProgramResult Grab(const Arguments& cameras, const Arguments& options) const {
        Arguments all;
        for (const std::string& camera : cameras) {
            all.insert(all.end(), {"--camera", camera});
        }
        all.push_back("grab");
        all.insert(all.end(), options.begin(), options.end());
        return Mivora(all);
    }
    Json JsonOf(const std::string& name) const { return Json::parse(directory.Read(name)); }
    /// Expects that each frame of a recording came after it was taken, by one clock.
    void ExpectRelatedTimes(const std::string& folder) const {
        const Json clock = JsonOf(folder + "/recording.json")["clock"];
        EXPECT_EQ(clock["method"], "TimestampLatch") << clock;
        const auto offset = clock["offsetNs"].get<std::int64_t>();
        const auto uncertainty = clock["uncertaintyNs"].get<std::int64_t>();
        EXPECT_LT(uncertainty, 1000000000) << clock;
        std::istringstream lines(directory.Read(folder + "/frames.jsonl"));
        for (std::string text; std::getline(lines, text);) {
            const Json line = Json::parse(text);
            const std::int64_t way = line["hostNs"].get<std::int64_t>() -
                                     line["timestampNs"].get<std::int64_t>() - offset;
            ASSERT_GE(way, -uncertainty) << line << clock;
            ASSERT_LT(way, 5000000000) << line << clock;
        }
    }
    std::size_t LinesOf(const std::string& name) const {
        const std::string text = directory.Read(name);
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    }
};

TEST_F(SeveralCameras, RecordAHundredFramesASecondEachWithoutALoss) {
    UseCameras(4);
    const auto result =
        Grab({"A", "B", "C", "D"}, {"--frames", FrameCount(), "-o", PathOf("run"), "--format",
                                    "stack", "--buffers", "100", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    const std::uint64_t frames = std::stoull(FrameCount());
    EXPECT_EQ(report["schema"], 1);
    EXPECT_EQ(report["frames"], 4 * frames);
    EXPECT_EQ(report["recording"]["recorded"], 4 * frames);
    EXPECT_EQ(report["recording"]["missing"], 0);
    EXPECT_TRUE(report["account"]["closed"]) << report;
    EXPECT_EQ(report["account"]["lost"], 0) << report;
    EXPECT_GE(report["account"]["sdk"]["completed"], 4 * frames) << report;
    EXPECT_EQ(report["start"]["by"], "software");
    EXPECT_GE(report["start"]["firstFramesMicroseconds"], 0);
    const Json set = JsonOf("run/recording.json");
    EXPECT_EQ(set["schema"], 1);
    EXPECT_TRUE(set["complete"]) << set;
    EXPECT_EQ(set["startedBy"], "software");
    EXPECT_FALSE(set["firstFramesNs"].is_null());
    ASSERT_EQ(set["cameras"].size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        const std::string id(1, static_cast<char>('A' + i));
        const std::string folder = "camera-S_" + id;
        const Json& camera = report["cameras"][i];
        EXPECT_EQ(camera["frames"], frames);
        EXPECT_EQ(camera["folder"], folder);
        EXPECT_EQ(camera["camera"]["id"], id);
        EXPECT_TRUE(camera["account"]["sdk"].is_null()) << "which is of all cameras";
        EXPECT_GT(camera["framesPerSecond"].get<double>(), 50) << camera;
        EXPECT_EQ(set["cameras"][i]["folder"], folder);
        EXPECT_EQ(set["cameras"][i]["camera"]["serial"], "S/" + id);
        EXPECT_EQ(set["cameras"][i]["frames"]["recorded"], frames);
        EXPECT_EQ(set["cameras"][i]["frames"]["wanted"], frames);
        const Json own = JsonOf("run/" + folder + "/recording.json");
        EXPECT_TRUE(own["complete"]) << own;
        EXPECT_EQ(own["camera"]["id"], id);
        EXPECT_EQ(LinesOf("run/" + folder + "/frames.jsonl"), frames);
        ExpectRelatedTimes("run/" + folder);
    }
}

TEST_F(SeveralCameras, HaveALineEachAndASum) {
    UseCameras(2);
    const auto result = Grab({"A", "B"}, {"--frames", "5"});
    ExpectDone(result);
    EXPECT_EQ(result.output.find("camera 0 (Camera A, 0x"), 0u) << result.output;
    EXPECT_PRED2(Contains, result.output, "): 5 frames, 0 in error, ");
    EXPECT_PRED2(Contains, result.output, "\ncamera 1 (Camera B, 0x");
    EXPECT_PRED2(Contains, result.output, "\nframes      10\nerrors      0 received in error\n");
    EXPECT_PRED2(Contains, result.output, "= 10 taken + 0 lost + ");
    EXPECT_PRED2(Contains, result.output, "\nbuffers     16 announced = 16 revoked; ");
    EXPECT_PRED2(Contains, result.output, "\nstart       the first frames came within ");
}

TEST_F(SeveralCameras, EndWithThreeWhenFramesAreMissing) {
    UseCameras(2, Faults("frame incomplete 3,4"));
    const auto result = Grab({"A", "B"}, {"--frames", "10", "-o", PathOf("run"), "--format", "raw",
                                          "--buffers", "20", "--json"});
    ExpectFailure(result, 3,
                  {"2 of 2 cameras did not deliver all that was wanted",
                   "2 frames are missing from the recording: 2 incomplete"});
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["errors"], 4) << report;
    EXPECT_TRUE(report["account"]["closed"]) << report;
    for (const Json& camera : report["cameras"]) {
        EXPECT_EQ(camera["errors"], 2) << "of this camera alone " << camera;
        EXPECT_TRUE(camera["account"]["closed"]) << camera;
        EXPECT_FALSE(camera["problem"].is_null());
    }
    EXPECT_FALSE(JsonOf("run/recording.json")["complete"]);
    EXPECT_EQ(JsonOf("run/recording.json")["cameras"][1]["frames"]["missing"], 2);
}

TEST_F(SeveralCameras, GoOnWithoutOneThatIsGone) {
    UseCameras(2, Faults("unplug-at 10 B"));
    const auto result = Grab({"A", "B"}, {"--frames", "50", "-o", PathOf("run"), "--format",
                                          "stack", "--buffers", "100"});
    ExpectFailure(result, 1,
                  {"1 of 2 cameras did not deliver all that was wanted\n  camera 1 (Camera B, ",
                   "no more frames from camera 1 (Camera B, ", " after 10 frames: it is gone"});
    const Json set = JsonOf("run/recording.json");
    EXPECT_TRUE(set["cameras"][0]["complete"]) << set;
    EXPECT_EQ(set["cameras"][0]["frames"]["recorded"], 50) << set;
    EXPECT_FALSE(set["cameras"][1]["complete"]) << set;
    EXPECT_EQ(LinesOf("run/camera-S_B/frames.jsonl"), 10u);
}

TEST_F(SeveralCameras, WaitForOneThatComesBack) {
    UseCameras(2);
    const std::string script = directory.Write(
        "script", "unplug-at 10 B\nafter 700 plug B\nafter 5000 plug B\nafter 20000 plug B\n");
    const auto result = Mivora({"--sdk-script", script, "--camera", "A", "--camera", "B", "grab",
                                "--frames", "100", "--buffers", "100", "--reconnect", "-o",
                                PathOf("run"), "--format", "stack", "--json"});
    ExpectFailure(
        result, 3,
        {"1 of 2 cameras did not deliver all that was wanted", "1 gap of unknown length"});
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["cameras"][0]["reconnects"], 0) << report;
    EXPECT_EQ(report["cameras"][1]["reconnects"], 1) << report;
    EXPECT_EQ(report["frames"], 200) << report;
    EXPECT_TRUE(JsonOf("run/camera-S_A/recording.json")["complete"]);
}

TEST_F(SeveralCameras, AreTriggeredBySoftware) {
    UseCameras(2);
    const auto result = Grab({"A", "B"}, {"--frames", "10", "--set", "Camera/TriggerMode=On",
                                          "--trigger-every", "20", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 20) << report;
    EXPECT_EQ(report["errors"], 0) << report;
    ExpectFailure(Grab({"A", "B"}, {"--frames", "10", "--trigger-every", "20"}), 1,
                  {"Camera/TriggerSoftware", "camera 0 (Camera A, ", "camera 1 (Camera B, "});
    ExpectFailure(Grab({"A"}, {"--frames", "1", "--trigger-every", "20", "--start", "trigger"}), 2,
                  {"--trigger-every"});
}

TEST_F(SeveralCameras, ReplaceARecordingWithAllItsFolders) {
    UseCameras(2);
    const Arguments options{"--frames", "2", "-o", PathOf("run"), "--format", "raw"};
    ExpectDone(Grab({"A", "B"}, options));
    ExpectFailure(Grab({"A", "B"}, options), 1, {"holds a recording: name another one"});
    Arguments again = options;
    again.emplace_back("--overwrite");
    ExpectDone(Grab({"B"}, again));
    EXPECT_FALSE(platform::PathExists(PathOf("run/camera-S_A")));
    EXPECT_FALSE(platform::PathExists(PathOf("run/camera-S_B")));
    EXPECT_EQ(JsonOf("run/recording.json")["camera"]["id"], "B");
}

TEST_F(SeveralCameras, AreCheckedAndConvertedTogether) {
    UseCameras(2, Faults("frame incomplete 3"));
    ExpectFailure(Grab({"A", "B"}, {"--frames", "10", "-o", PathOf("run"), "--format", "stack",
                                    "--buffers", "40"}),
                  3, {"1 frame is missing from the recording: 1 incomplete"});
    const std::string reasons =
        "2 of 2 recordings are not complete\n"
        "  camera-S_A: 1 frame is missing from the recording: 1 incomplete\n"
        "  camera-S_B: 1 frame is missing from the recording: 1 incomplete\n";
    const auto checked = Mivora({"recording", "verify", PathOf("run")});
    EXPECT_EQ(checked.status, 3);
    EXPECT_EQ(checked.output, "20 frames recorded, 2 missing, 0 findings\n");
    EXPECT_EQ(checked.errors, "mivora: " + reasons);

    const auto shown = Mivora({"recording", "info", PathOf("run")});
    ExpectDone(shown);
    EXPECT_PRED2(Contains, shown.output, "folder      camera-S_A\ncamera      Korvane Camera A");
    EXPECT_PRED2(Contains, shown.output, "\ngap         incomplete: frame 4, id 3\n");
    EXPECT_PRED2(Contains, shown.output,
                 "\n\ncameras     2, started by software\n"
                 "frames      20 recorded, 2 missing\n"
                 "complete    no: 0 of 2 recordings are\n");
    const auto described = Mivora({"recording", "info", PathOf("run"), "--json"});
    ExpectDone(described);
    const Json report = Json::parse(described.output);
    EXPECT_EQ(report["schema"], 1);
    EXPECT_EQ(report["recorded"], 20);
    EXPECT_EQ(report["cameras"][1]["folder"], "camera-S_B");
    EXPECT_EQ(report["cameras"][1]["description"]["camera"]["id"], "B");
    EXPECT_EQ(report["cameras"][1]["missing"], 1);

    ExpectDone(
        Mivora({"recording", "convert", PathOf("run"), "--to", "tiff", "-o", PathOf("new")}));
    EXPECT_EQ(JsonOf("new/camera-S_B/recording.json")["format"], "tiff");
    directory.Write("new/camera-S_B/frame-000001.tiff", "");
    const auto damaged = Mivora({"recording", "verify", PathOf("new"), "--json"});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_EQ(damaged.errors, "");
    const Json findings = Json::parse(damaged.output);
    EXPECT_EQ(findings["findings"][0].get<std::string>().find("camera-S_B: frame 1: "), 0u)
        << findings;
    EXPECT_EQ(findings["recorded"], 20);
    EXPECT_EQ(findings["cameras"][0]["missing"], 1);
    directory.Write("new/camera-S_B/frames.jsonl", "{}\n");
    const auto unread = Mivora({"recording", "info", PathOf("new")});
    ExpectFailure(unread, 1, {"1 of 2 recordings cannot be read", "frames.jsonl:1"});
    EXPECT_PRED2(Contains, unread.output, "folder      camera-S_A\n");
    EXPECT_PRED2(Contains, unread.output, "\nproblem     ");
    ExpectFailure(
        Mivora({"recording", "export", PathOf("run"), "-o", PathOf("video.mkv")}), 1,
        {"has the recordings of 2 cameras, and a video is of one: name the folder of each",
         "  mivora recording export ", "camera-S_B -o camera-S_B.mkv"});
}

TEST_F(SeveralCameras, AreRefusedWhereTheyMakeNoSense) {
    UseCameras(2);
    ExpectFailure(Grab({"A", "0"}, {"--frames", "1"}), 1,
                  {"camera 0 (Camera A, ", ") is named twice"});
    ExpectFailure(Grab({"A", "C"}, {"--frames", "1"}), 1, {"there is no camera \"C\""});
    ExpectFailure(Grab({"A", "B"}, {"--frames", "1", "-o", "-"}), 2,
                  {"standard output takes the frames of one camera, not of 2"});
    ExpectFailure(Grab({"A"}, {"--frames", "1", "--start", "software"}), 2, {"--start: "});
    ExpectFailure(Grab({"A", "B"}, {"--frames", "1", "--start", "trigger"}), 1,
                  {"camera 0 (Camera A, ", " waits for no trigger"});
    ExpectFailure(Mivora({"--camera", "A", "--camera", "B", "info"}), 2,
                  {"--camera: this command takes one camera, not 2"});
    ExpectFailure(Tool({"--camera", "A", "--camera", "B", "sdk-check"}), 2, {"--camera"});
}

} // namespace
} // namespace scenario
