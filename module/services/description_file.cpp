// description_file.cpp - the file in a camera that describes its features
#include "services/description_file.h"

#include "platform/text.h"
#include "services/transport.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace pyxen {

namespace {

constexpr std::uint64_t kUrlRegister = 0x200; // GigE Vision: the first URL, 512 bytes
constexpr std::uint32_t kUrlBytes = 512;
constexpr std::uint64_t kManifestRegister = 0x1D0; // USB3 Vision: the address of the table
constexpr std::uint64_t kManifestCountBytes = 8;
constexpr std::uint32_t kManifestEntryBytes = 64;
constexpr std::uint64_t kMostManifestEntries = 1024;
constexpr std::uint64_t kMostFileBytes = 64u << 20;
constexpr std::uint32_t kMostReadBytes = 64u << 10;

/// Where the file is in the camera's memory.
struct FilePlace {
    std::string name;
    std::uint64_t address = 0;
    std::uint64_t bytes = 0;
};

using Bytes = std::vector<char>;

ServiceOutcome NoFile(const std::string& why) {
    return {MV_SERVICE_NOT_SUPPORTED, "the camera names no description file: " + why};
}

class CameraMemory {
public:
    CameraMemory(const CPyxenAPIAccess& access, PxnHandle camera) : api(access), handle(camera) {}

