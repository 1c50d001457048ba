// recording_check_test.cpp - tests of comparing a recording's index with its files
#include "apps/recording/recording_check.h"

#include "apps/recording/frame_store.h"
#include "tests/support/written_recording_set.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

namespace {

using Findings = std::vector<std::string>;

class RecordingCheck : public testing::Test {
protected:
    RecordingCheck() {
        for (int frame = 0; frame < 3; ++frame) {
            recording.Add();
        }
        recording.description.frames.wanted = 3;
    }
    Findings Check() {
        const std::string path = recording.Write(directory);
        return CheckRecording(path, ReadRecordingIndex(path));
    }
    /// The same with one file for each frame.
    Findings CheckFiles(const std::function<void(const std::string& path)>& damage) {
        FrameStoreOptions options;
        options.format = "pnm";
        recording.description.format = "pnm";
        const auto store = MakeFrameStore(options, directory.Path());
        for (FrameLine& line : recording.lines) {
            const std::string image = recording.Image(line.n);
            EncodedFrame frame;
            store->Encode(line.layout, image.data(), frame);
            const StoredFrame stored = store->Append(line.n, line.layout, frame);
            line.file = stored.file;
            line.offset = 0;
            line.bytes = stored.bytes;
        }
        const std::string path = recording.Write(directory);
        std::remove(directory.PathOf("frames.stack").c_str());
        damage(path);
        return CheckRecording(path, ReadRecordingIndex(path));
    }

    support::TemporaryDirectory directory;
    support::WrittenRecording recording;
};

TEST_F(RecordingCheck, FindsNothingInAWholeRecording) {
    EXPECT_EQ(Check(), Findings());
    recording.AddMissing(FrameStatus::kLost);
    recording.AddMissing(FrameStatus::kIncomplete);
    recording.Add(FrameStatus::kIncomplete);
    EXPECT_EQ(Check(), Findings()) << "what is missing is said to be";
}

TEST_F(RecordingCheck, FindsNumbersThatDoNotFollow) {
    recording.lines[1].n = 3;
    EXPECT_EQ(Check(), (Findings{"line 2 of the index is of frame 3"}));
}

TEST_F(RecordingCheck, FindsStatusesThatDoNotFit) {
    recording.lines[1].status = FrameStatus::kLost;
    EXPECT_EQ(Check(), (Findings{"frame 2: it is lost and has a file"}));
    recording.lines[1].status = FrameStatus::kComplete;
    recording.lines[2].file.clear();
    const Findings findings = Check();
    ASSERT_EQ(findings.size(), 4u);
    EXPECT_EQ(findings[0], "frame 3: it is complete and has no file");
    EXPECT_EQ(findings[1], "frames.stack has 96 bytes, the index says 64");
    EXPECT_EQ(findings[2],
              "the description counts 3 recorded and 0 missing frames, the index 2 and 1");
    EXPECT_EQ(findings[3],
              "the description says that the recording is complete, the index does not");
}

TEST_F(RecordingCheck, FindsPlacesThatDoNotFollow) {
    recording.lines[1].offset = 31;
    const Findings findings = Check();
    EXPECT_EQ(findings,
              (Findings{"frame 2: it is said to begin at byte 31 of frames.stack, not at 32",
                        "frame 3: it is said to begin at byte 64 of frames.stack, not at 63"}));
    recording.lines[1].offset = 32;
    recording.lines[2].bytes = 33;
    EXPECT_EQ(Check(), (Findings{"frame 3: it is said to have 33 bytes, not the 32 of its image",
                                 "frames.stack has 96 bytes, the index says 97"}));
}

TEST_F(RecordingCheck, FindsAStackOfAnotherLength) {
    recording.stack += "x";
    EXPECT_EQ(Check(), (Findings{"frames.stack has 97 bytes, the index says 96"}));
    recording.stack.resize(95);
    const Findings findings = Check();
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0], "frame 3: " + directory.PathOf("frames.stack") +
                               ": it ends at byte 95, the frame at 64 has 32 bytes");
    EXPECT_EQ(findings[1], "frames.stack has 95 bytes, the index says 96");
}

