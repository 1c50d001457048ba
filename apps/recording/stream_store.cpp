// stream_store.cpp - frames one after another on a stream
#include "apps/recording/stream_store.h"

#include "apps/common/command_failure.h"
#include "apps/common/image_encoder.h"

#include <cerrno>
#include <system_error>

void StreamStore::Encode(const ImageLayout& layout, const void* image, EncodedFrame& result) const {
    if (isPnm) {
        EncodePnm(layout, image, layout.components > 1, result);
    } else {
        EncodeRaw(layout, image, result);
    }
}

StoredFrame StreamStore::Append(std::uint64_t, const ImageLayout&, const EncodedFrame& frame) {
    errno = 0;
    const bool isWritten =
        std::fwrite(frame.head.data(), 1, frame.head.size(), stream) == frame.head.size() &&
        std::fwrite(frame.pixels, 1, frame.pixelBytes, stream) == frame.pixelBytes &&
        std::fwrite(frame.tail.data(), 1, frame.tail.size(), stream) == frame.tail.size();
    // Whoever reads the stream gets each frame at once.
    Check(isWritten && std::fflush(stream) == 0);
    return {"", 0, frame.head.size() + frame.pixelBytes + frame.tail.size()};
}

void StreamStore::Finish() {
    errno = 0;
    Check(std::fflush(stream) == 0);
}

void StreamStore::Check(bool isWritten) const {
    if (!isWritten) {
        throw CommandFailure("cannot write to " + name + ": " +
                             std::generic_category().message(errno));
    }
}
