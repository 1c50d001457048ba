// usb_checks.cpp - judges access to USB cameras and the memory for their transfers
#include "apps/doctor/checks.h"

namespace {

constexpr std::uint32_t kLeastUsbMegabytes = 200;
constexpr std::uint32_t kGoodUsbMegabytes = 1000;

} // namespace

std::vector<Finding> CheckUsb(const UsbFacts& usb) {
    std::vector<Finding> findings;
    for (const platform::UsbCamera& camera : usb.cameras) {
        findings.push_back(
            {camera.isAccessible ? Severity::kOk : Severity::kProblem, "usb-access",
             camera.product.empty() ? camera.node : camera.product,
             camera.node + (camera.isAccessible ? " can be read and written"
                                                : " may not be read and written by this user"),
             camera.isAccessible
                 ? ""
                 : "echo 'SUBSYSTEM==\"usb\", ENV{ID_USB_INTERFACES}==\"*:ef0500:*\", "
                   "MODE=\"0660\", TAG+=\"uaccess\"' > /etc/udev/rules.d/70-u3v.rules; udevadm "
                   "control --reload; then plug the camera in again"});
    }
    if (usb.megabytes) {
        // 0 is without limit. Without a USB camera nothing is amiss.
        const bool isGood =
            *usb.megabytes == 0 || *usb.megabytes >= kLeastUsbMegabytes || usb.cameras.empty();
        findings.push_back({isGood ? Severity::kOk : Severity::kWarning, "usb-memory", "",
                            *usb.megabytes == 0 ? "no limit for all USB transfers together"
                                                : std::to_string(*usb.megabytes) +
                                                      " MiB for all USB transfers together",
                            isGood ? ""
                                   : "echo " + std::to_string(kGoodUsbMegabytes) +
                                         " > /sys/module/usbcore/parameters/usbfs_memory_mb"});
    }
    return findings;
}
