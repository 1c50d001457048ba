// cmd_kvn_pyxen.h - a command channel over a camera's serial port
#pragma once

#include "mivora/cmd_channel.h"
#include "platform/mutex.h"
#include "serial/serial_grabber.h"
#include "serial/serial_settings.h"

#include <cstdint>
#include <vector>

/// Drives a serial port of the open camera through its register space.
///
/// Any thread; the grabber's mutex is held around every port operation, across all its registers,
/// so that the traffic of all channels and the preparation of frame buffers exclude each other.
/// Operations that only read or change the settings do not take it: they never wait for a port.
/// A write waits without limit for the port to accept data, and fails when a register cannot be
/// read. In every operation a null `count` is allowed.
class CCmdKVNPyxen final : public CCmdChannel {
public:
    /// Owns neither. `grabberToUse` may be null; `mutexToHold` guards the port.
    CCmdKVNPyxen(pyxen::ISerialGrabber* grabberToUse, platform::Mutex& mutexToHold);
    ~CCmdKVNPyxen() override = default;

    const char* GetChannelTypeName() override;
    /// The text is valid until the next call.
    const char* GetConfigText() override;
    MV_ERRCODE SetConfig(CIniFile* ini, const char* section) override;
    MV_ERRCODE GetConfig(CIniFile* ini, const char* section) override;
    /// New settings take effect at the next Open. Without windows it behaves as if cancelled.
    MV_ERRCODE ConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) override;
    MV_ERRCODE Open() override;
    MV_ERRCODE ReadByte(std::uint8_t* buffer, std::uint64_t* count) override;
    MV_ERRCODE WriteByte(const std::uint8_t* buffer, std::uint64_t* count) override;
    /// Reads at most what is waiting; success with count 0 when nothing is.
    MV_ERRCODE ReadBuffer(std::uint8_t* buffer, std::uint64_t length,
                          std::uint64_t* count) override;
    MV_ERRCODE WriteBuffer(const std::uint8_t* buffer, std::uint64_t length,
                           std::uint64_t* count) override;
    MV_ERRCODE Purge(std::uint32_t flags) override;
    MV_ERRCODE Close() override;
    std::uint32_t GetChannelKind() override;

    /// Lists the ports that the open camera offers anew; none without an open camera.
    virtual void EnumeratePorts();
    /// kNoSerialPort when there is none of that name (case ignored), and for a null name.
    virtual std::int32_t GetPortIdByName(const char* name);
    /// The ini name; an empty text when there is no such port.
    virtual const char* GetPortNameById(std::int32_t id);
    /// The index of the entry with that ini name (case ignored); -1 when none, and for a null name.
    virtual std::int32_t FindPortIndex(const char* name,
                                       const std::vector<pyxen::SerialPortEntry>& list);

    /// The ports that EnumeratePorts found last. Waits for a port operation that is running.
    std::vector<pyxen::SerialPortEntry> GetPorts() const;
    /// What the channel is configured to. New settings take effect at the next Open, except for the
    /// delay, which takes effect at once.
    pyxen::SerialSettings GetSettings() const;
    void SetSettings(const pyxen::SerialSettings& newSettings);

private:
    class Registers;

    /// Writes in pieces; MV_WRITE_FAILED without a camera.
    MV_ERRCODE Transmit(PxnHandle camera, const std::uint8_t* buffer, std::uint64_t length,
                        std::uint64_t* count) REQUIRES(portMutex);
    MV_DLG_EXITCODE RunConfigDialog(MV_WINDOW parent);

    pyxen::ISerialGrabber* const grabber;

    // Both may be held at once, portMutex locked first. portMutex is held across SDK calls, which
    // can take for ever; settingsMutex only while the settings are copied, with no call out.
    platform::Mutex& portMutex;
    mutable platform::Mutex settingsMutex;
    std::int32_t openPortId GUARDED_BY(portMutex) = pyxen::kNoSerialPort;
    std::uint64_t closings GUARDED_BY(portMutex) = 0; // of a port that was open
    std::vector<pyxen::SerialPortEntry> ports GUARDED_BY(portMutex);
    pyxen::SerialSettings settings GUARDED_BY(settingsMutex);
    char configText[64] GUARDED_BY(settingsMutex) = {};
};
