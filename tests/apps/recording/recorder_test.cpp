// recorder_test.cpp - tests of recording frames
#include "apps/recording/recorder.h"

#include "apps/common/command_failure.h"
#include "apps/recording/recording_index.h"
#include "platform/event.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

namespace {

const ImageLayout kFour{2, 2, 1, 8, 8, MVCC_MONO, 0, 0};

/// What a store of a test was asked to do. Outlives the store, which the recorder owns.
struct StoreRecord {
    platform::Event mayEncode;
    platform::Event mayAppend;
    std::atomic<int> encoding{0};
    std::vector<std::uint64_t> numbers; // of the writer
    std::string bytes;
    std::set<std::thread::id> writers;
    std::uint64_t fullAt = 0;   // the number that cannot be written
    std::uint64_t brokenAt = 0; // the first byte of the image that cannot be encoded
    bool isCopied = false;
    bool isFinished = false;
};

class FakeStore : public FrameStore {
public:
    explicit FakeStore(StoreRecord& storeRecord) : record(storeRecord) {}

    void Encode(const ImageLayout& layout, const void* image, EncodedFrame& result) const override {
        ++record.encoding;
        record.mayEncode.Wait(platform::kInfinite);
        const auto* const pixels = static_cast<const std::uint8_t*>(image);
        if (record.brokenAt != 0 && pixels[0] == record.brokenAt) {
            throw CommandFailure("cannot encode this");
        }
        const auto size = static_cast<std::size_t>(layout.Size());
        result.pixelBytes = size;
        result.pixels = pixels;
        if (record.isCopied) {
            result.body.assign(pixels, pixels + size);
            result.pixels = result.body.data();
        }
    }
    StoredFrame Append(std::uint64_t number, const ImageLayout&,
                       const EncodedFrame& frame) override {
        record.mayAppend.Wait(platform::kInfinite);
        if (number == record.fullAt) {
            throw CommandFailure("cannot write it: the disk is full");
        }
        record.writers.insert(std::this_thread::get_id());
        record.numbers.push_back(number);
        record.bytes.append(frame.pixels, frame.pixels + frame.pixelBytes);
        return {"frame-" + std::to_string(number), 0, frame.pixelBytes};
    }
    void Finish() override { record.isFinished = true; }

private:
    StoreRecord& record;
};

class RecorderTest : public testing::Test {
protected:
    RecorderTest() {
        record.mayEncode.Set();
        record.mayAppend.Set();
    }
    std::unique_ptr<Recorder> Make(std::uint64_t queueBytes = 1000, std::uint32_t threads = 3) {
        RecordingDescription description;
        description.layout = kFour;
        description.start = "2026";
        description.format = "fake";
        description.frames.wanted = 100;
        RecorderOptions options;
        options.directory = directory.Path();
        options.queueBytes = queueBytes;
        options.threads = threads;
        options.unixMinusHostNs = 1000;
        return std::make_unique<Recorder>(std::make_unique<FakeStore>(record), options,
                                          description);
    }
    static FrameStamp Stamp(std::uint64_t id) { return {id, id * 10, id * 100}; }
    static void Add(Recorder& recorder, std::uint8_t id) {
        std::vector<std::uint8_t> pixels = recorder.TakeBuffer(4);
        EXPECT_EQ(pixels.size(), 4u);
        pixels.assign(4, id);
        recorder.AddFrame(Stamp(id), kFour, std::move(pixels));
    }
    RecordingIndex Index() const { return ReadRecordingIndex(directory.Path()); }

