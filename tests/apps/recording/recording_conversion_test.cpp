// recording_conversion_test.cpp - tests of making a recording of another one
#include "apps/recording/recording_conversion.h"

#include "apps/common/command_failure.h"
#include "apps/recording/frame_reader.h"
#include "apps/recording/recording_check.h"
#include "platform/file_system.h"
#include "tests/support/written_recording_set.h"

#include <gtest/gtest.h>

namespace {

class RecordingConversion : public testing::Test {
protected:
    /// Converts and compares lines and images; returns the directory of the new recording.
    std::string ExpectSame(const std::string& from, const RecordingIndex& index,
                           const std::string& format) {
        ConversionOptions options;
        options.store.format = format;
        options.directory = directory.PathOf(format);
        options.overwrite = true;
        ConvertRecording(from, index, options);
        const RecordingIndex converted = ReadRecordingIndex(options.directory);
        EXPECT_EQ(CheckRecording(options.directory, converted), std::vector<std::string>());
        RecordingDescription description = index.description;
        description.format = format;
        EXPECT_EQ(converted.description, description);
        EXPECT_EQ(converted.lines.size(), index.lines.size());
        FrameReader oldFrames(from, index.description.format);
        FrameReader newFrames(options.directory, format);
        for (std::size_t at = 0; at < converted.lines.size(); ++at) {
            const FrameLine& oldLine = index.lines[at];
            const FrameLine& newLine = converted.lines[at];
            EXPECT_EQ(newLine.n, oldLine.n);
            EXPECT_EQ(newLine.stamp, oldLine.stamp);
            EXPECT_EQ(newLine.status, oldLine.status);
            EXPECT_EQ(newLine.note, oldLine.note);
            EXPECT_EQ(newLine.file.empty(), oldLine.file.empty());
            if (!oldLine.file.empty()) {
                std::vector<std::uint8_t> oldImage;
                std::vector<std::uint8_t> newImage;
                oldFrames.Read({oldLine.file, oldLine.offset, oldLine.bytes}, oldLine.layout,
                               oldImage);
                newFrames.Read({newLine.file, newLine.offset, newLine.bytes}, newLine.layout,
                               newImage);
                EXPECT_EQ(newImage, oldImage) << format << " " << newLine.n;
            }
        }
        return options.directory;
    }
    std::string Failure(const RecordingIndex& index, const ConversionOptions& options) {
        try {
            ConvertRecording(directory.Path(), index, options);
            return "";
        } catch (const CommandFailure& failure) {
            return failure.what();
        }
    }

