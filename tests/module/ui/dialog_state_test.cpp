// What the feature control dialog keeps account of: requests, visible rows, changes of the buffers.
#include "tests/support/manual_clock.h"
#include "ui/buffer_debounce.h"
#include "ui/dialog_layout.h"
#include "ui/update_batch.h"
#include "ui/visible_change.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace pyxen;

namespace {

PxnHandle Handle(std::uintptr_t value) {
    return reinterpret_cast<PxnHandle>(value);
}

// ---- requests ----

TEST(UpdateBatch, KeepsEachFeatureOnceAtItsLastPlace) {
    UpdateBatch batch;
    const std::string again = "Width"; // another text with the same words
    EXPECT_TRUE(batch.Add(Handle(1), "Width"));
    EXPECT_TRUE(batch.Add(Handle(1), "Height"));
    EXPECT_TRUE(batch.Add(Handle(2), "Width"));
    EXPECT_FALSE(batch.Add(Handle(1), again.c_str()));
    ASSERT_EQ(batch.GetRequests().size(), 3u);
    EXPECT_STREQ(batch.GetRequests()[0].name, "Height");
    EXPECT_EQ(batch.GetRequests()[1].handle, Handle(2));
    EXPECT_EQ(batch.GetRequests()[2].handle, Handle(1));
    EXPECT_STREQ(batch.GetRequests()[2].name, "Width");
}

// ---- visible rows ----

std::vector<FeatureLeaf> Leaves(const std::vector<std::pair<const char*, const char*>>& names) {
    std::vector<FeatureLeaf> leaves;
    for (const auto& [module, name] : names) {
        FeatureLeaf leaf;
        leaf.moduleName = module;
        leaf.name = name;
        leaves.push_back(leaf);
    }
    return leaves;
}

using LeafIndices = std::vector<std::size_t>;

TEST(VisibleChange, TellsWhatCameAndWent) {
    const auto leaves = Leaves({{"A", "a"}, {"A", "b"}, {"A", "c"}, {"B", "a"}});
    const VisibleChange change = CompareVisible(leaves, {0, 1}, {1, 2, 3});
    EXPECT_EQ(change.appeared, (LeafIndices{2, 3}));
    EXPECT_EQ(change.vanished, (LeafIndices{0}));
}

TEST(VisibleChange, IsNoneBetweenFeaturesOfTheSameNames) {
    const auto leaves = Leaves({{"A", "a"}, {"A", "a"}, {"B", "a"}});
    EXPECT_EQ(CompareVisible(leaves, {0}, {1}).appeared, LeafIndices{});
    EXPECT_EQ(CompareVisible(leaves, {0}, {1}).vanished, LeafIndices{});
    EXPECT_EQ(CompareVisible(leaves, {0}, {2}).appeared, (LeafIndices{2}));
    EXPECT_EQ(CompareVisible(leaves, {}, {}).appeared, LeafIndices{});
}

// ---- changes of the buffers ----

class Debounce : public ::testing::Test, protected BufferDebounce::Actions {
protected:
    void BeginBufferChange() override {
        done.push_back("begin");
        if (nested) {
            nested = false;
            debounce.OnChange([] { return true; });
        }
    }
    void EndBufferChange() override {
        done.push_back("end");
        if (nestedAtEnd) {
            nestedAtEnd = false;
            debounce.OnChange([] { return true; });
        }
    }
    void StartQuietTimer(std::uint32_t milliseconds) override {
        done.push_back("start " + std::to_string(milliseconds));
    }
    void StopQuietTimer() override { done.push_back("stop"); }

    std::vector<std::string> Take() { return std::exchange(done, {}); }
    void Change(bool impacting = true) {
        debounce.OnChange([impacting] { return impacting; });
    }

