// channel_settings.h - settings of a serial channel
#pragma once

#include "mivora/types.h"

#include <string>

class CCmdChannel;
class CMivoraGrabber;

/// Texts as in the ini file; "-" keeps what the channel has.
struct ChannelSettings {
    std::string port;     ///< "PYXENSERIALPORT0", "COM1", "ttyS0"
    std::string baud;     ///< "115200"
    std::string parity;   ///< "No", "Odd", "Even"
    std::string byteSize; ///< "5" to "8"
    std::string stopBits; ///< "1", "1.5", "2"
};

/// Puts settings into a channel by way of an ini file of the moment. MV_CONFIG_NOT_SAVED when that
/// cannot be written.
MV_ERRCODE ApplySettings(CCmdChannel& channel, const ChannelSettings& settings);

/// Puts settings into the active channel: they are written into its section of the grabber's ini
/// file, or of a file of the moment when the grabber has none, and the channel reads them.
/// MV_NO_CHANNEL without an active channel, MV_CONFIG_NOT_SAVED when the file cannot be written.
MV_ERRCODE ConfigureActChannel(CMivoraGrabber& grabber, const ChannelSettings& settings);
