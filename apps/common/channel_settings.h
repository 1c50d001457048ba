// channel_settings.h - settings of a serial channel
#pragma once

#include "mivora/types.h"

#include <string>

class CCmdChannel;
class CMivoraGrabber;

/// Values as in the ini file; "-" keeps the channel's current value.
struct ChannelSettings {
    std::string port;     ///< "PYXENSERIALPORT0", "COM1", "ttyS0"
    std::string baud;     ///< "115200"
    std::string parity;   ///< "No", "Odd", "Even"
    std::string byteSize; ///< "5" to "8"
    std::string stopBits; ///< "1", "1.5", "2"
};

/// Applies settings to a channel by means of a temporary ini file. MV_CONFIG_NOT_SAVED if that file
/// cannot be written.
MV_ERRCODE ApplySettings(CCmdChannel& channel, const ChannelSettings& settings);

/// Applies settings to the active channel: writes them to its section of the grabber's ini file, or
/// to a temporary file if the grabber has none, and lets the channel read them. MV_NO_CHANNEL
/// without an active channel, MV_CONFIG_NOT_SAVED if the file cannot be written.
MV_ERRCODE ConfigureActChannel(CMivoraGrabber& grabber, const ChannelSettings& settings);
