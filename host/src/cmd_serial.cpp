// cmd_serial.cpp - command channel over a serial port of this computer
#include "cmd_serial.h"

#include "config_access.h"
#include "guarded.h"
#include "parse_number.h"
#include "serial_dialog.h"

#include <new>

namespace {

void Store(std::uint64_t* target, std::uint64_t value) {
    if (target) {
        *target = value;
    }
}

} // namespace

CCmdSerial::~CCmdSerial() = default;

const char* CCmdSerial::GetChannelTypeName() {
    return "Serial Port";
}

std::uint32_t CCmdSerial::GetChannelKind() {
    return MVCMD_SERIAL;
}

const char* CCmdSerial::GetConfigText() {
    return Guarded("", [&] {
        const platform::MutexLock lock(mutex);
        configText = std::to_string(settings.baud) +
                     " Baud, Parity = " + ParityText(settings.parity) +
                     ", Bytesize = " + std::to_string(settings.byteSize) +
                     ", Stopbits = " + StopBitsText(settings.stopBits);
        return configText.c_str();
    });
}

MV_ERRCODE CCmdSerial::SetConfig(CIniFile* ini, const char* section) {
    const MV_ERRCODE result = CCmdChannel::SetConfig(ini, section);
    if (result != MV_OK) {
        return result;
    }
    return Guarded(MV_REFUSED, [&] {
        const platform::MutexLock lock(mutex);
        const std::string baud = std::to_string(settings.baud);
        const std::string byteSize = std::to_string(settings.byteSize);
        const bool written = ini->WriteText(section, "PORTNAME", settings.portName.c_str()) &&
                             ini->WriteText(section, "BAUD", baud.c_str()) &&
                             ini->WriteText(section, "PARITY", ParityText(settings.parity)) &&
                             ini->WriteText(section, "BYTESIZE", byteSize.c_str()) &&
                             ini->WriteText(section, "STOPBITS", StopBitsText(settings.stopBits));
        return written ? MV_OK : MV_CONFIG_NOT_SAVED;
    });
}

MV_ERRCODE CCmdSerial::GetConfig(CIniFile* ini, const char* section) {
    const MV_ERRCODE result = CCmdChannel::GetConfig(ini, section);
    if (result != MV_OK) {
        return result;
    }
    return Guarded(MV_REFUSED, [&] {
        const platform::MutexLock lock(mutex);
        if (auto name = ReadIniText(*ini, section, "PORTNAME")) {
            settings.portName = std::move(*name);
        }
        if (const auto baud = ReadIniText(*ini, section, "BAUD")) {
            settings.baud = ParseUint32(*baud).value_or(settings.baud);
        }
        if (const auto parity = ReadIniText(*ini, section, "PARITY")) {
            settings.parity = ParseParity(*parity);
        }
        if (const auto byteSize = ReadIniText(*ini, section, "BYTESIZE")) {
            settings.byteSize = ParseByteSize(*byteSize);
        }
        if (const auto stopBits = ReadIniText(*ini, section, "STOPBITS")) {
            settings.stopBits = ParseStopBits(*stopBits);
        }
        return MV_OK;
    });
}

MV_ERRCODE CCmdSerial::ConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) {
    if (exitCode) {
        *exitCode = MV_DLG_CANCEL;
    }
    return Guarded(MV_REFUSED, [&] {
        // The mutex is not held while the dialog is shown, so that the port stays usable.
        SerialSettings edited;
        {
            const platform::MutexLock lock(mutex);
            edited = settings;
        }
        const DialogEnd end = RunSerialDialog(parent, edited);
        if (end != DialogEnd::kOk) {
            return end == DialogEnd::kCancelled ? MV_OK : MV_REFUSED;
        }
        const platform::MutexLock lock(mutex);
        settings = std::move(edited);
        if (exitCode) {
            *exitCode = MV_DLG_OK;
        }
        return MV_OK;
    });
}

MV_ERRCODE CCmdSerial::Open() {
    return Guarded(MV_CHANNEL_OPEN_FAILED, [&] {
        const platform::MutexLock lock(mutex);
        if (port.IsOpen()) {
            return MV_CHANNEL_ALREADY_OPEN;
        }
        if (settings.portName.empty() ||
            !port.Open(settings.portName, settings.baud, settings.parity, settings.byteSize,
                       settings.stopBits)) {
            return MV_CHANNEL_OPEN_FAILED;
        }
        SetOpen(true);
        return MV_OK;
    });
}

MV_ERRCODE CCmdSerial::ReadByte(std::uint8_t* buffer, std::uint64_t* count) {
    std::uint64_t read = 0;
    const MV_ERRCODE result = ReadBuffer(buffer, 1, &read);
    Store(count, read);
    return result == MV_OK && read == 0 ? MV_READ_FAILED : result;
}

MV_ERRCODE CCmdSerial::WriteByte(const std::uint8_t* buffer, std::uint64_t* count) {
    return WriteBuffer(buffer, 1, count);
}

MV_ERRCODE CCmdSerial::ReadBuffer(std::uint8_t* buffer, std::uint64_t length,
                                  std::uint64_t* count) {
    Store(count, 0);
    return Guarded(MV_READ_FAILED, [&] {
        const platform::MutexLock lock(mutex);
        std::size_t read = 0;
        if ((!buffer && length > 0) || !port.Read(buffer, static_cast<std::size_t>(length), read)) {
            return MV_READ_FAILED;
        }
        Store(count, read);
        return MV_OK;
    });
}

MV_ERRCODE CCmdSerial::WriteBuffer(const std::uint8_t* buffer, std::uint64_t length,
                                   std::uint64_t* count) {
    Store(count, 0);
    return Guarded(MV_WRITE_FAILED, [&] {
        const platform::MutexLock lock(mutex);
        std::size_t written = 0;
        const bool done = (buffer || length == 0) &&
                          port.Write(buffer, static_cast<std::size_t>(length), &written);
        Store(count, written);
        return done ? MV_OK : MV_WRITE_FAILED;
    });
}

MV_ERRCODE CCmdSerial::Purge(std::uint32_t flags) {
    return Guarded(MV_PURGE_FAILED, [&] {
        const platform::MutexLock lock(mutex);
        return port.Purge((flags & kMvPurgeReceive) != 0, (flags & kMvPurgeTransmit) != 0)
                   ? MV_OK
                   : MV_PURGE_FAILED;
    });
}

MV_ERRCODE CCmdSerial::Close() {
    const platform::MutexLock lock(mutex);
    port.Close();
    SetOpen(false);
    return MV_OK;
}

CCmdChannel* CreateCmdSerialInstance() {
    return Guarded(static_cast<CCmdChannel*>(nullptr),
                   []() -> CCmdChannel* { return new CCmdSerial; });
}

void DeleteCmdSerialInstance(CCmdChannel* channel) {
    delete channel;
}
