// error_text_test.cpp - a description for every result code
#include "mivora/grabber.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(ErrorText, ExplainsEveryCode) {
    const MV_ERRCODE codes[] = {MV_OK,
                                MV_ALREADY_INITIALISED,
                                MV_NOT_INITIALISED,
                                MV_BUSY,
                                MV_REFUSED,
                                MV_NO_VIDEO_MODE,
                                MV_NO_CAMERA,
                                MV_CAMERA_NOT_OPEN,
                                MV_BUFFERS_NOT_PREPARED,
                                MV_BAD_VALUE,
                                MV_CHANNEL_ALREADY_OPEN,
                                MV_NO_CHANNEL,
                                MV_CHANNEL_OPEN_FAILED,
                                MV_READ_FAILED,
                                MV_WRITE_FAILED,
                                MV_PURGE_FAILED,
                                MV_CONFIG_NOT_SAVED,
                                MV_CONFIG_NOT_LOADED,
                                MV_NO_FILLED_BUFFER,
                                MV_ACQUISITION_FAILED,
                                MV_NOT_AVAILABLE,
                                MV_NOT_SERVED};
    const std::string unknown = MivoraErrorText(5);
    EXPECT_EQ(unknown, MivoraErrorText(-1));
    std::vector<std::string> texts;
    for (const MV_ERRCODE code : codes) {
        const std::string text = MivoraErrorText(code);
        EXPECT_NE(text, unknown) << code;
        for (const std::string& other : texts) {
            EXPECT_NE(text, other);
        }
        texts.push_back(text);
    }
}

} // namespace