    using Steps = std::vector<std::string>;
    support::ManualClock clock;
    std::vector<std::string> done;
    bool nested = false;
    bool nestedAtEnd = false;
    BufferDebounce debounce{*this};
};

TEST_F(Debounce, TellsABurstAsOneChange) {
    Change();
    EXPECT_EQ(Take(), (Steps{"begin", "start 500"}));
    Change();
    EXPECT_EQ(Take(), (Steps{"stop", "start 500"}));
    clock.Advance(500);
    debounce.OnTimer();
    EXPECT_EQ(Take(), (Steps{"stop", "end"}));
    Change();
    EXPECT_EQ(Take(), (Steps{"begin", "start 500"}));
}

TEST_F(Debounce, IsQuietOnlyWhenItsTimeHasPassed) {
    Change();
    Take();
    clock.Advance(499);
    debounce.OnTimer();
    EXPECT_EQ(Take(), (Steps{"start 1"})) << "the timer was early";
    Change();
    EXPECT_EQ(Take(), (Steps{"stop", "start 500"})) << "still the same change";
    clock.Advance(300);
    debounce.OnTimer();
    EXPECT_EQ(Take(), (Steps{"start 200"}));
    clock.Advance(200);
    debounce.OnTimer();
    EXPECT_EQ(Take(), (Steps{"stop", "end"}));
}

TEST_F(Debounce, EndsAtOnceWhenNoChangeIsUnderWay) {
    debounce.OnTimer();
    EXPECT_EQ(Take(), (Steps{"stop", "end"}));
}

TEST_F(Debounce, IgnoresWhatLeavesTheBuffersAlone) {
    Change(false);
    EXPECT_EQ(Take(), Steps{});
}

TEST_F(Debounce, WaitsAnewForWhateverFollows) {
    Change();
    Take();
    Change(false);
    EXPECT_EQ(Take(), (Steps{"stop", "start 500"}));
}

TEST_F(Debounce, NotifiesTheEndBeforeItForgetsTheChange) {
    Change();
    Take();
    clock.Advance(500);
    nestedAtEnd = true;
    debounce.OnTimer();
    EXPECT_EQ(Take(), (Steps{"stop", "end", "stop", "start 500"})) << "taken for another beginning";
    Change();
    EXPECT_EQ(Take(), (Steps{"begin", "start 500"}));
}

TEST_F(Debounce, NotifiesTheBeginningBeforeItMarksTheChange) {
    nested = true;
    Change();
    EXPECT_EQ(Take(), (Steps{"begin", "begin", "start 500", "start 500"}));
    Change();
    EXPECT_EQ(Take(), (Steps{"stop", "start 500"}));
    clock.Advance(500);
    debounce.OnTimer();
    EXPECT_EQ(Take(), (Steps{"stop", "end"}));
}

// ---- layout ----

FeatureDialogLayout Layout() {
    FeatureDialogLayout::Template from;
    from.width = 600;
    from.height = 400;
    from.frame = {10, 280, 590, 360};
    from.description = {20, 295, 580, 350};
    from.close = {510, 370, 590, 390};
    from.paneWidth = 220;
    from.leastPaneWidth = 150;
    from.leastPaneHeight = 90;
    return FeatureDialogLayout(from);
}

void ExpectPlace(const LayoutRect& place, const LayoutRect& expected) {
    EXPECT_EQ(place.left, expected.left);
    EXPECT_EQ(place.top, expected.top);
    EXPECT_EQ(place.right, expected.right);
    EXPECT_EQ(place.bottom, expected.bottom);
}

TEST(DialogLayout, GivesTheTemplateItsOwnPlaces) {
    const auto places = Layout().Compute(600, 400, 0, 13);
    ExpectPlace(places.frame, {10, 280, 590, 360});
    ExpectPlace(places.description, {20, 295, 580, 350});
    ExpectPlace(places.close, {510, 370, 590, 390});
    ExpectPlace(places.container, {370, 10, 590, 270});
    ExpectPlace(places.tree, {10, 10, 360, 270});
}

TEST(DialogLayout, KeepsTheMarginsAtAnotherSize) {
    const auto places = Layout().Compute(1170, 700, 0, 13);
    ExpectPlace(places.frame, {10, 580, 1160, 660});
    ExpectPlace(places.description, {20, 595, 1150, 650});
    ExpectPlace(places.close, {1080, 670, 1160, 690});
    ExpectPlace(places.container, {720, 10, 1160, 570});
    ExpectPlace(places.tree, {10, 10, 710, 570});
}

TEST(DialogLayout, GivesALongTextMoreHeight) {
    EXPECT_EQ(Layout().DescriptionWidth(700), 660);
    const auto places = Layout().Compute(600, 400, 85, 13);
    ExpectPlace(places.frame, {10, 250, 590, 360});
    ExpectPlace(places.description, {20, 265, 580, 350});
    EXPECT_EQ(places.tree.bottom, 240);
    const auto most = Layout().Compute(600, 400, 2000, 13);
    EXPECT_EQ(most.tree.Height(), 90);
    EXPECT_EQ(most.container.Height(), 90);
    EXPECT_EQ(most.description.bottom, 350);
    EXPECT_EQ(most.description.Height() % 13, 0) << "a line is cut";
    EXPECT_EQ(most.description.top - most.frame.top, 15 + 4);
}

TEST(DialogLayout, LeavesTheEditorItsHeight) {
    const auto places = Layout().Compute(600, 210, 0, 13);
    EXPECT_EQ(places.container.Height(), 90);
    EXPECT_EQ(places.tree.Height(), 90);
    ExpectPlace(places.frame, {10, 110, 590, 170});
    ExpectPlace(places.description, {20, 125, 580, 160});
    const auto longText = Layout().Compute(600, 210, 2000, 13);
    EXPECT_EQ(longText.container.Height(), 90);
    EXPECT_EQ(longText.description.Height() % 13, 0) << "a line is cut";
    const auto least = Layout().Compute(600, 100, 0, 13);
    EXPECT_EQ(least.description.Height(), 13);
}

TEST(DialogLayout, LeavesTheEditorItsWidth) {
    const auto places = Layout().Compute(300, 400, 0, 13);
    EXPECT_EQ(places.container.Width(), 150);
    ExpectPlace(places.tree, {10, 10, 130, 270});
    const auto least = Layout().Compute(0, 0, 0, 13);
    EXPECT_GE(least.tree.Width(), 0);
    EXPECT_GE(least.tree.Height(), 0);
}

} // namespace
