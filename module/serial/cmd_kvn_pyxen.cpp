// cmd_kvn_pyxen.cpp - a command channel over a camera's serial port
#include "serial/cmd_kvn_pyxen.h"

#include "platform/text.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "serial/serial_dialog.h"

#include <algorithm>
#include <cstdio>

using namespace pyxen;

namespace {

/// A write with pauses on the calling thread. What was sent before the port was closed counts;
/// after that it fails.
struct DelayedWrite {
    const CCmdKVNPyxen* channel = nullptr;
    std::uint64_t closings = 0; // of the channel when it began
    const DelayedWrite* outer = nullptr;
};

thread_local const DelayedWrite* delayedWrite = nullptr;

// Registers, relative to the port's base.
constexpr std::uint64_t kInquiry = 0x000;
constexpr std::uint64_t kCapability = 0x100;
constexpr std::uint64_t kMode = 0x104;
constexpr std::uint64_t kTransmitStatus = 0x124;
constexpr std::uint64_t kTransmitControl = 0x128;
constexpr std::uint64_t kTransmitLength = 0x12C;
constexpr std::uint64_t kReceiveStatus = 0x144;
constexpr std::uint64_t kReceiveControl = 0x148;
constexpr std::uint64_t kReceiveLength = 0x14C;
constexpr std::uint64_t kTransmitBuffer = 0x400;
constexpr std::uint64_t kReceiveBuffer = 0x800;

constexpr std::uint32_t kPortExists = 0x3;
constexpr std::uint32_t kTransmitReady = 0x1;
constexpr std::uint32_t kEnableAndReset = 3;
constexpr std::uint32_t kDisable = 1;
constexpr std::uint32_t kClearAll = 0xFFFFFFFF;
constexpr std::uint64_t kTransmitBufferSize = 1024;

constexpr const char* kPortNameKey = "PORTNAME";
struct FieldKey {
    SerialField field;
    const char* key;
    std::uint32_t SerialSettings::*index;
};
constexpr FieldKey kFieldKeys[] = {
    {SerialField::kBaud, "BAUD", &SerialSettings::baudIndex},
    {SerialField::kParity, "PARITY", &SerialSettings::parityIndex},
    {SerialField::kByteSize, "BYTESIZE", &SerialSettings::byteSizeIndex},
    {SerialField::kStopBits, "STOPBITS", &SerialSettings::stopBitsIndex},
};

void StoreCount(std::uint64_t* out, std::uint64_t value) {
    if (out) {
        *out = value;
    }
}

} // namespace

/// The registers and buffers of one port of the open camera.
class CCmdKVNPyxen::Registers {
public:
    Registers(ISerialGrabber& owner, PxnHandle openCamera, const SerialPortRow& row)
        : grabber(owner), api(owner.Api()), camera(openCamera), base(row.registerBase) {}

    /// Fails once the grabber has closed the camera, so that polling ends.
    bool Read(std::uint64_t offset, std::uint32_t& value) {
        return grabber.CameraHandle() == camera &&
               api.ReadRegister32(camera, base + offset, &value, true);
    }

    bool Write(std::uint64_t offset, std::uint32_t value) {
        return api.WriteRegister32(camera, base + offset, value, true);
    }

    /// Takes at most `request` of the waiting bytes; fails when none is waiting.
    bool Receive(std::uint8_t* buffer, std::uint32_t request, std::uint32_t& done) {
        std::uint32_t waiting = 0;
        if (!Read(kReceiveLength, waiting)) {
            return false;
        }
        const std::uint32_t size = std::min(request, waiting);
        return size != 0 &&
               api.PxnMemoryRead(camera, base + kReceiveBuffer, size,
                                 reinterpret_cast<char*>(buffer), &done) == 0 &&
               done <= size && Write(kReceiveLength, done);
    }

    /// Sends one piece that fits into the transmit buffer. Waits without limit for the port to be
    /// ready; a register that cannot be read ends the wait.
    bool Send(const std::uint8_t* buffer, std::uint32_t size) {
        std::uint32_t status = 0;
        while ((status & kTransmitReady) == 0) {
            if (!Read(kTransmitStatus, status)) {
                return false;
            }
        }
        std::uint32_t done = 0;
        return api.PxnMemoryWrite(camera, base + kTransmitBuffer, size,
                                  reinterpret_cast<const char*>(buffer), &done) == 0 &&
               done == size && Write(kTransmitLength, size);
    }

private:
    const ISerialGrabber& grabber;
    CPyxenAPIAccess& api;
    PxnHandle camera;
    std::uint64_t base;
};

