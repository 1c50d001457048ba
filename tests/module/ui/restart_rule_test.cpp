#include "ui/restart_rule.h"

#include "sync/feature_cache.h"
#include "tests/module/sdk/loaded_api.h"

using namespace pyxen;

namespace {

class RestartRule : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        auto& features = sdk.Data().cameras[0].features;
        features = {scripted::IntFeature("Width", 1, 0, 2),
                    scripted::IntFeature("Binning", 1, 0, 2),
                    scripted::IntFeature("Gain", 1, 0, 2)};
        features[0].category = "/Root/ImageFormatControl";
        features[1].category = "/ImageFormat";
        features[2].category = "/ImageControl";
        ASSERT_TRUE(cache.Init("Camera", &api, scripted::CameraHandle(), &sink));
        sink.Take();
    }

    bool Triggers(const char* path) { return DoesPathTriggerRestart(cache, path, &sink); }

    FeatureCache cache;
};

TEST_F(RestartRule, FollowsTheCategoryOfAFeature) {
    EXPECT_TRUE(Triggers("Width"));
    EXPECT_TRUE(Triggers("Binning"));
    EXPECT_FALSE(Triggers("Gain"));
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(RestartRule, FindsPacketSizesWithoutACache) {
    EXPECT_TRUE(Triggers("GevSCPSPacketSize"));
    EXPECT_TRUE(Triggers("MyPacketSizeMax"));
    EXPECT_TRUE(Triggers("DeviceStreamChannelPacketSize"));
    EXPECT_EQ(sink.Take(), Texts{});
    EXPECT_FALSE(Triggers("packetsize"));
}

TEST_F(RestartRule, FollowsACategoryPath) {
    EXPECT_TRUE(Triggers("/"));
    EXPECT_TRUE(Triggers("/ImageFormat"));
    EXPECT_TRUE(Triggers("/Root/ImageFormatControl/Region"));
    EXPECT_FALSE(Triggers("/AnalogControl"));
    EXPECT_FALSE(Triggers("/PacketSize"));
    EXPECT_FALSE(Triggers("/Root/imageformat"));
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST_F(RestartRule, ReportsAFeatureThatIsMissing) {
    EXPECT_FALSE(Triggers("Nothing"));
    EXPECT_EQ(sink.Take(),
              (Texts{"0 CKVNPyxenFeatureCtrlDialog::DoesPathTriggerRestart: Feature Nothing is not "
                     "in the feature cache"}));
    EXPECT_FALSE(DoesPathTriggerRestart(cache, "Nothing", nullptr));
}

} // namespace