    support::TemporaryDirectory directory;
    StoreRecord record;
};

TEST_F(RecorderTest, WritesFramesAndGapsInTheirOrder) {
    const auto recorder = Make();
    std::string bytes;
    for (std::uint8_t id = 1; id <= 100; ++id) {
        if (id % 10 == 0) {
            recorder->AddGap({FrameStatus::kDropped, {id, {}, {}}, 2, nullptr});
        }
        Add(*recorder, id);
        bytes.append(4, static_cast<char>(id));
    }
    EXPECT_TRUE(recorder->WaitUntilWritten(platform::kInfinite));
    EXPECT_EQ(recorder->Close(""), "");
    EXPECT_EQ(record.bytes, bytes);
    EXPECT_EQ(record.writers.size(), 1u);
    EXPECT_TRUE(record.isFinished);
    const RecorderCounts counts = recorder->Counts();
    EXPECT_EQ(counts.recorded, 100u);
    EXPECT_EQ(counts.bytes, 400u);
    EXPECT_EQ(counts.waiting, 0u);
    EXPECT_EQ(counts.Missing(), 20u);
    EXPECT_EQ(counts.MissingFor(FrameStatus::kDropped), 20u);

    const RecordingIndex index = Index();
    ASSERT_EQ(index.lines.size(), 120u);
    for (std::size_t i = 0; i < index.lines.size(); ++i) {
        EXPECT_EQ(index.lines[i].n, i + 1);
    }
    // The frames 1 to 9, two dropped ones, frame 10.
    EXPECT_EQ(index.lines[9].status, FrameStatus::kDropped);
    EXPECT_EQ(index.lines[9].stamp.frameId, 10u);
    EXPECT_EQ(index.lines[10].stamp.frameId, 11u);
    EXPECT_EQ(index.lines[10].file, "");
    EXPECT_EQ(index.lines[11].stamp, (FrameStamp{10, 100, 2000}));
    EXPECT_EQ(index.lines[11].file, "frame-12");
    EXPECT_EQ(index.lines[11].bytes, 4u);
    EXPECT_EQ(record.numbers[9], 12u) << "a file's number is its frame's";
    EXPECT_TRUE(index.description.complete);
    EXPECT_EQ(index.description.frames, (RecordedFrames{100, 100, 20}));
}

TEST_F(RecorderTest, CompressesOnSeveralThreadsAtOnce) {
    record.mayEncode.Reset();
    const auto recorder = Make();
    for (std::uint8_t id = 1; id <= 9; ++id) {
        Add(*recorder, id);
    }
    EXPECT_TRUE(support::WaitUntil([&] { return record.encoding == 3; }));
    EXPECT_FALSE(recorder->WaitUntilWritten(0));
    record.mayEncode.Set();
    EXPECT_EQ(recorder->Close(""), "");
    EXPECT_EQ(recorder->Counts().recorded, 9u);
}

TEST_F(RecorderTest, BoundsWhatWaits) {
    record.mayAppend.Reset();
    for (const bool isCopied : {false, true}) {
        record.isCopied = isCopied;
        const auto recorder = Make(10, 1);
        EXPECT_TRUE(recorder->HasRoom(1000)) << "nothing waits";
        Add(*recorder, 1);
        EXPECT_TRUE(recorder->HasRoom(6));
        EXPECT_FALSE(recorder->HasRoom(7));
        Add(*recorder, 2);
        EXPECT_TRUE(support::WaitUntil([&] { return recorder->HasRoom(2); }));
        EXPECT_FALSE(recorder->HasRoom(4));
        EXPECT_EQ(recorder->Counts().waiting, 2u);
        record.mayAppend.Set();
        EXPECT_TRUE(recorder->WaitUntilWritten(platform::kInfinite));
        EXPECT_TRUE(recorder->HasRoom(1000));
        record.mayAppend.Reset();
        // A gap takes no room.
        recorder->AddGap({FrameStatus::kLost, {}, 5, nullptr});
        EXPECT_TRUE(recorder->HasRoom(1000));
        EXPECT_EQ(recorder->Counts().MissingFor(FrameStatus::kLost), 5u);
    }
    record.mayAppend.Set();
}

TEST_F(RecorderTest, ReusesItsBuffers) {
    const auto recorder = Make();
    std::set<const void*> buffers;
    for (std::uint8_t id = 1; id <= 50; ++id) {
        std::vector<std::uint8_t> pixels = recorder->TakeBuffer(4);
        buffers.insert(pixels.data());
        recorder->AddFrame(Stamp(id), kFour, std::move(pixels));
        ASSERT_TRUE(recorder->WaitUntilWritten(platform::kInfinite));
    }
    EXPECT_EQ(buffers.size(), 1u);
    std::vector<std::uint8_t> unused = recorder->TakeBuffer(4);
    const void* const place = unused.data();
    recorder->ReturnBuffer(std::move(unused));
    EXPECT_EQ(recorder->TakeBuffer(4).data(), place);
}

TEST_F(RecorderTest, GivesUpWhatWaitsAndSaysSo) {
    record.mayAppend.Reset();
    const auto recorder = Make();
    Add(*recorder, 1);
    Add(*recorder, 2);
    Add(*recorder, 3);
    // The first one is being written once it does not wait for that any more.
    ASSERT_TRUE(support::WaitUntil([&] { return record.encoding == 3; }));
    const std::uint64_t givenUp = recorder->Abandon();
    record.mayAppend.Set();
    EXPECT_EQ(recorder->Close("given up"), "");
    const RecorderCounts counts = recorder->Counts();
    EXPECT_GE(givenUp, 2u);
    EXPECT_EQ(counts.recorded, record.numbers.size());
    EXPECT_EQ(counts.recorded + counts.MissingFor(FrameStatus::kLost), 3u);
    const RecordingIndex index = Index();
    ASSERT_EQ(index.lines.size(), 3u);
    EXPECT_EQ(index.lines[2].status, FrameStatus::kLost);
    EXPECT_EQ(index.lines[2].file, "");
    EXPECT_NE(index.lines[2].note, "");
    EXPECT_FALSE(index.description.complete);
    EXPECT_EQ(index.description.reason, "given up");
}

TEST_F(RecorderTest, EndsWithAReadableRecordingWhenTheDiskIsFull) {
    record.fullAt = 3;
    const auto recorder = Make();
    for (std::uint8_t id = 1; id <= 5; ++id) {
        Add(*recorder, id);
    }
    EXPECT_TRUE(support::WaitUntil([&] { return !recorder->Failure().empty(); }));
    EXPECT_EQ(recorder->Close(""), "cannot write it: the disk is full");
    EXPECT_TRUE(record.isFinished) << "what is whole is kept";
    const RecordingIndex index = Index();
    ASSERT_EQ(index.lines.size(), 5u);
    EXPECT_EQ(index.lines[1].status, FrameStatus::kComplete);
    EXPECT_EQ(index.lines[2].status, FrameStatus::kLost);
    EXPECT_EQ(index.lines[2].note, "could not be written");
    EXPECT_EQ(index.lines[4].status, FrameStatus::kLost);
    EXPECT_FALSE(index.description.complete);
    EXPECT_EQ(index.description.reason, "cannot write it: the disk is full");
    EXPECT_EQ(index.description.frames, (RecordedFrames{100, 2, 3}));
}

TEST_F(RecorderTest, ReportsAFrameThatCannotBeEncoded) {
    record.brokenAt = 2;
    const auto recorder = Make();
    Add(*recorder, 1);
    Add(*recorder, 2);
    Add(*recorder, 3);
    EXPECT_EQ(recorder->Close(""), "cannot encode this");
    EXPECT_EQ(recorder->Counts().recorded, 1u);
    EXPECT_EQ(Index().lines.size(), 3u);
}

TEST_F(RecorderTest, LeavesADescriptionWhenTheProgramEndsBefore) {
    {
        const auto recorder = Make();
        const RecordingIndex index = Index();
        EXPECT_FALSE(index.description.complete);
        EXPECT_EQ(index.description.reason, "the recording has not ended");
        Add(*recorder, 1);
        ASSERT_TRUE(recorder->WaitUntilWritten(platform::kInfinite));
        EXPECT_EQ(Index().lines.size(), 1u) << "written as it goes";
    }
    const RecordingIndex index = Index();
    EXPECT_FALSE(index.description.complete);
    EXPECT_EQ(index.description.reason, "the program ended before the recording did");
    EXPECT_EQ(index.description.frames.recorded, 1u);
}

TEST_F(RecorderTest, WritesManyLinesForALongGap) {
    const auto recorder = Make();
    recorder->AddGap({FrameStatus::kDropped, {7, {}, {}}, 2500, nullptr});
    Add(*recorder, 1);
    EXPECT_EQ(recorder->Close("missing"), "");
    const RecordingIndex index = Index();
    ASSERT_EQ(index.lines.size(), 2501u);
    EXPECT_EQ(index.lines[2499].stamp.frameId, 2506u);
    EXPECT_EQ(index.lines[2500].n, 2501u);
    EXPECT_EQ(index.lines[2500].file, "frame-2501");
}

TEST_F(RecorderTest, WorksWithoutADirectory) {
    RecorderOptions options;
    options.queueBytes = 100;
    Recorder recorder(std::make_unique<FakeStore>(record), options, {});
    Add(recorder, 1);
    recorder.AddGap({});
    EXPECT_EQ(recorder.Close(""), "");
    EXPECT_EQ(recorder.Counts().recorded, 1u);
    EXPECT_EQ(recorder.Counts().Missing(), 1u);
}

TEST_F(RecorderTest, CannotBeginWithoutItsFiles) {
    ASSERT_TRUE(platform::CreateDirectories(directory.PathOf("frames.jsonl")));
    EXPECT_THROW(Make(), CommandFailure);
}

} // namespace
