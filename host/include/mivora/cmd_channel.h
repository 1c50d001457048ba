// cmd_channel.h - a command channel: a byte stream to a device beside the image path
#pragma once

#include "mivora/export.h"
#include "mivora/ini_file.h"
#include "mivora/types.h"

/// A node of a grabber's list of command channels.
class MIVORA_API CCmdChannel {
public:
    CCmdChannel();
    CCmdChannel(const CCmdChannel&) = delete;
    CCmdChannel& operator=(const CCmdChannel&) = delete;

    /* slot  0 */ virtual const char* GetChannelTypeName() = 0;
    /* slot  1 */ virtual const char* GetConfigText() = 0;
    /// Writes the configuration into the ini section; MV_CONFIG_NOT_SAVED when that fails.
    /* slot  2 */ virtual MV_ERRCODE SetConfig(CIniFile* ini, const char* section);
    /// Reads it back; what is absent keeps its value.
    /* slot  3 */ virtual MV_ERRCODE GetConfig(CIniFile* ini, const char* section);
    /* slot  4 */ virtual MV_ERRCODE ConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) = 0;
    /* slot  5 */ virtual MV_ERRCODE Open() = 0;
    /* slot  6 */ virtual MV_ERRCODE ReadByte(uint8_t* buffer, uint64_t* count) = 0;
    /* slot  7 */ virtual MV_ERRCODE WriteByte(const uint8_t* buffer, uint64_t* count) = 0;
    /* slot  8 */ virtual MV_ERRCODE ReadBuffer(uint8_t* buffer, uint64_t length,
                                                uint64_t* count) = 0;
    /* slot  9 */ virtual MV_ERRCODE WriteBuffer(const uint8_t* buffer, uint64_t length,
                                                 uint64_t* count) = 0;
    /// WriteBuffer of the text without its terminator.
    /* slot 10 */ virtual MV_ERRCODE WriteCString(const char* text, uint64_t* count);
    /* slot 11 */ virtual MV_ERRCODE Purge(uint32_t flags) = 0;
    /* slot 12 */ virtual MV_ERRCODE Close() = 0;
    /// Writes byte by byte with WriteByte, resting `delayMs` milliseconds between two bytes.
    /* slot 13 */ virtual MV_ERRCODE WriteBufferWithDelay(const uint8_t* buffer, uint64_t length,
                                                          uint64_t* count, uint32_t delayMs);
    /* slot 14 */ virtual ~CCmdChannel();
    /// An MV_CMD_CHANNEL value.
    /* slot 15 */ virtual uint32_t GetChannelKind() = 0;

    /// True between a successful Open and Close.
    bool IsOpen() const;

    CCmdChannel* GetNext() const;
    void SetNext(CCmdChannel* node);

protected:
    void SetOpen(bool open);

private:
    struct Impl;
    Impl* impl;
};

extern "C" {
/// The host's own serial channel, a port of this machine; null when memory is out.
MIVORA_API CCmdChannel* CreateCmdSerialInstance();
/// Destroys a channel that CreateCmdSerialInstance made; null is ignored.
MIVORA_API void DeleteCmdSerialInstance(CCmdChannel* channel);
}
