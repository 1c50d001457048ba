// image_routes.cpp - frames as files, their parts and their values
#include "apps/common/image_encoder.h"
#include "apps/common/image_writer.h"
#include "apps/common/json_text.h"
#include "apps/serve/image_values.h"
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"
#include "apps/serve/shown_image.h"

#include <bit>
#include <memory>

namespace {

constexpr std::uint32_t kMostTile = 4096; // pixels of its width and height
constexpr std::uint32_t kFreshFrameMs = 5000;
constexpr std::uint32_t kTilePngLevel = 1;
constexpr std::uint32_t kMostPosition = 0xFFFFFFFE;

template <typename Number>
JsonValue NumbersJson(const std::vector<Number>& numbers) {
    std::string text = "[";
    for (const Number number : numbers) {
        text += (text.size() == 1 ? "" : ",") + std::to_string(number);
    }
    return JsonValue::FromText(text + "]");
}

template <typename Number>
JsonValue ChannelsJson(const std::vector<std::vector<Number>>& channels) {
    std::vector<JsonValue> list;
    list.reserve(channels.size());
    for (const std::vector<Number>& channel : channels) {
        list.push_back(NumbersJson(channel));
    }
    return JsonArray(list);
}

FramePointer NewestFrame(ServeParts& parts) {
    FramePointer frame = parts.frames.Newest();
    if (!frame) {
        throw RequestFailure(kNotFound, "no frame has come yet");
    }
    return frame;
}

std::unique_ptr<Places::Ticket> HeavyTicket(ServeParts& parts) {
    auto ticket = parts.heavy.TryTake();
    if (!ticket) {
        throw RequestFailure(kUnavailable, "too many images are being made; try again later");
    }
    return ticket;
}

/// The number within an image of that many pixels.
std::uint32_t Position(const RouteCall& call, const char* name, std::uint32_t size) {
    const std::uint32_t position = call.query.Number(name, 0, kMostPosition);
    if (position >= size) {
        throw RequestFailure(kBadRequest, std::string(name) + " takes 0 to " +
                                              std::to_string(size - 1) + ", not " +
                                              std::to_string(position));
    }
    return position;
}

HttpAnswer EncodedAnswer(const EncodedFrame& encoded, const char* type, std::uint64_t number) {
    HttpAnswer answer;
    answer.type = type;
    answer.body.reserve(encoded.head.size() + encoded.pixelBytes + encoded.tail.size());
    answer.body.append(encoded.head.begin(), encoded.head.end());
    answer.body.append(reinterpret_cast<const char*>(encoded.pixels), encoded.pixelBytes);
    answer.body.append(encoded.tail.begin(), encoded.tail.end());
    answer.headers.emplace_back("X-Frame", std::to_string(number));
    return answer;
}

/// One that begins after the request has come.
FramePointer FreshFrame(ServeParts& parts) {
    if (!parts.board.Read().state.isGrabbing) {
        return parts.owner.Do(
            [](CameraSession& session) { return session.IsGrabbing() ? nullptr : session.Snap(); });
    }
    return nullptr;
}

HttpAnswer SnapAnswer(ServeParts& parts, const char* file, const char* type) {
    const auto ticket = HeavyTicket(parts);
    FramePointer frame = FreshFrame(parts);
    if (!frame) {
        const FramePointer newest = parts.frames.Newest();
        frame = parts.frames.WaitNewer(newest ? newest->number : 0, kFreshFrameMs);
    }
    if (!frame) {
        throw RequestFailure(kNoFrameInTime, "no frame came for 5 seconds");
    }
    EncodedFrame encoded;
    EncodeImage(file, frame->layout, frame->bytes.data(), {}, encoded);
    return EncodedAnswer(encoded, type, frame->number);
}

HttpAnswer TileAnswer(ServeParts& parts, const RouteCall& call) {
    const FramePointer frame = NewestFrame(parts);
    const std::uint32_t x = Position(call, "x", frame->layout.width);
    const std::uint32_t y = Position(call, "y", frame->layout.height);
    // What lies beyond the image is left out: it may have become smaller.
    const std::uint32_t width =
        std::min(call.query.Number("width", 1, kMostTile), frame->layout.width - x);
    const std::uint32_t height =
        std::min(call.query.Number("height", 1, kMostTile), frame->layout.height - y);
    const auto ticket = HeavyTicket(parts);
    const ShownImage shown = ShowPart(*frame, x, y, width, height);
    ImageLayout layout;
    layout.width = shown.width;
    layout.height = shown.height;
    layout.components = shown.channels;
    layout.allocatedBits = 8;
    layout.bits = 8;
    layout.colorCoding = shown.channels == 1 ? MVCC_MONO : MVCC_RGB;
    EncodedFrame encoded;
    EncodePng(layout, shown.pixels, kTilePngLevel, encoded);
    return EncodedAnswer(encoded, "image/png", frame->number);
}

HttpAnswer PixelAnswer(ServeParts& parts, const RouteCall& call) {
    const FramePointer frame = NewestFrame(parts);
    const std::uint32_t x = Position(call, "x", frame->layout.width);
    const std::uint32_t y = Position(call, "y", frame->layout.height);
    return JsonAnswer(JsonReport({{"frame", frame->number},
                                  {"x", x},
                                  {"y", y},
                                  {"values", NumbersJson(PixelValues(*frame, x, y))},
                                  {"bits", frame->layout.bits}})
                          .Text());
}

HttpAnswer HistogramAnswer(ServeParts& parts, const RouteCall& call) {
    const FramePointer frame = NewestFrame(parts);
    const std::uint32_t bins = call.query.Number("bins", 2, 65536, 256);
    if (!std::has_single_bit(bins)) {
        throw RequestFailure(kBadRequest, "bins takes a power of two, not " + std::to_string(bins));
    }
    const auto ticket = HeavyTicket(parts);
    const ValueHistogram histogram = CountValues(*frame, bins);
    return JsonAnswer(JsonReport({{"frame", frame->number},
                                  {"channels", ChannelsJson(histogram.channels)},
                                  {"bits", frame->layout.bits},
                                  {"saturated", histogram.saturated}})
                          .Text());
}

HttpAnswer ProfileAnswer(ServeParts& parts, const RouteCall& call) {
    const FramePointer frame = NewestFrame(parts);
    const auto channels = LineValues(*frame, Position(call, "x1", frame->layout.width),
                                     Position(call, "y1", frame->layout.height),
                                     Position(call, "x2", frame->layout.width),
                                     Position(call, "y2", frame->layout.height));
    return JsonAnswer(JsonReport({{"frame", frame->number},
                                  {"channels", ChannelsJson(channels)},
                                  {"bits", frame->layout.bits}})
                          .Text());
}

} // namespace

void AddImageRoutes(RouteTable& table, ServeParts& parts) {
    table.Add({.path = "/snap.png", .run = [&parts](const RouteCall&) {
                   return SnapAnswer(parts, "image.png", "image/png");
               }});
    table.Add({.path = "/snap.tiff", .run = [&parts](const RouteCall&) {
                   return SnapAnswer(parts, "image.tiff", "image/tiff");
               }});
    table.Add({.path = "/tile.png",
               .query = {"x", "y", "width", "height"},
               .run = [&parts](const RouteCall& call) {
                   return TileAnswer(parts, call);
               }});
    table.Add({.path = "/api/pixel", .query = {"x", "y"}, .run = [&parts](const RouteCall& call) {
                   return PixelAnswer(parts, call);
               }});
    table.Add({.path = "/api/histogram", .query = {"bins"}, .run = [&parts](const RouteCall& call) {
                   return HistogramAnswer(parts, call);
               }});
    table.Add({.path = "/api/profile",
               .query = {"x1", "y1", "x2", "y2"},
               .run = [&parts](const RouteCall& call) {
                   return ProfileAnswer(parts, call);
               }});
}
