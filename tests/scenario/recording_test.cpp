// recording_test.cpp - recordings whose index, files and account agree
//
// The recordings have MIVORA_RECORDED_FRAMES frames, 300 without it.
#include "platform/environment.h"
#include "tests/scenario/program_test.h"

#include <filesystem>
#include <map>
#include <set>
#include <sstream>

namespace scenario {
namespace {

constexpr std::size_t kImageBytes = 64 * 48;

class Recordings : public ProgramTest {
protected:
    static std::string FrameCount() {
        const std::string wanted = platform::GetEnvironment("MIVORA_RECORDED_FRAMES");
        return wanted.empty() ? "300" : wanted;
    }
    void UseFastCamera(const std::string& faults = {}) {
        UseCamera("<feature name=\"AcquisitionFrameRate\" value=\"500\"/>\n",
                  faults.empty() ? "" : Faults(faults));
    }
    support::ProgramResult Record(const Arguments& options) const {
        Arguments all{"grab", "-o", PathOf("images"), "--json"};
        all.insert(all.end(), options.begin(), options.end());
        return Mivora(all);
    }
    std::vector<Json> Lines() const {
        std::vector<Json> lines;
        std::istringstream text(directory.Read("images/frames.jsonl"));
        for (std::string line; std::getline(text, line);) {
            lines.push_back(Json::parse(line));
        }
        return lines;
    }
    std::set<std::string> Files() const {
        std::set<std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(PathOf("images"))) {
            files.insert(entry.path().filename().string());
        }
        return files;
    }
    Json Description() const { return Json::parse(directory.Read("images/recording.json")); }

    /// The bytes of a recorded frame.
    std::string ImageOf(const Json& line) const {
        const std::string name = "images/" + line["file"].get<std::string>();
        const auto found = contents.find(name);
        const std::string& whole = found != contents.end()
                                       ? found->second
                                       : contents.emplace(name, directory.Read(name)).first->second;
        return whole.substr(line["offset"].get<std::size_t>(), line["bytes"].get<std::size_t>());
    }
    /// Compares index, files, description and report with one another. The camera numbers its
    /// frames without a gap, and each is one step brighter than the one before.
    void ExpectAgreement(const support::ProgramResult& result, bool isRaw) {
        ExpectRecorded(result);
        const Json report = Json::parse(result.output);
        const std::vector<Json> lines = Lines();
        ASSERT_FALSE(lines.empty());
        std::map<std::string, unsigned> statuses;
        std::set<std::string> files{"recording.json", "frames.jsonl"};
        const auto firstId = lines[0]["frameId"].get<unsigned>();
        int brightness = -1;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const Json& line = lines[i];
            ++statuses[line["status"].get<std::string>()];
            ASSERT_EQ(line["n"], i + 1) << line;
            ASSERT_EQ(line["frameId"], firstId + i) << line;
            ASSERT_EQ(line["status"] == "complete", !line["file"].is_null()) << line;
            ASSERT_EQ(line["status"] == "dropped", line["timestampNs"].is_null()) << line;
            if (line["file"].is_null()) {
                continue;
            }
            files.insert(line["file"].get<std::string>());
            if (isRaw) {
                const std::string image = ImageOf(line);
                ASSERT_EQ(image.size(), kImageBytes) << line;
                const int step = (static_cast<unsigned char>(image[0]) - static_cast<int>(i)) & 255;
                ASSERT_TRUE(brightness < 0 || step == brightness) << "another frame than " << line;
                brightness = step;
            }
        }
        EXPECT_EQ(Files(), files);
        const Json& recording = report["recording"];
        EXPECT_EQ(recording["recorded"], statuses["complete"]) << report;
        for (const char* const status : {"dropped", "incomplete", "lost", "damaged"}) {
            EXPECT_EQ(recording[status], statuses[status]) << report;
        }
        EXPECT_EQ(recording["missing"], lines.size() - statuses["complete"]) << report;
        const Json& account = report["account"];
        EXPECT_TRUE(account["closed"]) << report;
        EXPECT_EQ(account["written"], statuses["complete"]) << report;
        // Frames that came after the last recorded one are in the account alone.
        EXPECT_GE(account["incomplete"], statuses["incomplete"]) << report;
        EXPECT_GE(account["sdk"]["dropped"], statuses["dropped"]) << report;
        EXPECT_EQ(account["damaged"], statuses["damaged"]) << report;
        const Json description = Description();
        EXPECT_EQ(description["frames"]["recorded"], statuses["complete"]);
        EXPECT_EQ(description["frames"]["missing"], recording["missing"]);
        EXPECT_EQ(description["complete"], result.status == 0);
        EXPECT_EQ(description["reason"].is_null(), result.status == 0);
    }

private:
    mutable std::map<std::string, std::string> contents;
};

