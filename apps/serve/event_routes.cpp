// event_routes.cpp - what happens, as server-sent events
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"
#include "platform/clock.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace {

/// At most so many states a second.
constexpr std::uint32_t kStateEveryMs = 200;

class EventStream final : public IHttpStream {
public:
    EventStream(ServeParts& serveParts, std::unique_ptr<Places::Ticket> followerTicket)
        : parts(serveParts), ticket(std::move(followerTicket)), position(parts.events.End()) {}

    bool SendNext(const HttpSink& sink) override {
        // Who follows events looks at the list as well.
        parts.owner.WantList();
        std::string text = News();
        if (text.empty()) {
            return true;
        }
        return sink(text.data(), text.size());
    }

private:
    std::string News() {
        std::vector<ServeEvent> events;
        if (version) {
            position = parts.events.Read(position, kStateEveryMs, events);
        }
        std::string text;
        for (const ServeEvent& event : events) {
            text += EventText(event);
        }
        const StateBoard::Reading reading = parts.board.Read();
        if (camerasVersion != reading.camerasVersion) {
            camerasVersion = reading.camerasVersion;
            text += EventText({"cameras", CamerasJson(reading.state)});
        }
        // After events that came at once the next state is still a while away.
        const std::uint64_t now = platform::MonotonicNanoseconds();
        if (version != reading.version &&
            (!version || now - lastState >= kStateEveryMs * 1000000ull)) {
            version = reading.version;
            lastState = now;
            text += EventText({"state", StateJson(reading.state)});
        }
        return text;
    }

    ServeParts& parts;
    const std::unique_ptr<Places::Ticket> ticket;
    std::uint64_t position;
    std::optional<std::uint64_t> version; // none before the first state
    std::optional<std::uint64_t> camerasVersion;
    std::uint64_t lastState = 0;
};

} // namespace

void AddEventRoutes(RouteTable& table, ServeParts& parts) {
    table.Add({.path = "/events", .run = [&parts](const RouteCall& call) {
                   HttpAnswer answer;
                   answer.type = "text/event-stream";
                   if (call.request.head.method == "HEAD") {
                       return answer;
                   }
                   auto ticket = parts.followers.TryTake();
                   if (!ticket) {
                       throw RequestFailure(kUnavailable,
                                            "all " + std::to_string(kMostFollowers) +
                                                " places that follow events are in use");
                   }
                   answer.stream = std::make_unique<EventStream>(parts, std::move(ticket));
                   return answer;
               }});
}
