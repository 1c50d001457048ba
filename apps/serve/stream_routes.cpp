// stream_routes.cpp - previews, one after another or one alone
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"
#include "platform/clock.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

constexpr const char* kBoundary = "mivora-frame";
constexpr std::uint32_t kUsualWidth = 1280;
constexpr std::uint32_t kUsualQuality = 80;
constexpr double kMostRate = 120;
constexpr std::uint32_t kWaitForFrameMs = 500;
constexpr std::uint64_t kNsInMillisecond = 1000000;

/// Previews of the newest frame at the time at which the reader has taken the one before.
class PreviewStream final : public IHttpStream {
public:
    PreviewStream(ServeParts& serveParts, std::unique_ptr<Places::Ticket> streamTicket,
                  std::uint32_t previewWidth, std::uint32_t previewQuality, double mostRate)
        : parts(serveParts),
          ticket(std::move(streamTicket)),
          width(previewWidth),
          quality(previewQuality),
          period(static_cast<std::uint64_t>(1e9 / mostRate)) {}

    bool SendNext(const HttpSink& sink) override {
        const FramePointer frame = NextFrame();
        if (!frame) {
            return true;
        }
        number = frame->number;
        const PreviewPointer preview = parts.previews.Make(frame, width, quality);
        const std::string head = std::string(isFirst ? "" : "\r\n") + "--" + kBoundary +
                                 "\r\nContent-Type: image/jpeg\r\nContent-Length: " +
                                 std::to_string(preview->jpeg.size()) +
                                 "\r\nX-Frame: " + std::to_string(number) + "\r\n\r\n";
        isFirst = false;
        return sink(head.data(), head.size()) && sink(preview->jpeg.data(), preview->jpeg.size());
    }

private:
    /// A frame that comes a little early counts as due: rates of camera and stream are never quite
    /// the same.
    FramePointer NextFrame() {
        const std::uint64_t begin = platform::MonotonicNanoseconds();
        const std::uint64_t end = begin + kWaitForFrameMs * kNsInMillisecond;
        std::uint64_t now = begin;
        FramePointer frame;
        std::uint64_t seen = number;
        do {
            const auto leftMs = static_cast<std::uint32_t>((end - now) / kNsInMillisecond);
            frame = parts.frames.WaitNewer(seen, leftMs);
            now = platform::MonotonicNanoseconds();
            if (frame) {
                seen = frame->number;
            }
        } while (frame && now + period / 4 < due && now < end);
        if (frame && now + period / 4 >= due) {
            due = std::max(due, now - std::min(now, period)) + period;
            return frame;
        }
        return nullptr;
    }

    ServeParts& parts;
    const std::unique_ptr<Places::Ticket> ticket;
    const std::uint32_t width;
    const std::uint32_t quality;
    const std::uint64_t period;
    std::uint64_t number = 0;
    std::uint64_t due = 0;
    bool isFirst = true;
};

std::uint32_t WidthOf(const RouteCall& call) {
    return call.query.Number("width", kLeastPreviewWidth, kMostPreviewWidth, kUsualWidth);
}

std::uint32_t QualityOf(const RouteCall& call) {
    return call.query.Number("quality", 1, 100, kUsualQuality);
}

HttpAnswer StreamAnswer(ServeParts& parts, const RouteCall& call) {
    const std::uint32_t width = WidthOf(call);
    const std::uint32_t quality = QualityOf(call);
    const double rate = call.query.Real("rate", 0.1, kMostRate, kMostRate);
    HttpAnswer answer;
    answer.type = std::string("multipart/x-mixed-replace; boundary=") + kBoundary;
    if (call.request.head.method != "HEAD") {
        auto ticket = parts.streams.TryTake();
        if (!ticket) {
            throw RequestFailure(kUnavailable, "all " + std::to_string(kMostStreams) +
                                                   " streams are in use; try again later");
        }
        answer.stream =
            std::make_unique<PreviewStream>(parts, std::move(ticket), width, quality, rate);
    }
    return answer;
}

HttpAnswer FrameAnswer(ServeParts& parts, const RouteCall& call) {
    const FramePointer frame = parts.frames.Newest();
    if (!frame) {
        throw RequestFailure(kNotFound, "no frame has come yet");
    }
    const PreviewPointer preview = parts.previews.Make(frame, WidthOf(call), QualityOf(call));
    HttpAnswer answer;
    answer.type = "image/jpeg";
    answer.body.assign(preview->jpeg.begin(), preview->jpeg.end());
    answer.headers.emplace_back("X-Frame", std::to_string(preview->frame));
    return answer;
}

} // namespace

void AddStreamRoutes(RouteTable& table, ServeParts& parts) {
    table.Add({.path = "/stream.mjpg",
               .query = {"width", "quality", "rate"},
               .run = [&parts](const RouteCall& call) {
                   return StreamAnswer(parts, call);
               }});
    table.Add({.path = "/frame.jpg",
               .query = {"width", "quality"},
               .run = [&parts](const RouteCall& call) {
                   return FrameAnswer(parts, call);
               }});
}
