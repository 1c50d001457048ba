// format_handling.h - how the module hands over the camera's pixel format
#pragma once

#include "apps/common/host_image.h"
#include "apps/common/service_client.h"

#include <optional>
#include <string>

enum class FormatHandling {
    kAsItIs,          ///< the host's image is what the camera sends
    kConverted,       ///< unpacked, or turned into RGB
    kConvertedInPart, ///< the module unpacks a line as if it had one value for each pixel
};

/// `format` is the camera's feature PixelFormat with its number. Judges by the bits of a pixel that
/// the number has by the naming convention (PFNC), compared with those of the host's image; a
/// number or a layout that has none counts as kAsItIs.
FormatHandling HandlingOf(const ServiceValue& format, const ImageLayout& layout);

/// The present pixel format of the open camera; nullopt when it cannot be read.
std::optional<ServiceValue> ReadPixelFormat(ServiceClient* services);

/// A warning for people when images of this format look wrong; empty otherwise.
std::string FormatWarning(const ServiceValue& format, const ImageLayout& layout);
/// Writes it to standard error.
void WarnOfFormat(const ServiceValue& format, const ImageLayout& layout);
