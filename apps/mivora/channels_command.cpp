// channels_command.cpp - lists the kinds of command channels
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "mivora/grabber.h"
#include "platform/printable_text.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

/// A kind of channel, or a channel of the configuration.
struct ListedChannel {
    std::int32_t index = 0;
    bool isActive = false;
    std::string name;
    std::string config;
};

ListedChannel DescribeChannel(std::int32_t index, bool isActive, CCmdChannel& channel) {
    return {index, isActive, channel.GetChannelTypeName(), channel.GetConfigText()};
}

std::vector<ListedChannel> ChannelTypes(CMivoraGrabber& grabber) {
    std::vector<ListedChannel> types;
    const std::uint32_t count = grabber.GetNumCmdChannelTypes();
    for (std::uint32_t type = 0; type < count; ++type) {
        CCmdChannel* const channel = grabber.CreateCmdChannel(type);
        if (!channel) {
            throw std::bad_alloc(); // the only reason for a type that there is
        }
        types.push_back(DescribeChannel(static_cast<std::int32_t>(type), false, *channel));
        grabber.DeleteCmdChannel(channel);
    }
    return types;
}

std::vector<ListedChannel> ConfiguredChannels(CMivoraGrabber& grabber) {
    std::vector<ListedChannel> channels;
    const auto count = static_cast<std::int32_t>(grabber.GetNumCmdChannels());
    for (std::int32_t i = 0; i < count; ++i) {
        channels.push_back(
            DescribeChannel(i, i == grabber.GetActCmdChannelIndex(), *grabber.GetCmdChannel(i)));
    }
    return channels;
}

void PrintChannels(CMivoraGrabber& grabber) {
    for (const ListedChannel& type : ChannelTypes(grabber)) {
        std::printf("type %d  %s  (%s)\n", type.index, platform::PrintableText(type.name).c_str(),
                    platform::PrintableText(type.config).c_str());
    }
    for (const ListedChannel& channel : ConfiguredChannels(grabber)) {
        std::printf("%c configured %d  %s  (%s)\n", channel.isActive ? '*' : ' ', channel.index,
                    platform::PrintableText(channel.name).c_str(),
                    platform::PrintableText(channel.config).c_str());
    }
}

void PrintChannelsJson(CMivoraGrabber& grabber) {
    std::vector<JsonValue> types;
    for (const ListedChannel& type : ChannelTypes(grabber)) {
        types.push_back(
            JsonObject({{"type", type.index}, {"name", type.name}, {"config", type.config}}));
    }
    std::vector<JsonValue> configured;
    for (const ListedChannel& channel : ConfiguredChannels(grabber)) {
        configured.push_back(JsonObject({{"index", channel.index},
                                         {"active", channel.isActive},
                                         {"name", channel.name},
                                         {"config", channel.config}}));
    }
    PrintReport({{"types", JsonArray(types)}, {"configured", JsonArray(configured)}});
}

} // namespace

void AddChannelsCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand(
        "channels", "List the kinds of command channels, and those of the configuration");
    command.SetFooter("Example:\n  mivora --config host.ini channels\n");
    command.Excludes("--camera");
    const auto json = std::make_shared<bool>(false);
    command.AddJson(*json);
    command.OnRun([&options, maker, json] {
        Session session(options, maker());
        session.Init();
        *json ? PrintChannelsJson(session.Grabber()) : PrintChannels(session.Grabber());
    });
}
