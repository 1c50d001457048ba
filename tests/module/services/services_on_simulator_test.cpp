// services_on_simulator_test.cpp - services of a camera that the simulator has, while it sends
#include "tests/module/services/services_fixture.h"
#include "tests/module/simulator_grabber_fixture.h"

#include <atomic>
#include <cstring>
#include <optional>

namespace {

class ServicesOnSimulator : public SimulatorGrabberFixture {
protected:
    IMivoraModuleServices& Services() { return grabber->Services(); }
    std::optional<ReceivedValue> Read(const char* module, const char* feature) {
        std::optional<ReceivedValue> read;
        ReceiverOf<const MV_FEATURE_VALUE*> receiver{[&](const MV_FEATURE_VALUE* value) {
            read.emplace(*value);
        }};
        result = Services().ReadFeature(module, feature, receiver.Receive, &receiver, nullptr);
        return read;
    }
    MV_SERVICE_RESULT Write(const char* feature, const MV_FEATURE_VALUE& value) {
        return Services().WriteFeature("Camera", feature, &value, nullptr, nullptr, nullptr);
    }

    MV_SERVICE_RESULT result = MV_SERVICE_OK;
};

TEST_F(ServicesOnSimulator, ListDescribeReadAndWriteEverything) {
    Texts names;
    ReceiverOf<const char*> modules{[&](const char* name) {
        names.emplace_back(name);
    }};
    ASSERT_EQ(Services().ListModules(modules.Receive, &modules, nullptr), MV_SERVICE_OK);
    EXPECT_EQ(names.size(), 6u);
    unsigned described = 0;
    for (const std::string& module : names) {
        Texts features;
        ReceiverOf<const MV_FEATURE_DESCRIPTION*> list{[&](const MV_FEATURE_DESCRIPTION* one) {
            features.emplace_back(one->name);
        }};
        ASSERT_EQ(Services().ListFeatures(module.c_str(), list.Receive, &list, nullptr),
                  MV_SERVICE_OK);
        EXPECT_FALSE(features.empty()) << module;
        for (const std::string& feature : features) {
            bool isReadable = false;
            ReceiverOf<const MV_FEATURE_DESCRIPTION*> whole{[&](const MV_FEATURE_DESCRIPTION* one) {
                EXPECT_STREQ(one->name, feature.c_str());
                isReadable = one->isReadable && one->type != MV_FEATURE_COMMAND;
                ++described;
            }};
            EXPECT_EQ(Services().DescribeFeature(module.c_str(), feature.c_str(), whole.Receive,
                                                 &whole, nullptr),
                      MV_SERVICE_OK)
                << module << "/" << feature;
            if (isReadable) {
                EXPECT_TRUE(Read(module.c_str(), feature.c_str())) << module << "/" << feature;
            }
        }
    }
    EXPECT_GT(described, 100u);
    EXPECT_EQ(Write("Width", IntegerValue(32)), MV_SERVICE_OK);
    EXPECT_EQ(Read("Camera", "Width")->integer, 32);
}

TEST_F(ServicesOnSimulator, WorkWhileFramesComeAndInsideTheirReceiver) {
    ASSERT_EQ(grabber->Snap(1), MV_OK);
    ExpectMoreFrames();
    EXPECT_EQ(Write("Gain", FloatValue(2)), MV_SERVICE_OK);
    EXPECT_EQ(Read("Camera", "Gain")->real, 2);
    EXPECT_EQ(Write("Width", IntegerValue(32)), MV_SERVICE_NO_ACCESS) << "locked meanwhile";
    ExpectMoreFrames();
}

TEST_F(ServicesOnSimulator, ReportChangesOfOthers) {
    std::atomic<unsigned> changes{0};
    ReceiverOf<const char*, const char*> receiver{[&](const char* module, const char* feature) {
        changes +=
            std::strcmp(module, "Camera") == 0 && std::strcmp(feature, "Gain") == 0 ? 1u : 0u;
    }};
    uint64_t number = 0;
    ASSERT_EQ(Services().Subscribe("Camera", "Gain", receiver.Receive, &receiver, &number, nullptr),
              MV_SERVICE_OK);
    ASSERT_EQ(grabber->Api().PxnFeatureFloatSet(grabber->CameraHandle(), "Gain", 3), PxnErrSuccess);
    EXPECT_TRUE(support::WaitUntil([&] { return changes > 0; }));
    EXPECT_EQ(Services().Unsubscribe(number, nullptr), MV_SERVICE_OK);
}

TEST_F(ServicesOnSimulator, SayThatTheCameraHasGone) {
    Control("unplug A");
    EXPECT_FALSE(Read("Camera", "Width"));
    EXPECT_EQ(result, MV_SERVICE_NO_CAMERA);
    EXPECT_TRUE(Read("System", "SystemVendorName"));
    EXPECT_EQ(Services().RunCommand("Camera", "AcquisitionStop", 100, nullptr),
              MV_SERVICE_NO_CAMERA);
    Control("plug A");
}

TEST_F(ServicesOnSimulator, HaveNoDescriptionFile) {
    ReceiverOf<const char*, const void*, uint64_t> receiver{[](const char*, const void*, uint64_t) {
    }};
    EXPECT_EQ(Services().ReadDescriptionFile(receiver.Receive, &receiver, nullptr),
              MV_SERVICE_NOT_SUPPORTED);
}

} // namespace
