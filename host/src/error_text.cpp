// error_text.cpp - descriptions of the result codes
#include "mivora/grabber.h"

#include <cstdint>

const char* MivoraErrorText(std::int32_t code) {
    switch (code) {
    case MV_OK:
        return "done";
    case MV_ALREADY_INITIALISED:
        return "the grabber is already initialised";
    case MV_NOT_INITIALISED:
        return "the grabber is not initialised";
    case MV_BUSY:
        return "an acquisition is running";
    case MV_REFUSED:
        return "the camera SDK refused or cannot be used, or memory or frame buffers ran out";
    case MV_NO_VIDEO_MODE:
        return "the camera has no active video mode";
    case MV_NO_CAMERA:
        return "there is no such camera, or none is active";
    case MV_CAMERA_NOT_OPEN:
        return "no camera is open";
    case MV_BUFFERS_NOT_PREPARED:
        return "the frame buffers were not prepared";
    case MV_BAD_VALUE:
        return "an argument has a value that is not allowed";
    case MV_CHANNEL_ALREADY_OPEN:
        return "the command channel is already open";
    case MV_NO_CHANNEL:
        return "there is no such command channel, or none is active";
    case MV_CHANNEL_OPEN_FAILED:
        return "the command channel could not be opened";
    case MV_READ_FAILED:
        return "reading from the command channel failed";
    case MV_WRITE_FAILED:
        return "writing to the command channel failed";
    case MV_PURGE_FAILED:
        return "purging the command channel failed";
    case MV_CONFIG_NOT_SAVED:
        return "the configuration could not be saved";
    case MV_CONFIG_NOT_LOADED:
        return "there is no usable configuration file";
    case MV_NO_FILLED_BUFFER:
        return "no filled frame buffer is waiting";
    case MV_ACQUISITION_FAILED:
        return "the camera SDK failed during the acquisition";
    case MV_NOT_AVAILABLE:
        return "this platform or module has nothing of the kind";
    case MV_NOT_SERVED:
        return "the camera does not serve this parameter, or refused to change it";
    default:
        return "unknown result code";
    }
}