CCmdKVNPyxen::CCmdKVNPyxen(ISerialGrabber* grabberToUse, platform::Mutex& mutexToHold)
    : grabber(grabberToUse), portMutex(mutexToHold) {
    ports.reserve(SerialPortTable().size());
}

const char* CCmdKVNPyxen::GetChannelTypeName() {
    return "Pyxen Serial Port";
}

const char* CCmdKVNPyxen::GetConfigText() {
    platform::MutexLock lock(settingsMutex);
    std::snprintf(configText, sizeof configText,
                  "%s Baud, Parity = %s, Bytesize = %s, Stopbits = %s",
                  SerialText(SerialField::kBaud, settings.baudIndex),
                  SerialText(SerialField::kParity, settings.parityIndex),
                  SerialText(SerialField::kByteSize, settings.byteSizeIndex),
                  SerialText(SerialField::kStopBits, settings.stopBitsIndex));
    return configText;
}

MV_ERRCODE CCmdKVNPyxen::SetConfig(CIniFile* ini, const char* section) {
    if (const MV_ERRCODE result = CCmdChannel::SetConfig(ini, section); result != MV_OK) {
        return result;
    }
    const SerialSettings current = GetSettings();
    bool saved = ini->WriteText(section, kPortNameKey, current.portName);
    for (const FieldKey& row : kFieldKeys) {
        saved =
            ini->WriteText(section, row.key, SerialText(row.field, current.*row.index)) && saved;
    }
    return saved ? MV_OK : MV_CONFIG_NOT_SAVED;
}

MV_ERRCODE CCmdKVNPyxen::GetConfig(CIniFile* ini, const char* section) {
    if (const MV_ERRCODE result = CCmdChannel::GetConfig(ini, section); result != MV_OK) {
        return result;
    }
    const SerialSettings defaults = GetSettings();
    SerialSettings read = defaults;
    ini->GetText(section, kPortNameKey, defaults.portName, read.portName, sizeof read.portName);
    for (const FieldKey& row : kFieldKeys) {
        char text[32];
        ini->GetText(section, row.key, SerialText(row.field, defaults.*row.index), text,
                     sizeof text);
        read.*row.index = SerialIndex(row.field, text);
    }
    platform::MutexLock lock(settingsMutex);
    read.intercharacterDelay = settings.intercharacterDelay; // has no key
    settings = read;
    return MV_OK;
}

MV_ERRCODE CCmdKVNPyxen::ConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) {
    const MV_DLG_EXITCODE result = NoThrow(MV_DLG_CANCEL, [&] { return RunConfigDialog(parent); });
    if (exitCode) {
        *exitCode = result;
    }
    return MV_OK;
}

MV_DLG_EXITCODE CCmdKVNPyxen::RunConfigDialog(MV_WINDOW parent) {
    SerialDialogData data;
    {
        platform::MutexLock lock(portMutex);
        EnumeratePorts();
        data.ports = ports;
        data.settings = GetSettings();
        data.portIndex = FindPortIndex(data.settings.portName, data.ports);
    }
    // Without the mutex, since the dialog may stay open for long.
    if (RunSerialDialog(parent, data) != MV_DLG_OK) {
        return MV_DLG_CANCEL;
    }
    platform::MutexLock lock(settingsMutex);
    const bool selected =
        data.portIndex >= 0 && static_cast<std::size_t>(data.portIndex) < data.ports.size();
    // Without a selected port the channel keeps its present one, which may have changed meanwhile.
    std::snprintf(data.settings.portName, sizeof data.settings.portName, "%s",
                  selected ? data.ports[static_cast<std::size_t>(data.portIndex)].iniName
                           : settings.portName);
    settings = data.settings;
    return MV_DLG_OK;
}

