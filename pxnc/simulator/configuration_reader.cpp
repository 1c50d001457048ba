// configuration_reader.cpp - reads PxnC.xml
#include "pxnc/simulator/configuration_reader.h"

#include "platform/file_system.h"
#include "pxnc/simulator/serial_devices.h"
#include "pxnc/skeleton/xml_reader.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace pxsim {
namespace {

constexpr std::uint32_t kLargestNumber = 0x7FFFFFFF;

template <typename T, std::size_t kCount>
T Choice(const skeleton::XmlReader& xml, pugi::xml_node node, const char* attribute, T fallback,
         const std::array<std::pair<const char*, T>, kCount>& choices) {
    const std::string value = xml.TextOr(node, attribute, "");
    if (value.empty()) {
        return fallback;
    }
    std::string expected;
    for (const auto& [name, choice] : choices) {
        if (value == name) {
            return choice;
        }
        expected += (expected.empty() ? "" : ", ") + std::string(name);
    }
    xml.Fail(node, std::string("\"") + attribute + "\" is \"" + value + "\", expected one of " +
                       expected);
}

constexpr std::array<std::pair<const char*, CameraKind>, 3> kKinds{
    {{"gige", CameraKind::kGigE}, {"usb", CameraKind::kUsb}, {"serial", CameraKind::kSerial}}};

constexpr std::array<std::pair<const char*, Pattern>, 6> kPatterns{
    {{"gradient", Pattern::kGradient},
     {"bars", Pattern::kColorBars},
     {"chart", Pattern::kResolutionChart},
     {"noise", Pattern::kNoise},
     {"black", Pattern::kBlack},
     {"white", Pattern::kWhite}}};

constexpr std::array<std::pair<const char*, std::uint32_t>, 4> kAccess{
    {{"full", PxnAccessModeFull | PxnAccessModeRead},
     {"read", PxnAccessModeRead},
     {"none", 0},
     {"unknown", PxnAccessModeUnknown}}};

constexpr std::array<std::pair<const char*, std::uint32_t>, 12> kTypes{
    {{"Unknown", PxnTransportLayerUnknown},
     {"GEV", PxnTransportLayerGEV},
     {"CL", PxnTransportLayerCL},
     {"IIDC", PxnTransportLayerIIDC},
     {"UVC", PxnTransportLayerUVC},
     {"CXP", PxnTransportLayerCXP},
     {"CLHS", PxnTransportLayerCLHS},
     {"U3V", PxnTransportLayerU3V},
     {"Ethernet", PxnTransportLayerEthernet},
     {"PCI", PxnTransportLayerPCI},
     {"Custom", PxnTransportLayerCustom},
     {"Mixed", PxnTransportLayerMixed}}};

template <typename List>
bool HasId(const List& list, const std::string& id) {
    return std::any_of(list.begin(), list.end(), [&id](const auto& one) { return one.id == id; });
}

/// Fills a configuration from a document.
class Reader {
public:
    Reader(const skeleton::XmlReader& newXml, Configuration& newConfiguration)
        : xml(newXml), configuration(newConfiguration) {}

    void Read() {
        const pugi::xml_node root = xml.Root("PxnC");
        xml.Allow(root, {}, {"transportLayer", "interface", "camera", "faults"});
        for (const pugi::xml_node node : root.children("transportLayer")) {
            ReadTransportLayer(node);
        }
        for (const pugi::xml_node node : root.children("interface")) {
            ReadInterface(node);
        }
        for (const pugi::xml_node node : root.children("camera")) {
            ReadCamera(node);
        }
        for (const pugi::xml_node faults : root.children("faults")) {
            ReadFaults(faults);
        }
    }

private:
    void ReadTransportLayer(pugi::xml_node node) {
        xml.Allow(node, {"id", "name", "model", "vendor", "version", "path", "type"}, {});
        TransportLayerConfiguration layer;
        layer.id = xml.Text(node, "id");
        layer.name = xml.TextOr(node, "name", layer.id);
        layer.model = xml.TextOr(node, "model", layer.id);
        layer.vendor = xml.TextOr(node, "vendor", layer.vendor);
        layer.version = xml.TextOr(node, "version", layer.version);
        layer.path = xml.TextOr(node, "path", layer.id + ".cti");
        layer.type = Choice<std::uint32_t>(xml, node, "type", PxnTransportLayerCustom, kTypes);
        Place(configuration.transportLayers, std::move(layer));
    }

    void ReadInterface(pugi::xml_node node) {
        xml.Allow(node, {"id", "name", "type", "transportLayer"}, {});
        InterfaceConfiguration interface;
        interface.id = xml.Text(node, "id");
        interface.name = xml.TextOr(node, "name", interface.id);
        interface.transportLayerId = xml.Text(node, "transportLayer");
        const auto layer =
            std::find_if(configuration.transportLayers.begin(), configuration.transportLayers.end(),
                         [&](const auto& one) { return one.id == interface.transportLayerId; });
        if (layer == configuration.transportLayers.end()) {
            xml.Fail(node, "there is no transport layer \"" + interface.transportLayerId + "\"");
        }
        interface.type = Choice<std::uint32_t>(xml, node, "type", layer->type, kTypes);
        Place(configuration.interfaces, std::move(interface));
    }

