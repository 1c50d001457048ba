// Registers, settings and chunk data.

#include "platform/text.h"
#include "pxnc/simulator/chunk_data.h"
#include "pxnc/simulator/sdk.h"
#include "pxnc/simulator/settings_file.h"

using namespace pxsim;

namespace {

// Registers are the camera's own: other modules have none.
template <class Buffer, class Action>
PxnError OnRegisters(const char* entry, PxnHandle handle, Buffer* buffer, uint32_t* sizeComplete,
                     bool writes, Action action) noexcept {
    return CallOn(entry, handle, [&](Simulator&, const HandleTarget& target) -> PxnError {
        if (buffer == nullptr || sizeComplete == nullptr) {
            return PxnErrBadParameter;
        }
        *sizeComplete = 0;
        if (!target.isCamera) {
            return PxnErrNotSupported;
        }
        if (writes && !target.writable) {
            return PxnErrInvalidAccess;
        }
        return action(target.camera->Registers());
    });
}

bool FindPayload(Simulator& simulator, const PxnFrame* frame, uint32_t& payload) {
    for (const auto& camera : simulator.Cameras()) {
        for (const auto& stream : camera->Streams()) {
            if (stream->Engine().PayloadOf(frame, payload)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size, char* buffer,
                                uint32_t* sizeComplete) {
    return OnRegisters(
        __func__, handle, buffer, sizeComplete, false, [&](RegisterSpace& registers) {
            return registers.Read(address, size, reinterpret_cast<uint8_t*>(buffer), *sizeComplete);
        });
}

PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                 const char* buffer, uint32_t* sizeComplete) {
    return OnRegisters(__func__, handle, buffer, sizeComplete, true, [&](RegisterSpace& registers) {
        return registers.Write(address, size, reinterpret_cast<const uint8_t*>(buffer),
                               *sizeComplete);
    });
}

PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return CallOn(__func__, handle, [&](Simulator&, const HandleTarget& target) -> PxnError {
        if (path == nullptr || (settings == nullptr && size != 0)) {
            return PxnErrBadParameter;
        }
        if (settings != nullptr) {
            return PxnErrStructSize; // no version of the record exists yet
        }
        return SaveSettings(*target.module, platform::WideToNarrow(path));
    });
}

PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return CallOn(__func__, handle, [&](Simulator&, const HandleTarget& target) -> PxnError {
        if (path == nullptr || (settings == nullptr && size != 0)) {
            return PxnErrBadParameter;
        }
        if (settings != nullptr) {
            return PxnErrStructSize;
        }
        if (!target.writable) {
            return PxnErrInvalidAccess;
        }
        return LoadSettings(*target.module, platform::WideToNarrow(path));
    });
}

PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                     void* userContext) {
    return Call(__func__, [&](Simulator& simulator) -> PxnError {
        if (frame == nullptr || callback == nullptr) {
            return PxnErrBadParameter;
        }
        uint32_t payload = 0;
        if (!FindPayload(simulator, frame, payload)) {
            return PxnErrNotFound;
        }
        if (payload == 0) {
            return PxnErrNoData;
        }
        if (frame->chunkDataPresent == 0) {
            return PxnErrNoChunkData;
        }
        std::vector<ChunkValue> values;
        if (!ReadChunkList(static_cast<const uint8_t*>(frame->buffer), payload, values)) {
            return PxnErrParsingChunkData;
        }
        ChunkModule chunks(simulator.Strings(), simulator.Events(), values);
        PxnHandle handle = simulator.Handles().Add({&chunks, nullptr, nullptr, false});
        PxnError result = PxnErrSuccess;
        try {
            result = callback(handle, userContext);
        } catch (...) {
            result = PxnErrUserCallbackException;
        }
        simulator.Handles().Remove(handle);
        simulator.Events().UnregisterAll(handle);
        return result;
    });
}
