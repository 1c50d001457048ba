// memory_device.cpp - a camera for Aravis whose registers are memory of this process
#include "tests/pxnc/genicam/memory_device.h"

#include <cstring>

namespace genicam_test {
namespace {

struct MemoryDevice {
    ArvDevice parent;
    ArvGc* description;
    std::uint8_t registers[kMemoryDeviceSize];
};

ArvDeviceClass* parentClass = nullptr;

MemoryDevice* Self(gpointer device) {
    return static_cast<MemoryDevice*>(device);
}

/// The registers from that address, or null with an error.
std::uint8_t* Find(ArvDevice* device, guint64 address, guint32 size, GError** error) {
    if (address > kMemoryDeviceSize || size > kMemoryDeviceSize - address) {
        g_set_error(error, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS,
                    "there are no such registers");
        return nullptr;
    }
    return Self(device)->registers + address;
}

gboolean ReadMemory(ArvDevice* device, guint64 address, guint32 size, void* buffer,
                    GError** error) {
    const std::uint8_t* const from = Find(device, address, size, error);
    if (from && size != 0) {
        std::memcpy(buffer, from, size);
    }
    return from ? TRUE : FALSE;
}

gboolean WriteMemory(ArvDevice* device, guint64 address, guint32 size, void* buffer,
                     GError** error) {
    std::uint8_t* const to = Find(device, address, size, error);
    if (to && size != 0) {
        std::memcpy(to, buffer, size);
    }
    return to ? TRUE : FALSE;
}

gboolean ReadRegister(ArvDevice* device, guint64 address, guint32* value, GError** error) {
    std::uint32_t raw = 0;
    if (!ReadMemory(device, address, sizeof raw, &raw, error)) {
        return FALSE;
    }
    *value = GUINT32_FROM_BE(raw);
    return TRUE;
}

gboolean WriteRegister(ArvDevice* device, guint64 address, guint32 value, GError** error) {
    std::uint32_t raw = GUINT32_TO_BE(value);
    return WriteMemory(device, address, sizeof raw, &raw, error);
}

ArvGc* Description(ArvDevice* device) {
    return Self(device)->description;
}

void Finalize(GObject* object) {
    g_clear_object(&Self(object)->description);
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void InitClass(gpointer type, gpointer) {
    parentClass = static_cast<ArvDeviceClass*>(g_type_class_peek_parent(type));
    auto* const device = static_cast<ArvDeviceClass*>(type);
    device->read_memory = ReadMemory;
    device->write_memory = WriteMemory;
    device->read_register = ReadRegister;
    device->write_register = WriteRegister;
    device->get_genicam = Description;
    G_OBJECT_CLASS(type)->finalize = Finalize;
}

GType Type() {
    static const GType type =
        g_type_register_static_simple(ARV_TYPE_DEVICE, "MemoryDevice", sizeof(ArvDeviceClass),
                                      InitClass, sizeof(MemoryDevice), nullptr, GTypeFlags(0));
    return type;
}

} // namespace

genicam::ObjectOwner<ArvDevice> MakeMemoryDevice(std::string_view description,
                                                 std::string_view content) {
    genicam::ObjectOwner<ArvDevice> device(static_cast<ArvDevice*>(g_object_new(Type(), nullptr)));
    for (std::size_t at = 0; at < kMemoryDeviceSize && !content.empty(); ++at) {
        Self(device.get())->registers[at] = static_cast<std::uint8_t>(content[at % content.size()]);
    }
    Self(device.get())->description =
        arv_gc_new(device.get(), description.data(), description.size());
    return device;
}

} // namespace genicam_test