TEST_F(Recordings, HaveALineForEachFrame) {
    UseFastCamera();
    const auto result = Record({"--frames", FrameCount(), "--format", "raw", "--buffers", "100"});
    ExpectAgreement(result, true);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(std::to_string(Lines().size()), FrameCount());
    const Json description = Description();
    EXPECT_EQ(description["schema"], 1);
    EXPECT_EQ(description["camera"]["vendor"], "Korvane");
    EXPECT_EQ(description["camera"]["model"], "Camera A");
    EXPECT_EQ(description["camera"]["id"], "A");
    EXPECT_EQ(description["camera"]["extendedId"], "Eth0|A");
    EXPECT_EQ(description["sdk"]["version"], "1.4.0");
    EXPECT_EQ(description["pixelFormat"], "Mono8");
    EXPECT_EQ(description["layout"]["width"], 64);
    EXPECT_EQ(description["exposureUs"], 1000);
    EXPECT_EQ(description["frameRate"], 500);
    EXPECT_EQ(description["format"], "raw");
    // Both clocks count nanoseconds.
    const std::vector<Json> lines = Lines();
    for (const char* const clock : {"timestampNs", "hostNs"}) {
        const auto span =
            lines.back()[clock].get<std::uint64_t>() - lines.front()[clock].get<std::uint64_t>();
        EXPECT_NEAR(static_cast<double>(span) / 1e6 / static_cast<double>(lines.size() - 1), 2.0,
                    1.0)
            << clock;
    }
}

TEST_F(Recordings, AgreeWithSeededLosses) {
    const std::pair<const char*, const char*> runs[] = {
        {"raw", "frame-random 7 5 drop\nframe incomplete 20,21,50\nframe small 40"},
        {"stack", "frame-random 8 5 incomplete\nframe drop 10,50,51,52"}};
    for (const auto& [format, faults] : runs) {
        UseFastCamera(faults);
        const auto result = Record(
            {"--frames", FrameCount(), "--format", format, "--buffers", "100", "--overwrite"});
        ExpectAgreement(result, true);
        const Json recording = Json::parse(result.output)["recording"];
        EXPECT_EQ(result.status, 3) << result.errors;
        EXPECT_GT(recording["dropped"], 3) << recording;
        EXPECT_GT(recording["incomplete"], 1) << recording;
        ExpectFailure(result, 3,
                      {recording["missing"].dump() + " frames are missing from the recording: " +
                       recording["dropped"].dump() + " dropped by the camera or its SDK, " +
                       recording["incomplete"].dump() + " incomplete"});
    }
}

TEST_F(Recordings, AgreeWhenTheProgramIsTooSlow) {
    // Without a pause between frames, and with so few buffers that many are overwritten.
    UseCamera("<feature name=\"SimulatorFreeRunning\" value=\"true\"/>\n");
    ExpectAgreement(Record({"--frames", FrameCount(), "--format", "stack", "--buffers", "3"}),
                    true);
}

