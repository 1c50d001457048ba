// cmd_serial.h - command channel over a serial port of this computer
#pragma once

#include "mivora/cmd_channel.h"
#include "platform/mutex.h"
#include "platform/serial_port.h"
#include "serial_settings.h"

#include <cstdint>
#include <string>

/// A command channel over a serial port of this computer. Any thread; a mutex serialises the
/// operations. New settings take effect at the next Open.
class CCmdSerial final : public CCmdChannel {
public:
    const char* GetChannelTypeName() override;
    /// The text is valid until the next call.
    const char* GetConfigText() override;
    MV_ERRCODE SetConfig(CIniFile* ini, const char* section) override;
    MV_ERRCODE GetConfig(CIniFile* ini, const char* section) override;
    /// MV_REFUSED if the dialog cannot be shown. Without a window system it returns as if
    /// cancelled.
    MV_ERRCODE ConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) override;
    MV_ERRCODE Open() override;
    MV_ERRCODE ReadByte(std::uint8_t* buffer, std::uint64_t* count) override;
    MV_ERRCODE WriteByte(const std::uint8_t* buffer, std::uint64_t* count) override;
    MV_ERRCODE ReadBuffer(std::uint8_t* buffer, std::uint64_t length,
                          std::uint64_t* count) override;
    MV_ERRCODE WriteBuffer(const std::uint8_t* buffer, std::uint64_t length,
                           std::uint64_t* count) override;
    MV_ERRCODE Purge(std::uint32_t flags) override;
    MV_ERRCODE Close() override;
    ~CCmdSerial() override;
    std::uint32_t GetChannelKind() override;

private:
    platform::Mutex mutex;
    SerialSettings settings GUARDED_BY(mutex);
    platform::SerialPort port GUARDED_BY(mutex);
    std::string configText GUARDED_BY(mutex);
};
