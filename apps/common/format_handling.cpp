// format_handling.cpp - how the module hands over the camera's pixel format
#include "apps/common/format_handling.h"

#include "platform/printable_text.h"

#include <cstdint>
#include <cstdio>

namespace {

constexpr std::uint64_t kYuv444 = 0x02180020; // as many bits as the RGB that it is turned into
constexpr std::uint64_t kYuv422 = 0x0210001F;
constexpr std::uint64_t kYuv411 = 0x020C001E;

} // namespace

FormatHandling HandlingOf(const ServiceValue& format, const ImageLayout& layout) {
    const auto code = static_cast<std::uint64_t>(format.integer);
    const std::uint64_t bitsOfPixel = code >> 16 & 0xFF;
    const std::uint64_t bitsOfHost = std::uint64_t{layout.components} * layout.allocatedBits;
    if (code == kYuv444 || code == kYuv422 || code == kYuv411) {
        return FormatHandling::kConverted;
    }
    if (bitsOfPixel == 0 || bitsOfHost == 0 || bitsOfPixel == bitsOfHost) {
        return FormatHandling::kAsItIs;
    }
    return layout.components > 1 ? FormatHandling::kConvertedInPart : FormatHandling::kConverted;
}

std::optional<ServiceValue> ReadPixelFormat(ServiceClient* services) {
    return services ? services->TryReadFeature("Camera", "PixelFormat") : std::nullopt;
}

std::string FormatWarning(const ServiceValue& format, const ImageLayout& layout) {
    if (HandlingOf(format, layout) != FormatHandling::kConvertedInPart) {
        return {};
    }
    return "images in " + format.text +
           " look wrong: the grabber module unpacks only the first of every " +
           std::to_string(layout.components) +
           " values and no line but the first from its beginning; choose the format of the same "
           "depth that is not packed";
}

void WarnOfFormat(const ServiceValue& format, const ImageLayout& layout) {
    const std::string warning = FormatWarning(format, layout);
    if (!warning.empty()) {
        std::fprintf(stderr, "mivora: warning: %s\n", platform::PrintableText(warning).c_str());
    }
}