TEST_F(Recordings, SayWhatAFullQueueDid) {
    // An image is larger than the queue, so that each frame waits for the one before.
    // Slow enough for the frames to be taken before the camera comes round to their buffers again.
    directory.Write("PxnC.xml", "<PxnC><camera id=\"A\" pattern=\"noise\">"
                                "<feature name=\"ExposureTime\" value=\"100\"/>"
                                "<feature name=\"AcquisitionFrameRate\" value=\"250\"/>"
                                "</camera></PxnC>");
    const auto dropped =
        Record({"--frames", "30", "--png-level", "9", "--queue", "1", "--buffers", "50"});
    ExpectAgreement(dropped, false);
    ExpectFailure(dropped, 3, {"lost because this program was too slow"});
    const auto stopped = Record({"--frames", "30", "--png-level", "9", "--queue", "1", "--buffers",
                                 "50", "--when-full", "stop", "--overwrite"});
    const Json report = Json::parse(stopped.output);
    EXPECT_LT(report["recording"]["recorded"], 30) << report;
    EXPECT_EQ(Lines().size(), report["recording"]["recorded"].get<std::size_t>() +
                                  report["recording"]["missing"].get<std::size_t>());
    ExpectFailure(stopped, 3,
                  {"the recording ended with its queue of 1 MB full: ", " of 30 frames are "
                                                                        "recorded"});
    EXPECT_FALSE(Description()["complete"]);
}

TEST_F(Recordings, AreNotReplacedUnasked) {
    UseCamera();
    ExpectDone(Record({"--frames", "3"}));
    const std::string index = directory.Read("images/frames.jsonl");
    directory.Write("images/notes.txt", "");
    ExpectFailure(Record({"--frames", "2"}), 1,
                  {"holds a recording: name another one, or replace it with --overwrite"});
    EXPECT_EQ(directory.Read("images/frames.jsonl"), index);
    ExpectDone(Record({"--frames", "2", "--format", "raw", "--overwrite"}));
    EXPECT_EQ(Files(), (std::set<std::string>{"recording.json", "frames.jsonl", "notes.txt",
                                              "frame-000001.raw", "frame-000002.raw"}));
}

TEST_F(Recordings, GoOnWithAGapWhenTheCameraIsBack) {
    UseCamera();
    const std::string script = directory.Write("script", "unplug-at 10\nafter 700 plug A\n");
    const auto result = Mivora({"--sdk-script", script, "grab", "--frames", "20", "--format",
                                "stack", "-o", PathOf("images"), "--reconnect"});
    ExpectFailure(result, 3,
                  {"at least 1 frame is missing from the recording: 1 gap of unknown length"});
    const std::vector<Json> lines = Lines();
    ASSERT_EQ(lines.size(), 21u);
    EXPECT_EQ(lines[10]["status"], "dropped");
    EXPECT_EQ(lines[10]["note"], "the camera was away");
    EXPECT_TRUE(lines[10]["frameId"].is_null());
}

TEST_F(Recordings, GoToStandardOutput) {
    UseCamera();
    const auto raw = Mivora({"grab", "--frames", "5", "-o", "-", "--json"});
    EXPECT_EQ(raw.status, 0) << raw.errors;
    EXPECT_EQ(raw.output.size(), 5 * kImageBytes);
    EXPECT_EQ(Json::parse(raw.errors)["recording"]["recorded"], 5) << raw.errors;
    const auto pnm = Mivora({"grab", "--frames", "2", "-o", "-", "--format", "pnm"});
    const std::string header = "P5\n64 48\n255\n";
    EXPECT_EQ(pnm.output.size(), 2 * (header.size() + kImageBytes));
    EXPECT_EQ(pnm.output.substr(header.size() + kImageBytes, header.size()), header);
    EXPECT_PRED2(Contains, pnm.errors, "recording   2 frames recorded, 0 missing\n");
}

TEST_F(Recordings, AreKeptAsTiffFiles) {
    UseCamera(Format("Mono12p"));
    for (const Arguments& options :
         {Arguments{"--format", "tiff"}, Arguments{"--format", "multi-tiff", "--deflate"}}) {
        Arguments all{"--frames", "5", "--overwrite", "--buffers", "20"};
        all.insert(all.end(), options.begin(), options.end());
        const auto result = Record(all);
        ExpectAgreement(result, false);
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(Files().size(), options.size() == 2 ? 7u : 3u);
        EXPECT_EQ(Description()["layout"]["bits"], 12);
    }
}

