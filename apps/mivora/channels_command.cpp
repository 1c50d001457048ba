// channels_command.cpp - lists the kinds of command channels
#include "apps/common/command_line.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "mivora/grabber.h"
#include "platform/printable_text.h"

#include <cstdint>
#include <cstdio>

namespace {

void PrintTypes(CMivoraGrabber& grabber) {
    const std::uint32_t count = grabber.GetNumCmdChannelTypes();
    for (std::uint32_t type = 0; type < count; ++type) {
        if (CCmdChannel* const channel = grabber.CreateCmdChannel(type)) {
            std::printf("type %u  %s  (%s)\n", static_cast<unsigned>(type),
                        platform::PrintableText(channel->GetChannelTypeName()).c_str(),
                        platform::PrintableText(channel->GetConfigText()).c_str());
            grabber.DeleteCmdChannel(channel);
        }
    }
}

void PrintConfigured(CMivoraGrabber& grabber) {
    const auto count = static_cast<std::int32_t>(grabber.GetNumCmdChannels());
    for (std::int32_t i = 0; i < count; ++i) {
        CCmdChannel* const channel = grabber.GetCmdChannel(i);
        std::printf("%c configured %d  %s  (%s)\n",
                    i == grabber.GetActCmdChannelIndex() ? '*' : ' ', i,
                    platform::PrintableText(channel->GetChannelTypeName()).c_str(),
                    platform::PrintableText(channel->GetConfigText()).c_str());
    }
}

} // namespace

void AddChannelsCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand(
        "channels", "List the kinds of command channels, and those of the configuration");
    command.SetFooter("Example:\n  mivora --config host.ini channels\n");
    command.OnRun([&options, maker] {
        Session session(options, maker());
        session.Init();
        PrintTypes(session.Grabber());
        PrintConfigured(session.Grabber());
    });
}
