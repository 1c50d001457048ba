// register_space.cpp - a camera's registers
#include "pxnc/simulator/register_space.h"

#include "pxnc/simulator/big_endian.h"
#include "pxnc/simulator/camera.h"

#include <algorithm>
#include <cstring>

namespace pxsim {
namespace {

constexpr std::uint64_t kPortBases[] = {0x16000, 0x60000, 0x61000, 0x62000, 0x63000};
constexpr std::uint64_t kScratchBase = 0x10100;

} // namespace

RegisterSpace::RegisterSpace(Camera& camera) {
    AddBootstrap(camera);
    AddImageRegisters(camera);
    AddPorts(camera);
    std::sort(registers.begin(), registers.end(),
              [](const Register& a, const Register& b) { return a.address < b.address; });
}

void RegisterSpace::AddRegister(std::uint64_t address, std::function<std::uint32_t()> read,
                                std::function<PxnError(std::uint32_t)> write) {
    registers.push_back({address, std::move(read), std::move(write)});
}

void RegisterSpace::AddBootstrap(Camera& camera) {
    AddRegister(0x0000, [] { return 0x00010004u; }); // interface version 1.4
    AddRegister(0x0004, [] { return 0x80000001u; }); // big-endian, UTF-8
    const auto text = [this](std::uint64_t address, std::uint32_t size, const std::string& value) {
        texts.push_back({address, size, [value] { return value; }, nullptr});
    };
    const CameraConfiguration& setup = camera.Setup();
    text(0x0048, 32, setup.vendor);
    text(0x0068, 32, setup.model);
    text(0x0088, 32, "2.0");
    text(0x00A8, 48, "Pyxen SDK simulator");
    text(0x00D8, 16, setup.serial);
    texts.push_back({0x00E8, 16,
                     [&camera] {
                         std::string name;
                         platform::MutexLock lock(camera.ValueMutex());
                         ReadAsText(*camera.Find("DeviceUserID"), name);
                         return name;
                     },
                     [&camera](const std::string& name) {
                         platform::MutexLock lock(camera.ValueMutex());
                         return WriteAsText(*camera.Find("DeviceUserID"), name);
                     }});
    AddRegister(0x0938, [] { return 3000u; }); // heartbeat, ms
    AddRegister(0x093C, [] { return 0u; });    // clock frequency 1 GHz, high and low
    AddRegister(0x0940, [] { return 1000000000u; });
    AddRegister(0x0948, [&camera] { return static_cast<std::uint32_t>(camera.Timestamp() >> 32); });
    AddRegister(0x094C, [&camera] { return static_cast<std::uint32_t>(camera.Timestamp()); });
}

void RegisterSpace::AddImageRegisters(Camera& camera) {
    std::uint64_t address = 0x10000;
    for (const char* name : {"Width", "Height", "OffsetX", "OffsetY"}) {
        AddRegister(
            address, [&camera, name] { return static_cast<std::uint32_t>(camera.IntValue(name)); },
            [&camera, name](std::uint32_t value) {
                platform::MutexLock lock(camera.ValueMutex());
                return camera.Get<Int>(name).Set(value);
            });
        address += 4;
    }
    AddRegister(0x10010, [&camera] {
        return static_cast<std::uint32_t>(camera.EnumIntValue("PixelFormat"));
    });
    AddRegister(0x10014, [&camera] { return static_cast<std::uint32_t>(camera.PayloadBytes()); });
    AddRegister(
        0x10018, [&camera] { return camera.IsAcquiring() ? 1u : 0u; },
        [&camera](std::uint32_t value) {
            return value != 0 ? camera.StartAcquisition() : camera.StopAcquisition();
        });
    for (std::size_t index = 0; index < scratch.size(); ++index) {
        AddRegister(
            kScratchBase + 4 * index, [this, index] { return scratch[index].load(); },
            [this, index](std::uint32_t value) {
                scratch[index] = value;
                return PxnErrSuccess;
            });
    }
}

void RegisterSpace::AddPorts(Camera& camera) {
    if (camera.Setup().kind != CameraKind::kSerial) {
        return;
    }
    for (std::size_t index = 0; index < ports.size(); ++index) {
        ports[index] = std::make_unique<Uart>(camera.Setup().ports[index]);
    }
}

PxnError RegisterSpace::Read(std::uint64_t address, std::uint32_t size, std::uint8_t* out,
                             std::uint32_t& done) {
    done = 0;
    while (done < size) {
        std::uint32_t part = 0;
        const PxnError result = ReadPart(address + done, size - done, out + done, part);
        if (result != PxnErrSuccess) {
            return result == PxnErrInvalidAddress && done > 0 ? PxnErrIncomplete : result;
        }
        done += part;
    }
    return PxnErrSuccess;
}

PxnError RegisterSpace::Write(std::uint64_t address, std::uint32_t size, const std::uint8_t* in,
                              std::uint32_t& done) {
    done = 0;
    while (done < size) {
        std::uint32_t part = 0;
        const PxnError result = WritePart(address + done, size - done, in + done, part);
        if (result != PxnErrSuccess) {
            return result == PxnErrInvalidAddress && done > 0 ? PxnErrIncomplete : result;
        }
        done += part;
    }
    return PxnErrSuccess;
}

PxnError RegisterSpace::ReadPart(std::uint64_t address, std::uint32_t size, std::uint8_t* out,
                                 std::uint32_t& part) {
    std::uint32_t offset = 0;
    if (Uart* port = FindPort(address, offset)) {
        part = Uart::PartAt(offset, size);
        return part == 0 ? PxnErrInvalidAddress : port->Read(offset, part, out);
    }
    if (const Text* text = FindText(address)) {
        offset = static_cast<std::uint32_t>(address - text->address);
        part = std::min(size, text->size - offset);
        std::string content = text->read();
        content.resize(text->size);
        std::memcpy(out, content.data() + offset, part);
        return PxnErrSuccess;
    }
    const Register* one = FindRegister(address);
    if (!one || size < 4) {
        return PxnErrInvalidAddress;
    }
    part = 4;
    StoreBigEndian(one->read(), out);
    return PxnErrSuccess;
}

PxnError RegisterSpace::WritePart(std::uint64_t address, std::uint32_t size, const std::uint8_t* in,
                                  std::uint32_t& part) {
    std::uint32_t offset = 0;
    if (Uart* port = FindPort(address, offset)) {
        part = Uart::PartAt(offset, size);
        return part == 0 ? PxnErrInvalidAddress : port->Write(offset, part, in);
    }
    if (const Text* text = FindText(address)) {
        // A text is written from its start; the rest is cleared.
        if (!text->write || address != text->address) {
            return PxnErrInvalidAccess;
        }
        part = std::min(size, text->size);
        const std::string bytes(reinterpret_cast<const char*>(in), part);
        return text->write(bytes.substr(0, bytes.find('\0')));
    }
    const Register* one = FindRegister(address);
    if (!one || size < 4) {
        return PxnErrInvalidAddress;
    }
    part = 4;
    return one->write ? one->write(LoadBigEndian(in)) : PxnErrInvalidAccess;
}

const RegisterSpace::Register* RegisterSpace::FindRegister(std::uint64_t address) const {
    auto found =
        std::lower_bound(registers.begin(), registers.end(), address,
                         [](const Register& one, std::uint64_t at) { return one.address < at; });
    return found == registers.end() || found->address != address ? nullptr : &*found;
}

const RegisterSpace::Text* RegisterSpace::FindText(std::uint64_t address) const {
    auto found = std::find_if(texts.begin(), texts.end(), [address](const Text& text) {
        return address >= text.address && address - text.address < text.size;
    });
    return found == texts.end() ? nullptr : &*found;
}

Uart* RegisterSpace::FindPort(std::uint64_t address, std::uint32_t& offset) {
    for (std::size_t index = 0; index < ports.size(); ++index) {
        const std::uint64_t base = kPortBases[index];
        if (ports[index] && address >= base && address - base < Uart::kSpan) {
            offset = static_cast<std::uint32_t>(address - base);
            return ports[index].get();
        }
    }
    return nullptr;
}

void RegisterSpace::Reset() {
    for (auto& port : ports) {
        if (port) {
            port->Reset();
        }
    }
    for (auto& value : scratch) {
        value = 0;
    }
}

} // namespace pxsim
