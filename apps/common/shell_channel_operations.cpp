// shell_channel_operations.cpp - operations on command channels
#include "apps/common/channel_settings.h"
#include "apps/common/shell_context.h"
#include "apps/common/shell_operation.h"
#include "mivora/grabber.h"

#include <algorithm>
#include <cstdint>

namespace {

using Text = const std::string&;

// More than any channel's port can hold.
constexpr std::uint64_t kMostToRead = 1u << 24;

void AddChannelList(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("GetNumCmdChannelTypes", "",
                   [&] { return ShellAnswer::Number(grabber.GetNumCmdChannelTypes()); });
    operations.Add("CreateCmdChannel", "TYPE", [&](std::uint32_t type) {
        CCmdChannel* const channel = grabber.CreateCmdChannel(type);
        if (channel) {
            grabber.AddCmdChannel(channel);
        }
        return ShellAnswer::Pointer(channel, "channel");
    });
    operations.Add("DeleteCmdChannelList", "", [&] {
        grabber.DeleteCmdChannelList();
        return ShellAnswer::Ok();
    });
    operations.Add("GetNumCmdChannels", "",
                   [&] { return ShellAnswer::Number(grabber.GetNumCmdChannels()); });
    operations.Add("GetFirstCmdChannel", "",
                   [&] { return ShellAnswer::Pointer(grabber.GetFirstCmdChannel()); });
    operations.Add("GetActCmdChannel", "",
                   [&] { return ShellAnswer::Pointer(grabber.GetActCmdChannel()); });
    operations.Add("GetCmdChannel", "I", [&](std::int32_t index) {
        return ShellAnswer::Pointer(grabber.GetCmdChannel(index));
    });
    operations.Add("GetActCmdChannelIndex", "",
                   [&] { return ShellAnswer::Number(grabber.GetActCmdChannelIndex()); });
    operations.Add("SetActCmdChannelIndex", "I", [&](std::int32_t index) {
        return ShellAnswer::Code(grabber.SetActCmdChannelIndex(index));
    });
}

void AddSettings(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("ChannelInfo", "", [&] {
        CCmdChannel* const channel = grabber.GetActCmdChannel();
        if (!channel) {
            return ShellAnswer::Pointer(nullptr);
        }
        return ShellAnswer::Ok()
            .WithText("type", channel->GetChannelTypeName())
            .WithText("config", channel->GetConfigText())
            .With("kind", channel->GetChannelKind());
    });
    operations.Add("ChannelConfig", "PORT BAUD PARITY BYTESIZE STOPBITS",
                   [&](Text port, Text baud, Text parity, Text byteSize, Text stopBits) {
                       return ShellAnswer::Code(
                           ConfigureActChannel(grabber, {port, baud, parity, byteSize, stopBits}));
                   });
    operations.Add("ConfigDialog", "", [&] {
        CCmdChannel* const channel = grabber.GetActCmdChannel();
        MV_DLG_EXITCODE exitCode = MV_DLG_CANCEL;
        const MV_ERRCODE code = channel ? channel->ConfigDialog(nullptr, &exitCode) : MV_NO_CHANNEL;
        return ShellAnswer::Code(code).WithSigned("exitCode", exitCode);
    });
}

void AddTraffic(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("CMDOpen", "", [&] { return ShellAnswer::Code(grabber.CMDOpen()); });
    operations.Add("CMDClose", "", [&] { return ShellAnswer::Code(grabber.CMDClose()); });
    operations.Add("CMDPurge", "FLAGS",
                   [&](std::uint32_t flags) { return ShellAnswer::Code(grabber.CMDPurge(flags)); });
    operations.Add("CMDReadByte", "", [&] {
        std::uint8_t byte = 0;
        std::uint64_t count = 0;
        const MV_ERRCODE code = grabber.CMDReadByte(&byte, &count);
        return ShellAnswer::Code(code)
            .With("count", count)
            .WithBytes("data", {&byte, count == 0 ? std::size_t{0} : std::size_t{1}});
    });
    operations.Add("CMDReadBuffer", "N", [&](std::uint64_t length) {
        if (length > kMostToRead) {
            throw ShellRefusal("that is too much");
        }
        // One extra byte, so that the channel gets a valid address for a length of 0 as well.
        std::vector<std::uint8_t> bytes(length + 1);
        std::uint64_t count = 0;
        const MV_ERRCODE code = grabber.CMDReadBuffer(bytes.data(), length, &count);
        bytes.resize(std::min(count, length));
        return ShellAnswer::Code(code).With("count", count).WithBytes("data", bytes);
    });
    operations.Add("CMDWriteByte", "HH", [&](const std::vector<std::uint8_t>& bytes) {
        if (bytes.size() != 1) {
            throw ShellRefusal("expects one byte");
        }
        std::uint64_t count = 0;
        const MV_ERRCODE code = grabber.CMDWriteByte(bytes.data(), &count);
        return ShellAnswer::Code(code).With("count", count);
    });
    operations.Add("CMDWriteBuffer", "HEX", [&](const std::vector<std::uint8_t>& bytes) {
        std::uint64_t count = 0;
        const MV_ERRCODE code = grabber.CMDWriteBuffer(bytes.data(), bytes.size(), &count);
        return ShellAnswer::Code(code).With("count", count);
    });
    operations.Add("CMDWriteCString", "TEXT", [&](Text text) {
        std::uint64_t count = 0;
        const MV_ERRCODE code = grabber.CMDWriteCString(text.c_str(), &count);
        return ShellAnswer::Code(code).With("count", count);
    });
}

} // namespace

void AddChannelOperations(ShellOperations& operations, const ShellContext& context) {
    AddChannelList(operations, context.grabber);
    AddSettings(operations, context.grabber);
    AddTraffic(operations, context.grabber);
}