    support::TemporaryDirectory directory;
};

TEST_F(RecordingConversion, KeepsValuesNumbersIdsAndTimesInEveryFormat) {
    for (const ImageLayout& layout :
         {ImageLayout{8, 4, 1, 8, 8, MVCC_MONO, 0, 0}, ImageLayout{8, 4, 3, 8, 8, MVCC_BGR, 0, 0},
          ImageLayout{8, 4, 1, 8, 8, MVCC_RAW_CFA, 1, 0},
          ImageLayout{8, 4, 1, 16, 16, MVCC_RAW_CFA, 0, 1}}) {
        support::WrittenRecording recording(layout);
        recording.Add();
        recording.AddMissing(FrameStatus::kDropped);
        recording.Add().note = "a note";
        recording.description.complete = false;
        recording.description.reason = "1 frame is missing";
        std::string from = recording.Write(directory);
        for (const char* const format : {"png", "tiff", "pnm", "multi-tiff", "raw", "stack"}) {
            from = ExpectSame(from, ReadRecordingIndex(from), format);
        }
        EXPECT_EQ(directory.Read("stack/frames.stack"), recording.stack);
    }
}

TEST_F(RecordingConversion, RefusesWhatTheFormatCannotHold) {
    support::WrittenRecording recording({4, 2, 4, 8, 8, MVCC_RGBA, 0, 0});
    recording.Add();
    recording.Write(directory);
    ConversionOptions options;
    options.store.format = "pnm";
    options.directory = directory.PathOf("new");
    EXPECT_EQ(Failure(ReadRecordingIndex(directory.Path()), options),
              "a PNM file holds no alpha, which frame 1 has");
    EXPECT_FALSE(platform::PathExists(options.directory));
}

TEST_F(RecordingConversion, ReplacesNothingUnasked) {
    support::WrittenRecording recording;
    recording.Add();
    recording.Write(directory);
    const RecordingIndex index = ReadRecordingIndex(directory.Path());
    ConversionOptions options;
    options.directory = directory.Path() + "/.";
    options.overwrite = true;
    EXPECT_EQ(Failure(index, options),
              "the new recording would replace the one that it is made of");
    options.directory = directory.PathOf("new");
    EXPECT_EQ(Failure(index, options), "");
    options.overwrite = false;
    EXPECT_NE(Failure(index, options).find("holds a recording"), std::string::npos);
}

TEST_F(RecordingConversion, LeavesAnIncompleteRecordingWhenItFails) {
    support::WrittenRecording recording;
    recording.Add();
    recording.Add();
    recording.stack.pop_back();
    recording.Write(directory);
    ConversionOptions options;
    options.directory = directory.PathOf("new");
    const std::string failure = Failure(ReadRecordingIndex(directory.Path()), options);
    EXPECT_NE(failure.find("it ends at byte 63"), std::string::npos);
    const RecordingIndex converted = ReadRecordingIndex(options.directory);
    EXPECT_FALSE(converted.description.complete);
    EXPECT_EQ(converted.description.reason, failure);
    EXPECT_EQ(converted.lines.size(), 1u);
    EXPECT_EQ(CheckRecording(options.directory, converted), std::vector<std::string>());
}

TEST_F(RecordingConversion, ReplacesNotTheFoldersThatItIsMadeOf) {
    support::WrittenRecordingSet written;
    written.Write(directory);
    ConversionOptions options;
    options.directory = directory.Path();
    options.overwrite = true;
    const std::string folder = directory.PathOf("camera-A");
    const std::string reason = "the new recording would replace the one that it is made of";
    try {
        ConvertRecording(folder, ReadRecordingIndex(folder), options);
        ADD_FAILURE();
    } catch (const CommandFailure& failure) {
        EXPECT_EQ(failure.what(), reason);
    }
    const RecordingSet set = *ReadRecordingSet(directory.Path());
    for (const std::string& target : {directory.Path(), folder}) {
        options.directory = target;
        try {
            ConvertRecordingSet(directory.Path(), set, ReadRecordingParts(directory.Path(), set),
                                options);
            ADD_FAILURE();
        } catch (const CommandFailure& failure) {
            EXPECT_EQ(failure.what(), reason);
        }
    }
    EXPECT_EQ(CheckRecordingSet(directory.Path(), set, ReadRecordingParts(directory.Path(), set)),
              std::vector<std::string>());
}

TEST_F(RecordingConversion, TakesAllFoldersOfSeveralCameras) {
    support::WrittenRecordingSet written;
    written.recordings[1].AddMissing(FrameStatus::kDropped);
    written.set.recordings[1].frames = written.recordings[1].description.frames;
    written.set.recordings[1].complete = false;
    written.set.recordings[1].reason = "1 frame is missing";
    written.Write(directory);
    const RecordingSet set = *ReadRecordingSet(directory.Path());
    ConversionOptions options;
    options.store.format = "tiff";
    options.directory = directory.PathOf("new");
    ConvertRecordingSet(directory.Path(), set, ReadRecordingParts(directory.Path(), set), options);
    const RecordingSet converted = *ReadRecordingSet(options.directory);
    EXPECT_EQ(converted.Json(), set.Json());
    const std::vector<RecordingPart> parts = ReadRecordingParts(options.directory, converted);
    EXPECT_EQ(CheckRecordingSet(options.directory, converted, parts), std::vector<std::string>());
    EXPECT_EQ(parts[0].index->description.format, "tiff");
    EXPECT_EQ(parts[1].index->lines.size(), 3u);
}

TEST_F(RecordingConversion, LeavesAnIncompleteSetWhenItFails) {
    support::WrittenRecordingSet written;
    written.recordings[1].stack.pop_back();
    written.Write(directory);
    const RecordingSet set = *ReadRecordingSet(directory.Path());
    ConversionOptions options;
    options.directory = directory.PathOf("new");
    EXPECT_THROW(ConvertRecordingSet(directory.Path(), set,
                                     ReadRecordingParts(directory.Path(), set), options),
                 CommandFailure);
    const RecordingSet converted = *ReadRecordingSet(options.directory);
    EXPECT_TRUE(converted.recordings[0].complete);
    EXPECT_FALSE(converted.recordings[1].complete);
    std::remove(directory.PathOf("camera-B/frames.jsonl").c_str());
    options.directory = directory.PathOf("another");
    EXPECT_THROW(ConvertRecordingSet(directory.Path(), set,
                                     ReadRecordingParts(directory.Path(), set), options),
                 CommandFailure);
    EXPECT_FALSE(platform::PathExists(options.directory))
        << "nothing is written for a part of them";
}

} // namespace
