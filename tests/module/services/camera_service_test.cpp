// camera_service_test.cpp - the grabber's list of cameras, for hosts
#include "services/camera_service.h"

#include "tests/module/services/services_fixture.h"

using namespace pyxen;

namespace {

struct ReceivedCamera {
    explicit ReceivedCamera(const MV_CAMERA_DESCRIPTION& from)
        : index(from.index),
          canOpen(from.canOpen),
          canRead(from.canRead),
          texts{from.id,
                from.extendedId,
                from.name,
                from.vendor,
                from.model,
                from.serialNumber,
                from.userName,
                from.interfaceId,
                from.interfaceName,
                from.transportLayer} {
        EXPECT_EQ(from.size, sizeof from);
    }

    uint32_t index;
    uint32_t canOpen;
    uint32_t canRead;
    Texts texts;
};

class CameraServices : public ServicesFixture {
protected:
    MV_SERVICE_RESULT List() {
        received.clear();
        ReceiverOf<const MV_CAMERA_DESCRIPTION*> receiver{[&](const MV_CAMERA_DESCRIPTION* camera) {
            received.emplace_back(*camera);
        }};
        return Services().ListCameras(receiver.Receive, &receiver, &reason);
    }

    std::vector<ReceivedCamera> received;
};

TEST_F(CameraServices, ListTheGrabbersCameras) {
    EXPECT_EQ(List(), MV_SERVICE_NOT_INITIALISED);
    scripted::Camera other = Camera();
    other.id = "cam-2";
    other.extendedId = "cam-ext-2";
    other.modelName = "Model B";
    other.serial = "0002";
    other.permittedAccess = PxnAccessModeRead;
    sdk.Data().cameras.push_back(other);
    Init();
    ASSERT_EQ(List(), MV_SERVICE_OK);
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].texts, (Texts{"cam-1", "cam-ext-1", "Model A", "", "Model A", "0001", "",
                                        "if-eth0", "eth0", "GEV"}));
    EXPECT_EQ(received[0].index, 0u);
    EXPECT_EQ(received[0].canOpen, 1u);
    EXPECT_EQ(received[0].canRead, 1u);
    EXPECT_EQ(received[1].texts[0], "cam-2");
    EXPECT_EQ(received[1].index, 1u);
    EXPECT_EQ(received[1].canOpen, 0u);
    EXPECT_EQ(received[1].canRead, 1u);
    EXPECT_EQ(Reason(), "");
}

TEST_F(CameraServices, NameWhatTheOpenCameraSaysOfItself) {
    Camera().Put(scripted::StringFeature("DeviceVendorName", "Korvane"));
    Open();
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].texts[3], "Korvane");
    EXPECT_EQ(received[0].texts[6], "left");
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].texts[3], "");
    EXPECT_EQ(received[0].texts[6], "");
}

TEST_F(CameraServices, SayWhatCanBeOpenedAtPresent) {
    Init();
    Camera().permittedAccess = PxnAccessModeUnknown;
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].canOpen, 1u) << "only an attempt can say";
    EXPECT_EQ(received[0].canRead, 1u);
    Camera().permittedAccess = 0;
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].canOpen, 0u);
    EXPECT_EQ(received[0].canRead, 0u);
    sdk.Fail("PxnCameraInfoQuery", PxnErrNotFound);
    Camera().permittedAccess = PxnAccessModeFull;
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].canOpen, 0u) << "it has gone";
}

TEST_F(CameraServices, TakeTheInterfacesThatThereIsRoomFor) {
    Init();
    // One more has come between the two calls.
    sdk.Data().interfaces.push_back(sdk.Data().interfaces[0]);
    sdk.Data().foundAnswers["PxnInterfacesList"] = {1};
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].texts[8], "eth0");
    for (const uint32_t count : {0u, 0xFFFFFFFFu}) {
        sdk.Data().foundAnswers["PxnInterfacesList"] = {count};
        ASSERT_EQ(List(), MV_SERVICE_OK);
        EXPECT_EQ(received[0].texts[8], "");
    }
}

TEST_F(CameraServices, GoWithoutAnInterfaceThatIsNotListed) {
    Init();
    sdk.Fail("PxnInterfacesList", PxnErrIO);
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].texts[7], "");
    EXPECT_EQ(received[0].texts[9], "");
    sdk.Fail("PxnInterfacesList", PxnErrIO, 2);
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].texts[8], "");
    sdk.Data().interfaces[0].type = 99;
    ASSERT_EQ(List(), MV_SERVICE_OK);
    EXPECT_EQ(received[0].texts[8], "eth0");
    EXPECT_EQ(received[0].texts[9], "");
}

} // namespace