TEST_F(RecordingCheck, FindsAccountsThatDoNotAgree) {
    recording.description.frames.recorded = 2;
    recording.description.frames.missing = 1;
    EXPECT_EQ(Check(), (Findings{"the description counts 2 recorded and 1 missing frames, the "
                                 "index 3 and 0"}));
    recording.description.frames = {4, 3, 0};
    EXPECT_EQ(Check(), (Findings{"the description says that the recording is complete, the index "
                                 "does not"}));
    recording.description.frames.wanted.reset();
    EXPECT_EQ(Check(), Findings());
}

TEST_F(RecordingCheck, FindsAnIndexThatIsCutOff) {
    const std::string path = recording.Write(directory);
    directory.Write("frames.jsonl", recording.IndexText() + "{\"n\":4,");
    EXPECT_EQ(CheckRecording(path, ReadRecordingIndex(path)),
              (Findings{"the last line of the index is cut off"}));
}

TEST_F(RecordingCheck, FindsFilesThatAreMissingDamagedOrTooMany) {
    EXPECT_EQ(CheckFiles([](const std::string&) {}), Findings());
    EXPECT_EQ(CheckFiles([this](const std::string&) {
                  std::remove(directory.PathOf("frame-000002.pgm").c_str());
              }).size(),
              1u);
    EXPECT_EQ(CheckFiles([this](const std::string&) {
                  directory.Write("frame-000002.pgm", "P5\n8 4\n255\n");
              }),
              (Findings{"frame 2: " + directory.PathOf("frame-000002.pgm") +
                            ": it has 0 bytes of samples, not 32",
                        "frame-000002.pgm has 11 bytes, the index says 43"}));
    EXPECT_EQ(CheckFiles([this](const std::string&) {
                  directory.Write("frame-000004.pgm", "");
                  directory.Write("frame-000005.png.12.tmp", "");
                  directory.Write("notes.txt", "");
              }),
              (Findings{"frame-000004.pgm is named by no line of the index",
                        "frame-000005.png.12.tmp is named by no line of the index"}));
}

TEST_F(RecordingCheck, FindsAFileOfTwoFrames) {
    const Findings findings = CheckFiles([this](const std::string&) {
        recording.lines[2].file = recording.lines[1].file;
        directory.Write("frames.jsonl", recording.IndexText());
    });
    EXPECT_EQ(findings, (Findings{"frame 3: frame-000002.pgm is the file of another frame as well",
                                  "frame-000003.pgm is named by no line of the index"}));
}

class RecordingSetCheck : public testing::Test {
protected:
    Findings Check() {
        written.Write(directory);
        return CheckAgain();
    }
    Findings CheckAgain() {
        const std::optional<RecordingSet> set = ReadRecordingSet(directory.Path());
        return CheckRecordingSet(directory.Path(), *set,
                                 ReadRecordingParts(directory.Path(), *set));
    }

    support::TemporaryDirectory directory;
    support::WrittenRecordingSet written;
};

TEST_F(RecordingSetCheck, FindsNothingInWholeRecordings) {
    EXPECT_EQ(Check(), Findings());
    written.recordings[1].AddMissing(FrameStatus::kLost);
    written.set.recordings[1].frames = written.recordings[1].description.frames;
    written.set.recordings[1].complete = false;
    EXPECT_EQ(Check(), Findings()) << "what is missing is said to be";
}

TEST_F(RecordingSetCheck, FindsWhatIsWrongInAFolder) {
    written.recordings[0].lines[1].n = 3;
    EXPECT_EQ(Check(), (Findings{"camera-A: line 2 of the index is of frame 3"}));
    std::remove(directory.PathOf("camera-B/frames.jsonl").c_str());
    const Findings findings = CheckAgain();
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[1].find("camera-B: "), 0u) << findings[1];
}

TEST_F(RecordingSetCheck, FindsCountsThatDiffer) {
    written.recordings[1].AddMissing(FrameStatus::kLost);
    EXPECT_EQ(Check(), (Findings{"camera-B: the description beside the folders says 2 recorded and "
                                 "0 missing frames, complete, that of the folder 2 recorded and 1 "
                                 "missing frames"}));
}

TEST_F(RecordingSetCheck, FindsFoldersThatAreNotNamed) {
    written.Write(directory);
    written.recordings[0].WriteTo(directory, "camera-C/");
    directory.Write("camera-notes/notes.txt", "");
    EXPECT_EQ(CheckAgain(), (Findings{"camera-C is named by no line of recording.json"}));
}

} // namespace
