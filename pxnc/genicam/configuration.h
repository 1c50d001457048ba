// configuration.h - what the configuration file and the environment ask for
#pragma once

#include "pxnc.h"

#include <cstdint>
#include <string>
#include <vector>

namespace genicam {

/// Limits of a stream packet's size in bytes, headers included.
inline constexpr std::uint32_t kLeastPacketSize = 576;
inline constexpr std::uint32_t kGreatestPacketSize = 65535;

/// The library's settings; a default-constructed one is what holds without a file.
///
/// The file is XML. Only this part of it is read, wherever it is; everything else belongs to
/// others:
///
///     <genicam>
///       <gige interfaces="eth0,eth1" packetSize="8192" resend="true"/>
///       <usb enabled="true"/>
///     </genicam>
struct Configuration {
    /// Network interfaces whose cameras are listed; empty for all.
    std::vector<std::string> interfaces;
    /// Bytes of a stream packet; 0 leaves what the camera has.
    std::uint32_t packetSize = 0;
    bool packetResend = true;
    bool usbEnabled = true;
    /// Milliseconds between two searches for cameras.
    std::uint32_t pollMs = 1000;

    /// Reads the file and PYXEN_GENICAM_POLL_MS. A null path leaves the defaults.
    /// PxnErrNotFound when the file cannot be read, PxnErrXml when it is malformed or a value is
    /// invalid; file, line and reason are written to the standard error stream.
    PxnError Load(const wchar_t* path);
};

} // namespace genicam
