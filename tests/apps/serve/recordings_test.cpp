// recordings_test.cpp - which files of recordings can be had
#include "apps/serve/recordings.h"

#include "apps/serve/request_failure.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

int OpenStatus(const std::string& directory, const std::string& recording,
               const std::string& file) {
    try {
        OpenRecordedFile(directory, recording, file);
    } catch (const RequestFailure& failure) {
        return failure.Status();
    }
    return 200;
}

class RecordingsTest : public testing::Test {
protected:
    RecordingsTest() {
        for (const char* const name : {"one", "two", "other"}) {
            platform::CreateDirectories(directory.PathOf(name));
        }
        Write("one", "recording.json", "{}");
        Write("one", "frame-000001.png", std::string(100000, 'p'));
        Write("two", "recording.json", "");
        Write("other", "secret.txt", "no recording");
    }
    void Write(const std::string& folder, const std::string& name, const std::string& content) {
        directory.Write(folder + "/" + name, content);
    }

    support::TemporaryDirectory directory;
};

TEST_F(RecordingsTest, AreListedWithTheirFiles) {
    const std::vector<StoredRecording> recordings = ListRecordings(directory.Path());
    ASSERT_EQ(recordings.size(), 2u);
    EXPECT_EQ(recordings[0].name, "one");
    ASSERT_EQ(recordings[0].files.size(), 2u);
    EXPECT_EQ(recordings[0].files[0].name, "frame-000001.png");
    EXPECT_EQ(recordings[0].files[0].bytes, 100000u);
    EXPECT_EQ(recordings[1].name, "two");
    EXPECT_TRUE(ListRecordings(directory.PathOf("missing")).empty());
}

TEST_F(RecordingsTest, GiveTheirFilesInParts) {
    const auto file = OpenRecordedFile(directory.Path(), "one", "frame-000001.png");
    EXPECT_EQ(file->Bytes(), 100000u);
    std::string content;
    const HttpSink sink = [&](const void* data, std::size_t size) {
        content.append(static_cast<const char*>(data), size);
        return true;
    };
    while (file->SendNext(sink)) {
    }
    EXPECT_EQ(content, std::string(100000, 'p'));
}

TEST_F(RecordingsTest, GiveNothingElse) {
    EXPECT_EQ(OpenStatus(directory.Path(), "one", "recording.json"), 200);
    EXPECT_EQ(OpenStatus(directory.Path(), "one", "missing"), 404);
    EXPECT_EQ(OpenStatus(directory.Path(), "other", "secret.txt"), 404);
    EXPECT_EQ(OpenStatus(directory.Path(), "..", "one"), 404);
    EXPECT_EQ(OpenStatus(directory.Path(), "one", ".."), 404);
    EXPECT_EQ(OpenStatus(directory.Path(), "one/../one", "recording.json"), 404);
    EXPECT_EQ(OpenStatus(directory.Path(), "one", "../other/secret.txt"), 404);
    EXPECT_EQ(OpenStatus(directory.Path(), "one", "..\\other\\secret.txt"), 404);
    EXPECT_EQ(OpenStatus(directory.Path(), ".", "recording.json"), 404);
}

TEST_F(RecordingsTest, AreNamedPlainly) {
    EXPECT_TRUE(IsPlainName("a-B_1.2"));
    for (const char* const name :
         {"", ".", "..", ".hidden", "a/b", "a\\b", "C:", "a b", "a\n", "end.", "\xC3\xA4"}) {
        EXPECT_FALSE(IsPlainName(name)) << name;
    }
    EXPECT_FALSE(IsPlainName(std::string(101, 'a')));
    EXPECT_THROW(NewRecordingPath(directory.Path(), "one"), RequestFailure);
    EXPECT_THROW(NewRecordingPath(directory.Path(), "../three"), RequestFailure);
    EXPECT_EQ(NewRecordingPath(directory.Path(), "three"),
              platform::JoinPath(directory.Path(), "three"));
}

} // namespace