TEST_F(Recordings, OfOneFrameGoToStandardOutputInAnyFormat) {
    UseCamera();
    for (const auto& [format, begin] : std::initializer_list<std::pair<const char*, const char*>>{
             {"png", "\x89PNG"}, {"tiff", "II*"}, {"pgm", "P5\n"}, {"ppm", "P6\n"}}) {
        const auto result = Mivora({"snap", "-o", "-", "--format", format});
        ExpectDone(result);
        EXPECT_EQ(result.output.find(begin), 0u) << format;
    }
    const auto raw = Mivora({"snap", "-o", "-", "--format", "raw", "--json"});
    EXPECT_EQ(raw.status, 0);
    EXPECT_EQ(raw.output.size(), kImageBytes);
    EXPECT_EQ(Json::parse(raw.errors)["width"], 64);
    EXPECT_EQ(Mivora({"snap", "-o", "-"}).output.substr(1, 3), "PNG");
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.png"), "--format", "png"}), 2,
                  {"--format: the ending of ", " says the format"});
}

TEST_F(Recordings, ShowTheirProgress) {
    UseCamera("<feature name=\"AcquisitionFrameRate\" value=\"20\"/>\n");
    const auto result = Record({"--frames", "25", "--progress"});
    EXPECT_EQ(result.status, 0);
    EXPECT_PRED2(Contains, result.errors, "mivora: taken 2");
    EXPECT_PRED2(Contains, result.errors, " of 25, lost 0, written ");
    EXPECT_PRED2(Contains, result.errors, " MB/s\n");
}

TEST_F(Recordings, RefuseOptionsWithoutEffect) {
    UseCamera();
    for (const Arguments& options :
         {Arguments{"--format", "png"}, Arguments{"--png-level", "1"}, Arguments{"--overwrite"},
          Arguments{"--deflate"}, Arguments{"--queue", "5"}, Arguments{"--when-full", "stop"}}) {
        Arguments all{"grab", "--frames", "1"};
        all.insert(all.end(), options.begin(), options.end());
        ExpectFailure(Mivora(all), 2, {options[0] + " requires"});
    }
    ExpectFailure(Record({"--frames", "1", "--png-level", "10"}), 2, {"is no level from 0 to 9"});
    ExpectFailure(Record({"--frames", "1", "--png-level", "1", "--format", "raw"}), 2,
                  {"--png-level: the format is raw, not png"});
    ExpectFailure(Record({"--frames", "1", "--deflate"}), 2, {"--deflate: the format is png"});
    ExpectFailure(Record({"--frames", "1", "--queue", "0"}), 2, {"is no number from 1 on"});
    ExpectFailure(Mivora({"grab", "--frames", "1", "-o", "-", "--format", "png"}), 2,
                  {"on standard output frames are raw or pnm, not png"});
    EXPECT_FALSE(platform::PathExists(PathOf("images")));
}

TEST_F(Recordings, HaveNoPercentilesWithoutFrames) {
    UseCamera("<feature name=\"TriggerMode\" value=\"On\"/>\n");
    const auto result = Record({"--frames", "5", "--timeout", "300"});
    EXPECT_EQ(result.status, 1);
    const Json report = Json::parse(result.output);
    for (const char* const times :
         {"latencyMicroseconds", "handOverMicroseconds", "intervalMicroseconds"}) {
        EXPECT_TRUE(report[times].is_null()) << report;
    }
    EXPECT_EQ(report["framesPerSecond"], 0);
    EXPECT_FALSE(Description()["complete"]);
    EXPECT_EQ(Description()["reason"], "no more frames came after 0 of 5 frames");
    EXPECT_TRUE(Lines().empty());
}

} // namespace
} // namespace scenario