MV_ERRCODE CCmdKVNPyxen::Open() {
    if (!grabber) {
        return MV_CHANNEL_OPEN_FAILED;
    }
    platform::MutexLock lock(portMutex);
    const PxnHandle camera = grabber->CameraHandle();
    if (!camera) {
        return MV_CHANNEL_OPEN_FAILED;
    }
    if (openPortId != kNoSerialPort) {
        return MV_CHANNEL_ALREADY_OPEN;
    }
    const SerialSettings current = GetSettings();
    openPortId = GetPortIdByName(current.portName);
    const SerialPortRow* row = FindSerialPortById(openPortId);
    if (!row) {
        return MV_CHANNEL_OPEN_FAILED;
    }
    Registers port(*grabber, camera, *row);
    bool done = port.Write(kMode, SerialModeWord(current));
    done = port.Write(kTransmitControl, kEnableAndReset) && done;
    done = port.Write(kReceiveControl, kEnableAndReset) && done;
    done = port.Write(kReceiveStatus, kClearAll) && done;
    if (!done) {
        // Compatibility: the port id stays recorded, so that hosts get "already open" until Close.
        return MV_CHANNEL_OPEN_FAILED;
    }
    SetOpen(true);
    return MV_OK;
}

MV_ERRCODE CCmdKVNPyxen::ReadByte(std::uint8_t* buffer, std::uint64_t* count) {
    StoreCount(count, 0);
    if (!grabber) {
        return MV_READ_FAILED;
    }
    platform::MutexLock lock(portMutex);
    const PxnHandle camera = grabber->CameraHandle();
    const SerialPortRow* row = FindSerialPortById(openPortId);
    if (!camera || !row) {
        return MV_READ_FAILED;
    }
    std::uint32_t done = 0;
    if (!Registers(*grabber, camera, *row).Receive(buffer, 1, done) || done != 1) {
        return MV_READ_FAILED;
    }
    StoreCount(count, done);
    return MV_OK;
}

MV_ERRCODE CCmdKVNPyxen::ReadBuffer(std::uint8_t* buffer, std::uint64_t length,
                                    std::uint64_t* count) {
    StoreCount(count, 0);
    if (!grabber) {
        return MV_READ_FAILED;
    }
    platform::MutexLock lock(portMutex);
    const PxnHandle camera = grabber->CameraHandle();
    const SerialPortRow* row = FindSerialPortById(openPortId);
    if (!camera || !row) {
        return MV_READ_FAILED;
    }
    Registers port(*grabber, camera, *row);
    std::uint32_t waiting = 0;
    if (!port.Read(kReceiveLength, waiting)) {
        return MV_READ_FAILED;
    }
    const auto request = static_cast<std::uint32_t>(std::min<std::uint64_t>(length, waiting));
    if (request == 0) {
        return MV_OK;
    }
    std::uint32_t done = 0;
    if (!port.Receive(buffer, request, done)) {
        return MV_READ_FAILED;
    }
    StoreCount(count, done);
    return MV_OK;
}

MV_ERRCODE CCmdKVNPyxen::WriteByte(const std::uint8_t* buffer, std::uint64_t* count) {
    StoreCount(count, 0);
    if (!grabber) {
        return MV_WRITE_FAILED;
    }
    platform::MutexLock lock(portMutex);
    if (delayedWrite && delayedWrite->channel == this && delayedWrite->closings != closings) {
        return MV_WRITE_FAILED;
    }
    return Transmit(grabber->CameraHandle(), buffer, 1, count);
}

MV_ERRCODE CCmdKVNPyxen::WriteBuffer(const std::uint8_t* buffer, std::uint64_t length,
                                     std::uint64_t* count) {
    StoreCount(count, 0);
    if (!grabber) {
        return MV_WRITE_FAILED;
    }
    std::uint32_t delay = 0;
    DelayedWrite write;
    {
        platform::MutexLock lock(portMutex);
        const PxnHandle camera = grabber->CameraHandle();
        delay = GetSettings().intercharacterDelay;
        if (!camera || delay == 0) {
            return Transmit(camera, buffer, length, count);
        }
        write = {this, closings, delayedWrite};
    }
    // Without the mutex, which WriteByte locks for each byte: others may use it during the pauses.
    delayedWrite = &write;
    const MV_ERRCODE result = WriteBufferWithDelay(buffer, length, count, delay);
    delayedWrite = write.outer;
    return result;
}

