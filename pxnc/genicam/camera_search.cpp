// camera_search.cpp - searches for cameras with Aravis
#include "pxnc/genicam/camera_search.h"

#include <arv.h>

namespace genicam {
namespace {

constexpr char kUsbInterface[] = "USB3Vision";
constexpr char kGigEInterface[] = "GigEVision";

std::string Text(const char* text) {
    return text ? text : "";
}

} // namespace

void EnableUsbSearch(bool enabled) {
    if (enabled) {
        arv_enable_interface(kUsbInterface);
    } else {
        arv_disable_interface(kUsbInterface);
    }
}

std::vector<FoundCamera> SearchCameras() {
    arv_update_device_list();
    std::vector<FoundCamera> cameras;
    const unsigned int count = arv_get_n_devices();
    for (unsigned int i = 0; i < count; ++i) {
        const std::string protocol = Text(arv_get_device_protocol(i));
        if (protocol != kGigEInterface && protocol != kUsbInterface) {
            continue;
        }
        FoundCamera found;
        found.protocol = protocol == kGigEInterface ? Protocol::kGigEVision : Protocol::kUsb3Vision;
        found.id = Text(arv_get_device_id(i));
        found.physicalId = Text(arv_get_device_physical_id(i));
        found.network =
            protocol == kGigEInterface ? Text(arv_get_device_address(i)) : std::string();
        found.vendor = Text(arv_get_device_vendor(i));
        found.model = Text(arv_get_device_model(i));
        found.serial = Text(arv_get_device_serial_nbr(i));
        cameras.push_back(found);
    }
    return cameras;
}

} // namespace genicam
