// stream_store.h - frames one after another on a stream
#pragma once

#include "apps/recording/frame_store.h"

#include <cstdio>
#include <string>

/// Writes frames to a stream such as standard output, which stays open, in a format that tells
/// where a frame ends: "pnm", or "raw", whose frames have the size of the image.
class StreamStore : public FrameStore {
public:
    /// `streamName` is for messages.
    StreamStore(std::FILE* openStream, const std::string& streamName, const std::string& format)
        : stream(openStream), name(streamName), isPnm(format == "pnm") {}

    void Encode(const ImageLayout& layout, const void* image, EncodedFrame& result) const override;
    StoredFrame Append(std::uint64_t number, const ImageLayout& layout,
                       const EncodedFrame& frame) override;
    void Finish() override;

private:
    void Check(bool isWritten) const;

    std::FILE* const stream;
    const std::string name;
    const bool isPnm;
};
