// kept_recordings_test.cpp - recordings that are checked, converted and played as a camera
#include "tests/scenario/program_test.h"

#include <sstream>

namespace scenario {
namespace {

constexpr const char* kPlayedFrames = "12";
// No buffer is filled twice, however slow the machine is.
constexpr const char* kManyBuffers = "40";

class KeptRecordings : public ProgramTest {
protected:
    support::ProgramResult Record(const std::string& name, const std::string& format,
                                  const Arguments& before = {}) const {
        Arguments all = before;
        for (const std::string& argument :
             {std::string("grab"), std::string("--frames"), std::string(kPlayedFrames),
              std::string("--buffers"), std::string(kManyBuffers), std::string("--format"), format,
              std::string("-o"), PathOf(name)}) {
            all.push_back(argument);
        }
        return Mivora(all);
    }
    Arguments Playing(const std::string& name) const {
        return {"--sdk", "recording:" + PathOf(name), "--as-fast-as-possible"};
    }
    support::ProgramResult Recording(const Arguments& arguments) const {
        Arguments all{"recording"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return Mivora(all);
    }
    void Convert(const std::string& from, const std::string& format, const std::string& to) const {
        ExpectDone(Recording({"convert", PathOf(from), "--to", format, "-o", PathOf(to)}));
    }
    Json Description(const std::string& name) const {
        return Json::parse(directory.Read(name + "/recording.json"));
    }
    /// Expects that a command that works on files alone takes no option about cameras.
    static void ExpectRefusedOptions(const std::string& program, const Arguments& command) {
        for (const Arguments& option :
             {Arguments{"--sdk", "simulator"},
              Arguments{"--sdk", "recording:a", "--as-fast-as-possible"},
              Arguments{"--sdk-script", "a"}, Arguments{"--trace-sdk", "a"},
              Arguments{"--module", "a"}, Arguments{"--config", "a.ini"}, Arguments{"--log", "-"},
              Arguments{"--camera", "0"}}) {
            Arguments all = option;
            all.insert(all.end(), command.begin(), command.end());
            ExpectFailure(support::RunProgram(program, all), 2, {"excludes --"});
        }
    }
    /// Number, id, time and status of each frame, and whether it was kept.
    std::vector<Json> Lines(const std::string& name) const {
        std::vector<Json> lines;
        std::istringstream text(directory.Read(name + "/frames.jsonl"));
        for (std::string line; std::getline(text, line);) {
            const Json frame = Json::parse(line);
            lines.push_back({frame["n"], frame["frameId"], frame["timestampNs"], frame["status"],
                             frame["file"].is_null()});
        }
        return lines;
    }
};

TEST_F(KeptRecordings, AreTheSameAfterConvertingAndPlaying) {
    struct Way {
        const char* pixelFormat;
        const char* recorded;
        const char* converted;
    };
    for (const Way& way : {Way{"Mono12p", "png", "tiff"}, Way{"BayerGB8", "pnm", "multi-tiff"},
                           Way{"BGRa12", "stack", "png"}}) {
        SCOPED_TRACE(way.pixelFormat);
        UseCamera(Format(way.pixelFormat));
        const std::string name = way.pixelFormat;
        ExpectDone(Record(name, way.recorded));
        ExpectDone(Recording({"verify", PathOf(name)}));
        Convert(name, way.converted, name + "-converted");
        ExpectDone(Recording({"verify", PathOf(name + "-converted")}));
        ExpectDone(Record(name + "-again", "stack", Playing(name + "-converted")));
        ExpectDone(Recording({"verify", PathOf(name + "-again")}));
        EXPECT_EQ(Lines(name + "-again"), Lines(name));
        if (way.recorded != std::string("stack")) {
            Convert(name, "stack", name + "-stack");
        }
        const std::string stack = directory.Read(
            (way.recorded == std::string("stack") ? name : name + "-stack") + "/frames.stack");
        const Json layout = Description(name)["layout"];
        const std::size_t imageBytes = layout["width"].get<std::size_t>() *
                                       layout["height"].get<std::size_t>() *
                                       layout["components"].get<std::size_t>() *
                                       (layout["allocatedBits"].get<std::size_t>() / 8);
        EXPECT_EQ(stack.size(), 12 * imageBytes);
        EXPECT_TRUE(directory.Read(name + "-again/frames.stack") == stack);
        const Json first = Description(name);
        const Json again = Description(name + "-again");
        for (const char* const same :
             {"camera", "layout", "offsetX", "offsetY", "exposureUs", "frameRate"}) {
            EXPECT_EQ(again[same], first[same]) << same;
        }
    }
}

TEST_F(KeptRecordings, ArePlayedNoFasterThanTheyAreTaken) {
    // The simulator's own camera: the queue of a megabyte holds three of its images.
    ExpectDone(Record("first", "stack"));
    for (const char* const buffers : {"2", "3"}) {
        const std::string name = std::string("again-") + buffers;
        Arguments all = Playing("first");
        for (const std::string& argument :
             {std::string("grab"), std::string("--frames"), std::string(kPlayedFrames),
              std::string("--buffers"), std::string(buffers), std::string("--format"),
              std::string("png"), std::string("--png-level"), std::string("9"),
              std::string("--queue"), std::string("1"), std::string("-o"), PathOf(name)}) {
            all.push_back(argument);
        }
        ExpectDone(Mivora(all));
        EXPECT_EQ(Lines(name), Lines("first"));
    }
    Arguments more = Playing("first");
    for (const char* const argument : {"grab", "--frames", "13", "--timeout", "300"}) {
        more.emplace_back(argument);
    }
    ExpectFailure(Mivora(more), 1, {"after 12 frames: the recording that is played has ended; "});
}

TEST_F(KeptRecordings, KeepTheirGaps) {
    UseCamera();
    const std::string script = directory.Write("faults.txt", "frame incomplete 3\n");
    const auto recorded = Record("first", "stack", {"--sdk-script", script});
    EXPECT_EQ(recorded.status, 3) << recorded.errors;
    const auto checked = Recording({"verify", PathOf("first")});
    EXPECT_EQ(checked.status, 3) << checked.output;
    const std::string sentence = Description("first")["reason"];
    EXPECT_NE(sentence, "");
    EXPECT_PRED2(Contains, recorded.errors, sentence);
    EXPECT_EQ(checked.errors, "mivora: " + sentence + "\n");
    EXPECT_PRED2(Contains, checked.output, " 0 findings\n");

    const auto played = Record("again", "png", Playing("first"));
    EXPECT_EQ(played.status, 3) << played.errors;
    EXPECT_EQ(Lines("again"), Lines("first"));
    const auto info = Recording({"info", PathOf("first"), "--json"});
    ExpectDone(info);
    const Json report = Json::parse(info.output);
    EXPECT_EQ(report["schema"], 1);
    EXPECT_EQ(report["recorded"], 12);
    ASSERT_FALSE(report["gaps"].empty());
    EXPECT_EQ(report["gaps"][0]["status"], "incomplete");
    EXPECT_EQ(report["complete"], false);
    const auto shown = Recording({"info", PathOf("first")});
    ExpectDone(shown);
    EXPECT_PRED2(Contains, shown.output, "gap         incomplete: frame");
    EXPECT_PRED2(Contains, shown.output, "complete    no: " + sentence);
}

TEST_F(KeptRecordings, ReportWhatIsDamaged) {
    UseCamera();
    ExpectDone(Record("first", "png"));
    directory.Write("first/frame-000002.png", "no PNG");
    directory.Write("first/frame-000013.png", "");
    const auto checked = Recording({"verify", PathOf("first"), "--json"});
    EXPECT_EQ(checked.status, 1);
    EXPECT_EQ(checked.errors, "");
    const Json report = Json::parse(checked.output);
    ASSERT_EQ(report["findings"].size(), 3u) << report;
    EXPECT_PRED2(Contains, report["findings"][0].get<std::string>(), "frame 2: ");
    EXPECT_PRED2(Contains, report["findings"][2].get<std::string>(), "frame-000013.png");
    const auto printed = Recording({"verify", PathOf("first")});
    EXPECT_EQ(printed.status, 1);
    EXPECT_PRED2(Contains, printed.output, "12 frames recorded, 0 missing, 3 findings\n");
    ExpectFailure(Recording({"convert", PathOf("first"), "--to", "stack", "-o", PathOf("new")}), 1,
                  {"frame-000002.png", "it is no PNG file"});
    directory.Write("first/frames.jsonl", "{}\n");
    ExpectFailure(Recording({"info", PathOf("first")}), 1, {"frames.jsonl:1", "\"n\" is missing"});
    ExpectFailure(Mivora({"--sdk", "recording:" + PathOf("first"), "cameras"}), 1,
                  {"frames.jsonl:1", "Init failed"});
}

TEST_F(KeptRecordings, AreRefusedWithOptionsThatHaveNoEffect) {
    UseCamera();
    ExpectFailure(Mivora({"--as-fast-as-possible", "cameras"}), 2, {"--sdk"});
    ExpectFailure(Mivora({"--sdk", "simulator", "--as-fast-as-possible", "cameras"}), 2,
                  {"--sdk recording:DIR only"});
    for (const Arguments& command :
         {Arguments{"recording", "verify", "a"}, Arguments{"settings", "show", "a"}}) {
        ExpectRefusedOptions("mivora", command);
    }
    for (const Arguments& command :
         {Arguments{"formats"}, Arguments{"camera-key", "a"}, Arguments{"sync-check", "a"},
          Arguments{"trace", "a"}, Arguments{"trace", "diff", "a", "b"},
          Arguments{"convert", "--format", "Mono8", "--width", "1", "--height", "1", "a",
                    "b.png"}}) {
        ExpectRefusedOptions("pyxen-tool", command);
    }
    ExpectFailure(Recording({"convert", "a", "--to", "tiff", "-o", "b", "--png-level", "3"}), 2,
                  {"--png-level"});
    ExpectFailure(Recording({"convert", "a", "--to", "png", "-o", "b", "--deflate"}), 2,
                  {"--deflate"});
    ExpectFailure(Recording({"convert", "a", "--to", "jpeg", "-o", "b"}), 2, {"jpeg"});
    ExpectFailure(Recording({"export", "a", "-o", "b.mov"}), 2, {".mp4 .mkv or .avi"});
    ExpectFailure(Recording({}), 2, {});
}

} // namespace
} // namespace scenario
