// serve_parts.h - what routes work with
#pragma once

#include "apps/serve/camera_owner.h"
#include "apps/serve/event_hub.h"
#include "apps/serve/frame_holder.h"
#include "apps/serve/places.h"
#include "apps/serve/preview_maker.h"
#include "apps/serve/state_board.h"

#include <functional>
#include <string>

struct HttpCounts;
class RouteTable;

inline constexpr std::size_t kMostStreams = 32;
inline constexpr std::size_t kMostFollowers = 32;
/// Work that takes a whole frame, such as compressing it without loss.
inline constexpr std::size_t kMostHeavyAnswers = 4;

struct ServeParts {
    CameraOwner& owner;
    StateBoard& board;
    FrameHolder& frames;
    std::string recordings; ///< the directory of recordings
    std::function<HttpCounts()> connectionCounts;

    PreviewMaker previews{};
    EventHub events{};
    Places streams{kMostStreams};
    Places followers{kMostFollowers};
    Places heavy{kMostHeavyAnswers};
};

// Each adds the routes of one topic. The parts must outlive the table.
void AddPageRoutes(RouteTable& table);
void AddCameraRoutes(RouteTable& table, ServeParts& parts);
void AddStreamRoutes(RouteTable& table, ServeParts& parts);
void AddImageRoutes(RouteTable& table, ServeParts& parts);
void AddFeatureRoutes(RouteTable& table, ServeParts& parts);
void AddSettingsRoutes(RouteTable& table, ServeParts& parts);
void AddSimulatorRoutes(RouteTable& table, ServeParts& parts);
void AddRecordingRoutes(RouteTable& table, ServeParts& parts);
void AddEventRoutes(RouteTable& table, ServeParts& parts);
void AddMetricsRoutes(RouteTable& table, ServeParts& parts);