    void ReadCamera(pugi::xml_node node) {
        xml.Allow(node,
                  {"kind", "id", "extendedId", "name", "model", "vendor", "serial", "interface",
                   "sensorWidth", "sensorHeight", "pattern", "seed", "freeRunning", "plugged",
                   "access", "streams", "extraFeatures"},
                  {"feature", "omit", "port"});
        CameraConfiguration camera;
        camera.kind = Choice(xml, node, "kind", CameraKind::kGigE, kKinds);
        ReadIdentity(node, camera);
        camera.sensorWidth = xml.NumberOr(node, "sensorWidth", camera.sensorWidth, 64, 16384);
        camera.sensorHeight = xml.NumberOr(node, "sensorHeight", camera.sensorHeight, 64, 16384);
        camera.pattern = Choice(xml, node, "pattern", Pattern::kGradient, kPatterns);
        camera.seed = xml.NumberOr(node, "seed", camera.seed, 0, kLargestNumber);
        camera.freeRunning = xml.FlagOr(node, "freeRunning", camera.freeRunning);
        camera.plugged = xml.FlagOr(node, "plugged", camera.plugged);
        camera.permittedAccess = Choice(xml, node, "access", camera.permittedAccess, kAccess);
        camera.streams = xml.NumberOr(node, "streams", camera.streams, 1, 16);
        camera.extraFeatures = xml.NumberOr(node, "extraFeatures", 0, 0, 100000);
        for (const pugi::xml_node feature : node.children("feature")) {
            xml.Allow(feature, {"name", "value"}, {});
            camera.features.push_back(
                {xml.Text(feature, "name"), xml.TextOr(feature, "value", ""), xml.LineOf(feature)});
        }
        for (const pugi::xml_node omit : node.children("omit")) {
            xml.Allow(omit, {"name"}, {});
            camera.omitted.push_back({xml.Text(omit, "name"), "", xml.LineOf(omit)});
        }
        for (const pugi::xml_node port : node.children("port")) {
            ReadPort(port, camera);
        }
        configuration.cameras.push_back(std::move(camera));
    }

    void ReadIdentity(pugi::xml_node node, CameraConfiguration& camera) {
        camera.id = xml.Text(node, "id");
        camera.interfaceId = xml.TextOr(node, "interface",
                                        camera.kind == CameraKind::kGigE  ? "Eth0"
                                        : camera.kind == CameraKind::kUsb ? "Usb0"
                                                                          : "Board0");
        if (!HasId(configuration.interfaces, camera.interfaceId)) {
            xml.Fail(node, "there is no interface \"" + camera.interfaceId + "\"");
        }
        camera.extendedId = xml.TextOr(node, "extendedId", camera.interfaceId + "|" + camera.id);
        camera.name = xml.TextOr(node, "name", camera.id);
        camera.model = xml.TextOr(node, "model", "Pyxen");
        camera.vendor = xml.TextOr(node, "vendor", camera.vendor);
        camera.serial = xml.TextOr(node, "serial", camera.id);
        for (const CameraConfiguration& other : configuration.cameras) {
            for (const std::string& id : {camera.id, camera.extendedId}) {
                if (id == other.id || id == other.extendedId) {
                    xml.Fail(node, "another camera already has the identifier \"" + id + "\"");
                }
            }
        }
    }

    void ReadPort(pugi::xml_node node, CameraConfiguration& camera) {
        xml.Allow(node, {"number", "present", "capability", "device", "baudPaced"}, {});
        if (camera.kind != CameraKind::kSerial) {
            xml.Fail(node, "only cameras of kind \"serial\" have ports");
        }
        xml.Text(node, "number");
        const std::uint32_t number = xml.NumberOr(node, "number", 0, 0, 4);
        for (const pugi::xml_node former : node.parent().children("port")) {
            if (former == node) {
                break;
            }
            if (xml.NumberOr(former, "number", 0, 0, 4) == number) {
                xml.Fail(node, "port " + std::to_string(number) + " is given twice");
            }
        }
        PortConfiguration& port = camera.ports[number];
        port.present = xml.FlagOr(node, "present", port.present);
        port.capability = xml.NumberOr(node, "capability", port.capability, 0, 0xFFFFFFFF);
        port.device = xml.TextOr(node, "device", port.device);
        port.baudPaced = xml.FlagOr(node, "baudPaced", port.baudPaced);
        if (!MakeSerialDevice(port.device)) {
            xml.Fail(node, "there is no serial device \"" + port.device +
                               "\", expected one of loopback, lens, none");
        }
    }

    void ReadFaults(pugi::xml_node node) {
        xml.Allow(node, {}, {"script"});
        for (const pugi::xml_node script : node.children("script")) {
            xml.AllowAttributes(script, {});
            const std::string line = script.text().get();
            if (line.empty()) {
                xml.Fail(script, "<script> needs a command as its text");
            }
            configuration.script.push_back({line, "", xml.LineOf(script)});
        }
    }

    // An element with a known id replaces the one of the default topology.
    template <typename List>
    static void Place(List& list, typename List::value_type item) {
        auto known = std::find_if(list.begin(), list.end(),
                                  [&](const auto& one) { return one.id == item.id; });
        if (known == list.end()) {
            list.push_back(std::move(item));
        } else {
            *known = std::move(item);
        }
    }

    const skeleton::XmlReader& xml;
    Configuration& configuration;
};

} // namespace

ConfigurationError ReadConfigurationFile(const std::string& path, Configuration& configuration) {
    std::string text;
    std::string error;
    if (!platform::ReadWholeFile(path, text, &error)) {
        return {PxnErrNotFound, path + ": cannot be read: " + error};
    }
    return ParseConfiguration(text, path, configuration);
}

ConfigurationError ParseConfiguration(const std::string& text, const std::string& name,
                                      Configuration& configuration) {
    try {
        const skeleton::XmlReader xml(text, name);
        Configuration read = DefaultTopology();
        Reader(xml, read).Read();
        configuration = std::move(read);
        return {};
    } catch (const skeleton::XmlError& error) {
        return {PxnErrXml, error.what()};
    }
}

} // namespace pxsim
