// event_hub_test.cpp - events for readers of every speed
#include "apps/serve/event_hub.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(EventHub, PassesEventsFromAPositionOn) {
    EventHub hub;
    hub.Publish("log", "1");
    const std::uint64_t position = hub.End();
    hub.Publish("log", "2");
    hub.Publish("feature", "3");
    std::vector<ServeEvent> events;
    EXPECT_EQ(hub.Read(position, 0, events), position + 2);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(EventText(events[0]), "event: log\ndata: 2\n\n");
    EXPECT_EQ(EventText(events[1]), "event: feature\ndata: 3\n\n");
    EXPECT_EQ(hub.Read(hub.End(), 1, events), position + 2);
    EXPECT_EQ(events.size(), 2u);
}

TEST(EventHub, KeepsTheNewestForASlowReader) {
    EventHub hub;
    for (int i = 0; i < 1500; ++i) {
        hub.Publish("log", std::to_string(i));
    }
    std::vector<ServeEvent> events;
    EXPECT_EQ(hub.Read(0, 0, events), 1500u);
    ASSERT_EQ(events.size(), 1000u);
    EXPECT_EQ(events.front().data, "500");
    EXPECT_EQ(events.back().data, "1499");
}

TEST(EventHub, WakesItsReaders) {
    EventHub hub;
    std::vector<ServeEvent> events;
    std::thread publisher([&] { hub.Publish("log", "1"); });
    std::uint64_t position = 0;
    while (position == 0) {
        position = hub.Read(position, 60000, events);
    }
    publisher.join();
    EXPECT_EQ(events.size(), 1u);
}

} // namespace
