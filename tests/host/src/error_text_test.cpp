// error_text_test.cpp - a description for every result code
#include "mivora/grabber.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(ErrorText, NamesTheCauseOfEveryCode) {
    const std::pair<MV_ERRCODE, const char*> texts[] = {
        {MV_OK, "done"},
        {MV_ALREADY_INITIALISED, "the grabber is already initialised"},
        {MV_NOT_INITIALISED, "the grabber is not initialised"},
        {MV_BUSY, "an acquisition is running"},
        // The code has all these causes; which it was is in the log.
        {MV_REFUSED,
         "the camera SDK refused or cannot be used, or memory or frame buffers ran out"},
        {MV_NO_VIDEO_MODE, "the camera has no active video mode"},
        {MV_NO_CAMERA, "there is no such camera, or none is active"},
        {MV_CAMERA_NOT_OPEN, "no camera is open"},
        {MV_BUFFERS_NOT_PREPARED, "the frame buffers were not prepared"},
        {MV_BAD_VALUE, "an argument has a value that is not allowed"},
        {MV_CHANNEL_ALREADY_OPEN, "the command channel is already open"},
        {MV_NO_CHANNEL, "there is no such command channel, or none is active"},
        {MV_CHANNEL_OPEN_FAILED, "the command channel could not be opened"},
        {MV_READ_FAILED, "reading from the command channel failed"},
        {MV_WRITE_FAILED, "writing to the command channel failed"},
        {MV_PURGE_FAILED, "purging the command channel failed"},
        {MV_CONFIG_NOT_SAVED, "the configuration could not be saved"},
        {MV_CONFIG_NOT_LOADED, "there is no usable configuration file"},
        {MV_NO_FILLED_BUFFER, "no filled frame buffer is waiting"},
        {MV_ACQUISITION_FAILED, "the camera SDK failed during the acquisition"},
        {MV_NOT_AVAILABLE, "this platform or module has nothing of the kind"},
        {MV_NOT_SERVED, "the camera does not serve this parameter, or refused to change it"},
    };
    for (const auto& [code, text] : texts) {
        EXPECT_STREQ(MivoraErrorText(code), text) << code;
    }
    for (const int unknown : {5, -1, 35}) {
        EXPECT_STREQ(MivoraErrorText(unknown), "unknown result code") << unknown;
    }
}

} // namespace
