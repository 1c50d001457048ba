// out_of_memory_posix_test.cpp - services with an allocator that refuses
#include "tests/module/services/services_fixture.h"
#include "tests/support/allocations/failing_allocations.h"

using namespace pyxen;

namespace {

class ServicesOutOfMemory : public ServicesFixture {
protected:
    /// Runs a service with each of its allocations refused. It may fail, and must neither throw
    /// nor keep the lock.
    template <typename Call>
    void Refuse(Call call) {
        unsigned refusals = 0;
        const int allocations = support::RefuseEachAllocationBothWays([&] {
            const MV_SERVICE_RESULT result = call();
            support::AllocationPause pause;
            refusals += result == MV_SERVICE_OUT_OF_MEMORY ? 1u : 0u;
            EXPECT_TRUE(result == MV_SERVICE_OK || Reason() != "") << result;
            EXPECT_EQ(Read("Camera", "Width"), MV_SERVICE_OK);
        });
        EXPECT_GT(allocations, 0);
        EXPECT_GT(refusals, 0u);
        EXPECT_EQ(call(), MV_SERVICE_OK);
    }
    /// The same for a part of many allocations, more at the begin than later, one at a time.
    template <typename Call>
    void RefuseSome(Call call) {
        unsigned refusals = 0;
        bool isRefused = true;
        for (int granted = 0; isRefused; granted += 1 + granted / 4) {
            support::RefuseAllocationsAfter(granted, support::Refusal::kOne);
            const MV_SERVICE_RESULT result = call();
            isRefused = support::GrantAllocations();
            refusals += result == MV_SERVICE_OUT_OF_MEMORY ? 1u : 0u;
            EXPECT_TRUE(result == MV_SERVICE_OK || Reason() != "") << result;
            EXPECT_EQ(Read("Camera", "Width"), MV_SERVICE_OK);
        }
        EXPECT_GT(refusals, 0u);
        EXPECT_EQ(call(), MV_SERVICE_OK) << Reason();
    }
};

TEST_F(ServicesOutOfMemory, ReportThatAndGoOn) {
    Open();
    const auto text = [](const char*, void*) {
    };
    const auto feature = [](const MV_FEATURE_DESCRIPTION*, void*) {
    };
    const auto value = [](const MV_FEATURE_VALUE*, void*) {
    };
    const auto change = [](const char*, const char*, void*) {
    };
    const auto camera = [](const MV_CAMERA_DESCRIPTION*, void*) {
    };
    const MV_FEATURE_VALUE label = TextValue("a label that is longer than a short text");
    IMivoraModuleServices& services = Services();
    Refuse([&] { return services.ListModules(text, nullptr, &reason); });
    Refuse([&] { return services.ListFeatures("Camera", feature, nullptr, &reason); });
    Refuse([&] {
        return services.DescribeFeature("Camera", "PixelFormat", feature, nullptr, &reason);
    });
    Refuse([&] { return services.ReadFeature("Camera", "DeviceUserID", value, nullptr, &reason); });
    Refuse([&] {
        return services.WriteFeature("Camera", "DeviceUserID", &label, value, nullptr, &reason);
    });
    Refuse([&] { return services.RunCommand("Camera", "AcquisitionStop", 10, &reason); });
    Refuse([&] { return services.ListCameras(camera, nullptr, &reason); });
    Refuse([&] {
        uint64_t number = 0;
        const MV_SERVICE_RESULT result =
            services.Subscribe("Camera", "Width", change, nullptr, &number, &reason);
        support::AllocationPause pause;
        EXPECT_EQ(services.Unsubscribe(number, nullptr),
                  result == MV_SERVICE_OK ? MV_SERVICE_OK : MV_SERVICE_NOT_FOUND);
        return result;
    });
    sdk.Data().completeWaitsAtOnce = true;
    ASSERT_EQ(Grabber().PrepareFrameBuffers(1), MV_OK);
    ASSERT_EQ(Grabber().Snap(3), MV_OK);
    const auto image = [](const char*, const void*, uint64_t, void*) {
    };
    Refuse([&] { return services.ReadSentImage(0, image, nullptr, &reason); });
    EXPECT_EQ(sdk.Registrations().size(), 1u) << "more than the grabber's own";
}

TEST_F(ServicesOutOfMemory, ReportThatWhereTheyHandleFiles) {
    scripted::Feature& selector = Camera()["PixelFormat"];
    selector.selected = {"DeviceUserID"};
    selector.isStreamable = true;
    Camera()["DeviceUserID"].isStreamable = true;
    const std::string url = "Local:a description with a long name.xml;2000;5";
    for (std::size_t index = 0; index < url.size(); ++index) {
        Camera().registers[0x200 + index] = static_cast<uint8_t>(url[index]);
    }
    Open();
    const auto data = [](const char*, const void*, uint64_t, void*) {
    };
    const auto setting = [](const MV_SETTING*, void*) {
    };
    const std::string path = directory.PathOf("settings.json");
    IMivoraModuleServices& services = Services();
    Refuse([&] { return services.ReadDescriptionFile(data, nullptr, &reason); });
    RefuseSome([&] { return services.SaveSettings(path.c_str(), setting, nullptr, &reason); });
    RefuseSome([&] { return services.LoadSettings(path.c_str(), 0, setting, nullptr, &reason); });
    RefuseSome([&] {
        return services.LoadSettings(path.c_str(), kMvSettingsDryRun, setting, nullptr, &reason);
    });
}

} // namespace