    /// Reads a whole area; its bytes have been checked against the limits.
    ServiceOutcome Read(std::uint64_t address, std::uint64_t bytes, Bytes& content) const {
        // Registers are read in words; what is too much is cut off.
        content.resize(static_cast<std::size_t>((bytes + 3) / 4 * 4));
        for (std::size_t done = 0; done < content.size();) {
            const auto part = static_cast<std::uint32_t>(
                std::min<std::size_t>(content.size() - done, kMostReadBytes));
            std::uint32_t read = 0;
            const PxnError error =
                api.PxnMemoryRead(handle, address + done, part, content.data() + done, &read);
            if (error == PxnErrInvalidAddress || error == PxnErrNotSupported ||
                error == PxnErrNotImplemented) {
                return NoFile("it has no such registers");
            }
            if (error || read != part) {
                return SdkFailure("the description file", error ? error : PxnErrIncomplete, true);
            }
            done += part;
        }
        content.resize(static_cast<std::size_t>(bytes));
        return {};
    }

private:
    const CPyxenAPIAccess& api;
    const PxnHandle handle;
};

bool TakeHexadecimal(std::string_view text, std::uint64_t& number) {
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return error == std::errc() && end == text.data() + text.size();
}

/// "Local:NAME;ADDRESS;LENGTH", then perhaps "?SchemaVersion=..."; numbers are hexadecimal. Other
/// URLs name a file outside the camera.
bool TakeUrl(const std::string& url, FilePlace& place) {
    constexpr std::string_view kScheme = "local:";
    const std::string_view text = std::string_view(url).substr(0, url.find('?'));
    if (text.size() < kScheme.size() ||
        platform::CompareNoCase(std::string(text.substr(0, kScheme.size())).c_str(),
                                kScheme.data()) != 0) {
        return false;
    }
    const std::size_t first = text.find(';');
    const std::size_t second = first == text.npos ? text.npos : text.find(';', first + 1);
    if (second == text.npos) {
        return false;
    }
    std::string_view name = text.substr(kScheme.size(), first - kScheme.size());
    name.remove_prefix(std::min(name.find_first_not_of('/'), name.size())); // "Local:///NAME"
    place.name = name;
    return TakeHexadecimal(text.substr(first + 1, second - first - 1), place.address) &&
           TakeHexadecimal(text.substr(second + 1), place.bytes);
}

ServiceOutcome FindByUrl(const CameraMemory& memory, FilePlace& place) {
    Bytes content;
    ServiceOutcome outcome = memory.Read(kUrlRegister, kUrlBytes, content);
    if (!outcome) {
        return outcome;
    }
    content.push_back('\0');
    const std::string url = content.data();
    if (url.empty()) {
        return NoFile("its URL is empty");
    }
    return TakeUrl(url, place) ? ServiceOutcome() : NoFile("its URL is \"" + url + "\"");
}

std::uint64_t LittleEndian(const char* bytes, unsigned count) {
    std::uint64_t number = 0;
    for (unsigned index = count; index-- > 0;) {
        number = (number << 8) | static_cast<unsigned char>(bytes[index]);
    }
    return number;
}

/// The newest file that describes features.
ServiceOutcome FindByManifest(const CameraMemory& memory, FilePlace& place) {
    Bytes content;
    ServiceOutcome outcome = memory.Read(kManifestRegister, 8, content);
    if (!outcome) {
        return outcome;
    }
    const std::uint64_t table = LittleEndian(content.data(), 8);
    if (!(outcome = memory.Read(table, kManifestCountBytes, content))) {
        return outcome;
    }
    const std::uint64_t count = LittleEndian(content.data(), 8);
    if (count > kMostManifestEntries) {
        return NoFile("its table has " + std::to_string(count) + " entries");
    }
    std::uint64_t newest = 0;
    for (std::uint64_t index = 0; index < count; ++index) {
        const std::uint64_t entry = table + kManifestCountBytes + index * kManifestEntryBytes;
        if (!(outcome = memory.Read(entry, kManifestEntryBytes, content))) {
            return outcome;
        }
        const std::uint64_t version = LittleEndian(content.data(), 4);
        const std::uint64_t kind = LittleEndian(content.data() + 4, 4);
        const bool isOfFeatures = (kind & 7u) == 0;
        if (isOfFeatures && (place.bytes == 0 || version > newest)) {
            const bool isCompressed = ((kind >> 10) & 0x3Fu) == 1;
            newest = version;
            place.name = isCompressed ? "description.zip" : "description.xml";
            place.address = LittleEndian(content.data() + 8, 8);
            place.bytes = LittleEndian(content.data() + 16, 8);
        }
    }
    return place.bytes == 0 ? NoFile("its table has none") : ServiceOutcome();
}

ServiceOutcome ReadFile(const ServiceContext& context, FilePlace& place, Bytes& content) {
    ServiceModule camera;
    ServiceModule port;
    ServiceOutcome outcome = context.FindModule("Camera", camera);
    if (!outcome || !(outcome = context.FindModule("Interface", port))) {
        return outcome;
    }
    const CPyxenAPIAccess& api = context.Grabber().Api();
    const std::vector<PxnInterfaceInfo> interfaces = ListInterfaces(api);
    const PxnInterfaceInfo* const found = FindInterface(interfaces, port.cache->GetHandle());
    const CameraMemory memory(api, camera.cache->GetHandle());
    const std::uint32_t unknown = PxnTransportLayerUnknown;
    switch (found ? found->interfaceType : unknown) {
    case PxnTransportLayerGEV:
        outcome = FindByUrl(memory, place);
        break;
    case PxnTransportLayerU3V:
        outcome = FindByManifest(memory, place);
        break;
    default:
        return NoFile("it is neither a GigE Vision nor a USB3 Vision camera");
    }
    if (!outcome) {
        return outcome;
    }
    if (place.bytes == 0 || place.bytes > kMostFileBytes) {
        return NoFile("it has " + std::to_string(place.bytes) + " bytes");
    }
    return memory.Read(place.address, place.bytes, content);
}

} // namespace

ServiceOutcome ReadDescriptionFile(ServiceContext& context, MV_DATA_RECEIVER receiver,
                                   void* receiverContext) {
    FilePlace place;
    Bytes content;
    ServiceOutcome outcome = context.WhileLocked([&] { return ReadFile(context, place, content); });
    if (outcome) {
        CallReceiver(receiver, place.name.c_str(), static_cast<const void*>(content.data()),
                     static_cast<std::uint64_t>(content.size()), receiverContext);
    }
    return outcome;
}

} // namespace pyxen
