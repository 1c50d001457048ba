// chunk_access.cpp - reading the chunks that came with a frame
#include "pxnc/genicam/chunk_access.h"

#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/feature_tree.h"

#include <cstddef>
#include <utility>

namespace genicam {

ChunkReaders::ChunkReaders(skeleton::Backend& backendOfModules,
                           std::shared_ptr<CameraDevice> cameraDevice)
    : backend(backendOfModules), device(std::move(cameraDevice)) {}

ChunkReaders::Reader ChunkReaders::Take() {
    {
        const platform::MutexLock lock(mutex);
        if (!unused.empty()) {
            Reader reader = std::move(unused.back());
            unused.pop_back();
            return reader;
        }
    }
    Reader reader;
    std::size_t size = 0;
    const char* text = arv_device_get_genicam_xml(device->Device(), &size);
    reader.description.reset(arv_gc_new(device->Device(), text, size));
    Module::Features features;
    if (reader.description) {
        AppendDescribedFeatures(backend.Texts(), reader.description.get(), features);
    }
    reader.module = std::make_shared<Module>(std::move(features));
    return reader;
}

PxnError ChunkReaders::Read(ArvBuffer* buffer, skeleton::FunctionRef<PxnError(PxnHandle)> read) {
    if (!arv_buffer_has_chunks(buffer)) {
        return PxnErrNoChunkData;
    }
    Reader reader = Take();
    if (!reader.description) {
        return PxnErrFeaturesUnavailable;
    }
    arv_gc_set_buffer(reader.description.get(), buffer);
    skeleton::Target target{reader.module};
    target.isWritable = false;
    const PxnHandle handle = backend.Handles().Add(std::move(target));
    const PxnError result = read(handle);
    backend.Handles().Remove(handle);
    // The frame's memory is the caller's again.
    const ObjectOwner<ArvBuffer> nothing(arv_buffer_new_allocate(1));
    arv_gc_set_buffer(reader.description.get(), nothing.get());
    const platform::MutexLock lock(mutex);
    unused.push_back(std::move(reader));
    return result;
}

} // namespace genicam
