#include "pxnc/genicam/chunk_access.h"

#include "pxnc/genicam/callback_scope.h"
#include "pxnc/genicam/feature_tree.h"
#include "pxnc/genicam/library.h"

#include <utility>

namespace genicam {

namespace {

PxnError Call(PxnChunkAccessCallback callback, PxnHandle handle, void* context) {
    const CallbackScope scope(CallbackScope::Kind::Chunk, nullptr);
    try {
        return callback(handle, context);
    } catch (...) {
        return PxnErrUserCallbackException;
    }
}

} // namespace

ChunkReaders::ChunkReaders(std::shared_ptr<CameraDevice> cameraDevice)
    : device(std::move(cameraDevice)) {}

ChunkReaders::~ChunkReaders() = default;

ChunkReader ChunkReaders::Take(TextPool& texts, PxnHandle newHandle) {
    {
        const platform::MutexLock lock(mutex);
        if (!unused.empty()) {
            ChunkReader reader = std::move(unused.back());
            unused.pop_back();
            return reader;
        }
    }
    ChunkReader reader;
    size_t size = 0;
    const char* text = arv_device_get_genicam_xml(device->Device(), &size);
    reader.description.reset(arv_gc_new(device->Device(), text, size));
    Module::Features features;
    if (reader.description != nullptr) {
        AppendDescribedFeatures(texts, reader.description.get(), false, features);
    }
    reader.module = std::make_shared<Module>(newHandle, std::make_shared<platform::Mutex>(),
                                             std::move(features));
    return reader;
}

void ChunkReaders::GiveBack(ChunkReader reader) {
    const platform::MutexLock lock(mutex);
    unused.push_back(std::move(reader));
}

PxnError AccessChunks(Library& library, const PxnFrame* frame, PxnChunkAccessCallback callback,
                      void* context) {
    ObjectOwner<ArvBuffer> buffer;
    const std::shared_ptr<ChunkReaders> readers = library.Cameras().ReadersFor(frame, buffer);
    if (readers == nullptr) {
        return PxnErrNotFound;
    }
    if (!arv_buffer_has_chunks(buffer.get())) {
        return PxnErrNoChunkData;
    }
    ChunkReader reader = readers->Take(library.Texts(), library.Handles().Reserve());
    if (reader.description == nullptr) {
        return PxnErrFeaturesUnavailable;
    }
    arv_gc_set_buffer(reader.description.get(), buffer.get());
    library.Handles().Add(reader.module);
    const PxnError result = Call(callback, reader.module->Handle(), context);
    library.Handles().Remove(reader.module->Handle());
    // The frame's memory is the caller's again.
    const ObjectOwner<ArvBuffer> nothing(arv_buffer_new_allocate(1));
    arv_gc_set_buffer(reader.description.get(), nothing.get());
    readers->GiveBack(std::move(reader));
    return result;
}

} // namespace genicam
