// grabber_buffers.cpp - filled buffers and their receivers
#include "grabber_impl.h"

#include "guarded.h"

MV_ERRCODE CMivoraGrabber::PrepareFrameBuffers(std::uint64_t count) {
    // Compatibility: hosts read the requested count back even after a failure.
    impl->requestedBuffers = count;
    return impl->ring.Reset(count) ? MV_OK : MV_REFUSED;
}

MV_ERRCODE CMivoraGrabber::GetLastFilledBuffer(std::uint64_t* index) {
    if (!index) {
        return MV_BAD_VALUE;
    }
    *index = 0;
    const bool taken = impl->IsFeatureOn(EMV_FEATURE_KEEP_NEWEST) ? impl->ring.TakeNewest(*index)
                                                                  : impl->ring.TakeOldest(*index);
    return taken ? MV_OK : MV_NO_FILLED_BUFFER;
}

MV_ERRCODE CMivoraGrabber::ReleaseFrameBuffer(std::uint64_t index) {
    return impl->ring.Release(index) ? MV_OK : MV_BAD_VALUE;
}

void CMivoraGrabber::DoPostProcess(std::uint64_t bufferIndex, std::uint32_t fromCallback) {
    Guarded(false, [&] {
        if (impl->ring.Add(bufferIndex) == Arrival::kUnknownBuffer) {
            if (impl->sink) {
                impl->sink->Write(kMvLogError,
                                  "Mivora: DoPostProcess: There is no frame buffer %I64u",
                                  bufferIndex);
            }
            return false;
        }
        if (!impl->IsFeatureOn(EMV_FEATURE_POST_PROCESS)) {
            return true;
        }
        impl->postProcess.messages.Post(bufferIndex, static_cast<std::int64_t>(fromCallback));
        impl->postProcess.callback.Deliver([&](const Callback<MV_POST_PROCESS_CALLBACK>& receiver) {
            receiver.function(bufferIndex, fromCallback, receiver.context);
        });
        return true;
    });
}

MV_ERRCODE CMivoraGrabber::InstPostProcessMsgWnd(MV_WINDOW window, std::uint32_t message) {
    return impl->postProcess.messages.SetWindow(window, message);
}

MV_ERRCODE CMivoraGrabber::InstPostProcessThreadID(std::uint32_t threadId, std::uint32_t message) {
    return impl->postProcess.messages.SetThread(threadId, message);
}

MV_ERRCODE CMivoraGrabber::InstPostProcessCallBack(MV_POST_PROCESS_CALLBACK callback,
                                                   void* context) {
    return impl->postProcess.SetCallback(callback, context);
}

std::uint64_t CMivoraGrabber::GetRequestedBufferCount() const {
    return impl->requestedBuffers;
}

std::uint64_t CMivoraGrabber::GetLostBufferCount() const {
    return impl->ring.LostCount();
}