MV_ERRCODE CCmdKVNPyxen::Transmit(PxnHandle camera, const std::uint8_t* buffer,
                                  std::uint64_t length, std::uint64_t* count) {
    if (!camera) {
        return MV_WRITE_FAILED;
    }
    const SerialPortRow* row = FindSerialPortById(openPortId);
    if (!row) {
        // Compatibility: hosts write to closed channels and count on success.
        StoreCount(count, length);
        return MV_OK;
    }
    Registers port(*grabber, camera, *row);
    for (std::uint64_t written = 0; written < length;) {
        const auto piece =
            static_cast<std::uint32_t>(std::min(length - written, kTransmitBufferSize));
        if (!port.Send(buffer + written, piece)) {
            return MV_WRITE_FAILED;
        }
        written += piece;
        StoreCount(count, written);
    }
    return MV_OK;
}

MV_ERRCODE CCmdKVNPyxen::Purge(std::uint32_t flags) {
    if (!grabber) {
        return MV_WRITE_FAILED;
    }
    platform::MutexLock lock(portMutex);
    const PxnHandle camera = grabber->CameraHandle();
    if (!camera) {
        return MV_WRITE_FAILED;
    }
    const SerialPortRow* row = FindSerialPortById(openPortId);
    if (!row) {
        return MV_PURGE_FAILED;
    }
    Registers port(*grabber, camera, *row);
    bool done = true;
    if ((flags & kMvPurgeReceive) != 0) {
        done = port.Write(kReceiveControl, kEnableAndReset);
    }
    if ((flags & kMvPurgeTransmit) != 0) {
        done = port.Write(kTransmitControl, kEnableAndReset) && done;
    }
    return done ? MV_OK : MV_PURGE_FAILED;
}

MV_ERRCODE CCmdKVNPyxen::Close() {
    if (!grabber) {
        return MV_OK;
    }
    platform::MutexLock lock(portMutex);
    const PxnHandle camera = grabber->CameraHandle();
    const SerialPortRow* row = FindSerialPortById(openPortId);
    if (camera && row) {
        Registers port(*grabber, camera, *row);
        port.Write(kTransmitControl, kDisable);
        port.Write(kReceiveControl, kDisable);
        port.Write(kReceiveStatus, kClearAll);
    }
    SetOpen(false);
    closings += row ? 1 : 0;
    openPortId = kNoSerialPort;
    return MV_OK;
}

std::uint32_t CCmdKVNPyxen::GetChannelKind() {
    return MVCMD_MODULE;
}

void CCmdKVNPyxen::EnumeratePorts() {
    platform::MutexLock lock(portMutex);
    ports.clear();
    const PxnHandle camera = grabber ? grabber->CameraHandle() : nullptr;
    if (!camera) {
        return;
    }
    for (const SerialPortRow& row : SerialPortTable()) {
        Registers port(*grabber, camera, row);
        std::uint32_t inquiry = 0;
        std::uint32_t capability = 0;
        const bool inquired = port.Read(kInquiry, inquiry);
        const bool hasCapability = port.Read(kCapability, capability);
        if (inquired && hasCapability && (inquiry & kPortExists) == kPortExists) {
            ports.push_back({row.id, row.iniName, row.displayName, capability});
        }
    }
}

std::int32_t CCmdKVNPyxen::GetPortIdByName(const char* name) {
    const SerialPortRow* row = FindSerialPortByName(name);
    return row ? row->id : kNoSerialPort;
}

const char* CCmdKVNPyxen::GetPortNameById(std::int32_t id) {
    const SerialPortRow* row = FindSerialPortById(id);
    return row ? row->iniName : "";
}

std::int32_t CCmdKVNPyxen::FindPortIndex(const char* name,
                                         const std::vector<SerialPortEntry>& list) {
    const auto found = std::find_if(list.begin(), list.end(), [name](const auto& entry) {
        return name && platform::CompareNoCase(entry.iniName, name) == 0;
    });
    return found == list.end() ? -1 : static_cast<std::int32_t>(found - list.begin());
}

std::vector<SerialPortEntry> CCmdKVNPyxen::GetPorts() const {
    platform::MutexLock lock(portMutex);
    return ports;
}

SerialSettings CCmdKVNPyxen::GetSettings() const {
    platform::MutexLock lock(settingsMutex);
    return settings;
}

void CCmdKVNPyxen::SetSettings(const SerialSettings& newSettings) {
    platform::MutexLock lock(settingsMutex);
    settings = newSettings;
}
