// cmd_channel.h - a command channel: a byte stream to a device outside the image path
#pragma once

#include "mivora/export.h"
#include "mivora/ini_file.h"
#include "mivora/types.h"

/// A node of a grabber's list of command channels. The constructor may throw std::bad_alloc; no
/// operation throws.
///
/// In the transfer operations `count` receives the number of bytes transferred, also after a
/// failure; it may be null. SetConfig, GetConfig and ConfigDialog return MV_REFUSED when out of
/// memory. Any thread may call a channel; its operations do not overlap, except that others may run
/// between two bytes of a delayed write.
class MIVORA_API CCmdChannel {
public:
    CCmdChannel();
    CCmdChannel(const CCmdChannel&) = delete;
    CCmdChannel& operator=(const CCmdChannel&) = delete;

    /// The name of the channel type, as it is kept under the key TYPE of the ini section.
    /* slot  0 */ virtual const char* GetChannelTypeName() = 0;
    /// The settings in readable form; the text is valid until the next call.
    /* slot  1 */ virtual const char* GetConfigText() = 0;
    /// Writes the settings to the ini section; the base writes the type. MV_CONFIG_NOT_SAVED for a
    /// null argument or when writing fails.
    /* slot  2 */ virtual MV_ERRCODE SetConfig(CIniFile* ini, const char* section);
    /// Reads the settings back; a setting without a key keeps its value. MV_CONFIG_NOT_LOADED for a
    /// null argument. Takes effect at the next Open.
    /* slot  3 */ virtual MV_ERRCODE GetConfig(CIniFile* ini, const char* section);
    /// Shows the modal dialog for the settings; user-interface thread. `exitCode` may be null. The
    /// host's serial channel returns MV_REFUSED when the dialog cannot be shown.
    /* slot  4 */ virtual MV_ERRCODE ConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) = 0;
    /// Errors: MV_CHANNEL_ALREADY_OPEN, MV_CHANNEL_OPEN_FAILED.
    /* slot  5 */ virtual MV_ERRCODE Open() = 0;
    /// Reads one byte that has arrived; MV_READ_FAILED if there is none.
    /* slot  6 */ virtual MV_ERRCODE ReadByte(uint8_t* buffer, uint64_t* count) = 0;
    /// Writes one byte. Error: MV_WRITE_FAILED.
    /* slot  7 */ virtual MV_ERRCODE WriteByte(const uint8_t* buffer, uint64_t* count) = 0;
    /// Reads at most `length` of the bytes that have arrived, without waiting for more. MV_OK with
    /// count 0 if there are none. Error: MV_READ_FAILED.
    /* slot  8 */ virtual MV_ERRCODE ReadBuffer(uint8_t* buffer, uint64_t length,
                                                uint64_t* count) = 0;
    /// Writes all bytes. Error: MV_WRITE_FAILED.
    /* slot  9 */ virtual MV_ERRCODE WriteBuffer(const uint8_t* buffer, uint64_t length,
                                                 uint64_t* count) = 0;
    /// Passes the text without its terminator to WriteBuffer; MV_BAD_VALUE for null.
    /* slot 10 */ virtual MV_ERRCODE WriteCString(const char* text, uint64_t* count);
    /// Discards pending bytes; `flags` combines kMvPurge... bits. Errors: MV_PURGE_FAILED;
    /// MV_WRITE_FAILED from a module's channel.
    /* slot 11 */ virtual MV_ERRCODE Purge(uint32_t flags) = 0;
    /// Closes the channel; MV_OK if it is closed already.
    /* slot 12 */ virtual MV_ERRCODE Close() = 0;
    /// Calls WriteByte for each byte, with a pause of `delayMs` milliseconds between two bytes, and
    /// stops at the first failure. MV_BAD_VALUE for a null buffer, else the result of WriteByte.
    /* slot 13 */ virtual MV_ERRCODE WriteBufferWithDelay(const uint8_t* buffer, uint64_t length,
                                                          uint64_t* count, uint32_t delayMs);
    /* slot 14 */ virtual ~CCmdChannel();
    /// One of MV_CMD_CHANNEL.
    /* slot 15 */ virtual uint32_t GetChannelKind() = 0;

    /// True between a successful Open and Close.
    bool IsOpen() const;

    ///@{
    /// The next channel of the grabber's list, or null.
    CCmdChannel* GetNext() const;
    void SetNext(CCmdChannel* node);
    ///@}

protected:
    /// Sets what IsOpen returns; called by Open and Close of the derived class.
    void SetOpen(bool open);

private:
    struct Impl;
    Impl* impl;
};

extern "C" {
/// Creates a channel for a serial port of this computer. The caller owns it; null when out of
/// memory. Any thread.
MIVORA_API CCmdChannel* CreateCmdSerialInstance();
/// Deletes a channel created by CreateCmdSerialInstance; null is ignored.
MIVORA_API void DeleteCmdSerialInstance(CCmdChannel* channel);
}
