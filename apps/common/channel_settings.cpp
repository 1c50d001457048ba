// channel_settings.cpp - settings of a serial channel
#include "apps/common/channel_settings.h"

#include "mivora/grabber.h"
#include "platform/file_system.h"

#include <utility>

namespace {

bool WriteSettings(CIniFile& ini, const char* section, const ChannelSettings& settings) {
    const std::pair<const char*, const std::string&> keys[] = {
        {"PORTNAME", settings.port},     {"BAUD", settings.baud},
        {"PARITY", settings.parity},     {"BYTESIZE", settings.byteSize},
        {"STOPBITS", settings.stopBits},
    };
    for (const auto& [key, value] : keys) {
        if (value != "-" && !ini.WriteText(section, key, value.c_str())) {
            return false;
        }
    }
    return true;
}

MV_ERRCODE WriteAndRead(CCmdChannel& channel, CIniFile& ini, const char* section,
                        const ChannelSettings& settings) {
    return WriteSettings(ini, section, settings) ? channel.GetConfig(&ini, section)
                                                 : MV_CONFIG_NOT_SAVED;
}

} // namespace

MV_ERRCODE ApplySettings(CCmdChannel& channel, const ChannelSettings& settings) {
    const std::string directory = platform::CreateTemporaryDirectory("mivora");
    if (directory.empty()) {
        return MV_CONFIG_NOT_SAVED;
    }
    MV_ERRCODE code = MV_OK;
    {
        CIniFile ini;
        ini.Open(platform::JoinPath(directory, "channel.ini").c_str());
        code = WriteAndRead(channel, ini, "Channel", settings);
    }
    platform::RemoveDirectoryTree(directory);
    return code;
}

MV_ERRCODE ConfigureActChannel(CMivoraGrabber& grabber, const ChannelSettings& settings) {
    CCmdChannel* const channel = grabber.GetActCmdChannel();
    if (!channel) {
        return MV_NO_CHANNEL;
    }
    CIniFile* const ini = grabber.GetIni();
    if (!ini) {
        return ApplySettings(*channel, settings);
    }
    char section[64];
    grabber.GetCmdChannelSection(grabber.GetActCmdChannelIndex(), section, sizeof section);
    return WriteAndRead(*channel, *ini, section, settings);
}
