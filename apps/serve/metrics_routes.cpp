// metrics_routes.cpp - counts for a monitoring system
#include "apps/serve/http_server.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"

#include <array>
#include <cstdio>
#include <string>

namespace {

/// The text format of Prometheus: HELP, TYPE and value of each.
class MetricsText {
public:
    void Counter(const char* name, const char* help, std::uint64_t value) {
        Head(name, help, "counter");
        Line(name, std::to_string(value));
    }
    void Gauge(const char* name, const char* help, double value) {
        Head(name, help, "gauge");
        Line(name, Number(value));
    }
    /// In seconds, of times in nanoseconds.
    void Times(const char* name, const char* help, const Histogram& times) {
        Head(name, help, "histogram");
        const std::string whole = name;
        for (const double limit : kLimits) {
            Line(whole + "_bucket{le=\"" + Number(limit) + "\"}",
                 std::to_string(times.CountUpTo(static_cast<std::uint64_t>(limit * 1e9))));
        }
        Line(whole + "_bucket{le=\"+Inf\"}", std::to_string(times.Count()));
        Line(whole + "_sum", Number(static_cast<double>(times.Sum()) / 1e9));
        Line(whole + "_count", std::to_string(times.Count()));
    }
    const std::string& Text() const { return text; }

private:
    static constexpr std::array kLimits = {0.0001, 0.00025, 0.0005, 0.001, 0.0025, 0.005, 0.01,
                                           0.025,  0.05,    0.1,    0.25,  0.5,    1.0};

    static std::string Number(double value) {
        std::array<char, 32> digits;
        std::snprintf(digits.data(), digits.size(), "%.10g", value);
        return digits.data();
    }
    void Head(const char* name, const char* help, const char* type) {
        text += std::string("# HELP ") + name + " " + help + "\n# TYPE " + name + " " + type + "\n";
    }
    void Line(const std::string& name, const std::string& value) {
        text += name + " " + value + "\n";
    }

    std::string text;
};

void AddFrames(MetricsText& metrics, const ServeState& state) {
    const FrameAccount& account = state.account;
    metrics.Counter("mivora_frames_completed_total", "Complete frames that came.",
                    account.completed);
    metrics.Counter("mivora_frames_taken_total", "Frames that the program took.", account.taken);
    metrics.Counter("mivora_frames_lost_total", "Frames that the program was too slow for.",
                    account.lost);
    metrics.Counter("mivora_frames_flushed_total", "Frames that waited when grabbing was stopped.",
                    account.flushed);
    metrics.Counter("mivora_frames_damaged_total", "Frames written over while being copied.",
                    account.damaged);
    metrics.Counter("mivora_frames_incomplete_total", "Frames that came incomplete.",
                    account.inError);
    metrics.Gauge("mivora_frames_waiting", "Frames in the queue of the host.",
                  static_cast<double>(state.waitingFrames));
    metrics.Gauge("mivora_frame_rate", "Frames a second.", state.rate);
}

void AddPackets(MetricsText& metrics, const PacketStatistics& packets) {
    const auto add = [&](const char* name, const char* help, std::optional<std::uint64_t> count) {
        if (count) {
            metrics.Counter(name, help, *count);
        }
    };
    add("mivora_packets_received_total", "Packets of the stream.", packets.received);
    add("mivora_packets_missing_total", "Packets that never came.", packets.missing);
    add("mivora_packets_resent_total", "Packets that were asked for again.", packets.resent);
    add("mivora_stream_underruns_total", "Frames that came while no buffer was queued.",
        packets.underruns);
    add("mivora_stream_lost_total", "Frames that were lost on their way.", packets.lost);
}

std::string MetricsOf(ServeParts& parts) {
    const ServeState state = parts.board.Read().state;
    const HttpCounts http = parts.connectionCounts();
    MetricsText metrics;
    metrics.Gauge("mivora_camera_open", "1 while a camera is open.", state.isOpen ? 1 : 0);
    metrics.Gauge("mivora_camera_gone", "1 while the camera is awaited.", state.isGone ? 1 : 0);
    metrics.Gauge("mivora_camera_grabbing", "1 while frames are grabbed.",
                  state.isGrabbing ? 1 : 0);
    AddFrames(metrics, state);
    AddPackets(metrics, state.packets);
    if (state.temperatureC) {
        metrics.Gauge("mivora_camera_temperature_celsius", "Temperature that the camera measures.",
                      *state.temperatureC);
    }
    if (state.recording) {
        metrics.Gauge("mivora_recording_waiting", "Frames that wait to be written.",
                      static_cast<double>(state.recording->waiting));
        metrics.Gauge("mivora_recording_written", "Frames of the recording that are written.",
                      static_cast<double>(state.recording->written));
    }
    const FrameTiming none;
    const FrameTiming& timing = state.timing ? *state.timing : none;
    metrics.Times("mivora_frame_latency_seconds", "From the frame's timestamp to the program.",
                  timing.latency);
    metrics.Times("mivora_frame_hand_over_seconds", "From the module until the program has it.",
                  timing.handOver);
    metrics.Times("mivora_frame_interval_seconds", "Between two frames.", timing.interval);
    metrics.Counter("mivora_previews_total", "Previews that were compressed.",
                    parts.previews.Made());
    metrics.Gauge("mivora_streams", "Streams of previews that are read.",
                  static_cast<double>(parts.streams.Taken()));
    metrics.Gauge("mivora_followers", "Readers of events.",
                  static_cast<double>(parts.followers.Taken()));
    metrics.Gauge("mivora_http_connections", "Open connections.",
                  static_cast<double>(http.connections));
    metrics.Counter("mivora_http_requests_total", "Requests.", http.requests);
    metrics.Counter("mivora_http_refused_connections_total",
                    "Connections refused because all were busy.", http.refused);
    return metrics.Text();
}

} // namespace

void AddMetricsRoutes(RouteTable& table, ServeParts& parts) {
    table.Add({.path = "/metrics", .run = [&parts](const RouteCall&) {
                   HttpAnswer answer;
                   answer.type = "text/plain; version=0.0.4; charset=utf-8";
                   answer.body = MetricsOf(parts);
                   return answer;
               }});
}
