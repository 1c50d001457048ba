// sync_engine_test.cpp - applying the declarations of the synchronisation file
#include "tests/module/sync/engine_fixture.h"

using namespace pyxen;

namespace {

using scripted::IntFeature;

const std::vector<std::string> kWrites{"PxnFeatureIntSet"};

class SyncEngineTest : public EngineFixture {
protected:
    void SetUp() override {
        EngineFixture::SetUp();
        Camera().Put(IntFeature("Width", 5, 0, 9));
        Camera().Put(IntFeature("Height", 6, 0, 9));
        Camera().Put(IntFeature("Gain", 7, 0, 9));
        Device().Put(IntFeature("First", 1, 0, 9));
        Device().Put(IntFeature("Second", 2, 0, 9));
        Port().Put(IntFeature("Third", 3, 0, 9));
        Fill();
    }
    void TearDown() override { EXPECT_EQ(sdk.Calls({"PxnFeatureEnum"}), Texts{}); }
};

TEST_F(SyncEngineTest, AppliesEveryDeclarationOfAModuleInFileOrder) {
    Rules({{"camera::Width", {"Localdevice::Second", "interface::Third"}},
           {"Localdevice::First", {"Camera::Gain"}},
           {"CAMERA::Height", {"LOCALDEVICE::First"}},
           {"Camera::Gain", {}}});
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, false), 1);
    EXPECT_EQ(sdk.TakeCalls(kWrites), (Texts{"PxnFeatureIntSet(localdevice0, \"Second\", 5)",
                                             "PxnFeatureIntSet(interface0, \"Third\", 5)",
                                             "PxnFeatureIntSet(localdevice0, \"First\", 6)"}));
}

TEST_F(SyncEngineTest, AFeatureMayDependOnOneOfItsOwnModule) {
    Rules({{"Camera::Width", {"Camera::Height"}}});
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, true), 1);
    EXPECT_EQ(Camera()["Height"].intValue, 5);
    Camera()["Width"].intValue = 8;
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Width", true), 1);
    EXPECT_EQ(Camera()["Height"].intValue, 8);
    EXPECT_TRUE(engine.IntFeatureCheckSyncPath(&camera, "Width", 9).ok);
    Camera()["Height"].writeable = false;
    EXPECT_FALSE(engine.IntFeatureCheckSyncPath(&camera, "Width", 9).ok);
}

TEST_F(SyncEngineTest, AppliesADeclarationThatIsGivenTwiceTwice) {
    Rules({{"Camera::Width", {"Localdevice::First"}}, {"Camera::Width", {"Localdevice::Second"}}});
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, true), 1);
    EXPECT_EQ(sdk.TakeCalls(kWrites), (Texts{"PxnFeatureIntSet(localdevice0, \"First\", 5)",
                                             "PxnFeatureIntSet(localdevice0, \"Second\", 5)"}));
}

TEST_F(SyncEngineTest, GoesOnAfterAFailureAndRemembersIt) {
    Rules({{"Camera::Width", {"Nowhere::First", "Localdevice::Absent", "Localdevice::First"}},
           {"Camera::Absent", {"Localdevice::Second"}},
           {"Camera::Height", {"Localdevice::Second"}}});
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, false), 0);
    EXPECT_EQ(sdk.TakeCalls(kWrites), (Texts{"PxnFeatureIntSet(localdevice0, \"First\", 5)",
                                             "PxnFeatureIntSet(localdevice0, \"Second\", 6)"}));
}

TEST_F(SyncEngineTest, PassesTheOnlyIfDifferentFlagOn) {
    Rules({{"Camera::Width", {"Localdevice::First"}}});
    Device()["First"].intValue = 5;
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, true), 1);
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Width", true), 1);
    EXPECT_EQ(sdk.TakeCalls(kWrites), Texts{});
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, false), 1);
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Width", false), 1);
    EXPECT_EQ(sdk.TakeCalls(kWrites).size(), 2u);
}

TEST_F(SyncEngineTest, IsContentWhenNothingIsDeclared) {
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, true), 1);
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Width", true), 1);
    Rules({{"Localdevice::First", {"Camera::Width"}}, {"Camera::Height", {}}});
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, true), 1);
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Width", true), 1);
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Height", true), 1);
    EXPECT_EQ(engine.SyncModuleFeatures(nullptr, true), 1);
    EXPECT_EQ(engine.SyncDependentFeatures(nullptr, "Width", true), 1);
    FeatureCache empty;
    EXPECT_EQ(engine.SyncModuleFeatures(&empty, true), 1);
    EXPECT_EQ(engine.SyncDependentFeatures(&empty, "Width", true), 1);
    EXPECT_EQ(sdk.Calls(), Texts{});
    EXPECT_EQ(sink.Lines(), Texts{});
}

TEST_F(SyncEngineTest, SyncsTheDependenciesOfTheFirstDeclarationOnly) {
    Rules({{"camera::WIDTH", {"Localdevice::Second", "Localdevice::First"}},
           {"Camera::Width", {"Interface::Third"}}});
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Width", true), 1);
    EXPECT_EQ(sdk.TakeCalls(kWrites), (Texts{"PxnFeatureIntSet(localdevice0, \"Second\", 5)",
                                             "PxnFeatureIntSet(localdevice0, \"First\", 5)"}));
}

TEST_F(SyncEngineTest, SyncsTheOtherDependenciesAfterAFailure) {
    Rules({{"Camera::Width", {"Nowhere::First", "Interface::Third"}}});
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Width", true), 0);
    EXPECT_EQ(sdk.TakeCalls(kWrites), Texts{"PxnFeatureIntSet(interface0, \"Third\", 5)"});
}

TEST_F(SyncEngineTest, NamesTheSourceAsTheCallerDoes) {
    Rules({{"Camera::WIDTH", {"Localdevice::First"}}});
    // The declaration's own spelling is looked up byte for byte when a module is synchronised.
    EXPECT_EQ(engine.SyncModuleFeatures(&camera, true), 0);
    EXPECT_EQ(engine.SyncDependentFeatures(&camera, "Width", true), 1);
}

TEST_F(SyncEngineTest, KnowsWhichFeaturesChangeTheBufferLayout) {
    Camera()["Width"].category = "/ImageFormatControl";
    Camera()["Height"].category = "/Root/ImageFormatControl/Deep";
    Camera()["Gain"].category = "/ImageFormat";
    for (const char* name : {"GevSCPSPacketSize", "XPacketSizeY", "DeviceStreamChannelPacketSize",
                             "packetsize", "PayloadSize", "DeviceStreamChannelPacket"}) {
        Camera().Put(IntFeature(name, 0, 0, 9));
    }
    Device().Put(IntFeature("Depth", 0, 0, 9)).category = "/MyPacketSizeControl";
    Fill();
    for (const char* name : {"Width", "Height", "GevSCPSPacketSize", "XPacketSizeY",
                             "DeviceStreamChannelPacketSize"}) {
        EXPECT_TRUE(SyncEngine::IsBufferImpactingFeature(&camera, name)) << name;
    }
    for (const char* name : {"Gain", "packetsize", "PayloadSize", "DeviceStreamChannelPacket",
                             "PacketSize", "Absent"}) {
        EXPECT_FALSE(SyncEngine::IsBufferImpactingFeature(&camera, name)) << name;
    }
    EXPECT_TRUE(SyncEngine::IsBufferImpactingFeature(&device, "Depth"));
    EXPECT_FALSE(SyncEngine::IsBufferImpactingFeature(nullptr, "Width"));
}

} // namespace
