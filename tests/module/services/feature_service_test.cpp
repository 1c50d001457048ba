// feature_service_test.cpp - listing, describing and reading features, and running commands
#include "services/feature_service.h"

#include "tests/module/services/services_fixture.h"

using namespace pyxen;

namespace {

/// What a receiver of descriptions got, as far as it is compared.
struct ReceivedDescription {
    explicit ReceivedDescription(const MV_FEATURE_DESCRIPTION& from) : record(from) {
        for (const char* const text :
             {from.module, from.name, from.displayName, from.category, from.unit, from.toolTip,
              from.description, from.nameSpace, from.representation}) {
            texts.emplace_back(text);
        }
        for (uint32_t index = 0; index < from.entryCount; ++index) {
            entries.push_back(std::string(from.entries[index]) +
                              (from.entryAvailable[index] ? "" : " (unavailable)"));
        }
        for (uint32_t index = 0; index < from.selectedCount; ++index) {
            selected.emplace_back(from.selected[index]);
        }
    }

    MV_FEATURE_DESCRIPTION record; // whose pointers are no longer valid
    Texts texts;
    Texts entries;
    Texts selected;
};

class FeatureServices : public ServicesFixture {
protected:
    MV_SERVICE_RESULT List(const char* module) {
        return Receive([&](MV_FEATURE_RECEIVER receiver, void* context) {
            return Services().ListFeatures(module, receiver, context, &reason);
        });
    }
    MV_SERVICE_RESULT Describe(const char* module, const char* feature) {
        return Receive([&](MV_FEATURE_RECEIVER receiver, void* context) {
            return Services().DescribeFeature(module, feature, receiver, context, &reason);
        });
    }
    Texts Names() const {
        Texts names;
        for (const ReceivedDescription& one : received) {
            names.push_back(one.texts[0] + "/" + one.texts[1]);
        }
        return names;
    }

    std::vector<ReceivedDescription> received;

private:
    template <typename Call>
    MV_SERVICE_RESULT Receive(Call call) {
        received.clear();
        ReceiverOf<const MV_FEATURE_DESCRIPTION*> receiver{
            [&](const MV_FEATURE_DESCRIPTION* record) {
                received.emplace_back(*record);
            }};
        return call(receiver.Receive, &receiver);
    }
};

// ---- modules ----

TEST_F(FeatureServices, ListTheSystemWithoutACameraAndAllModulesWithOne) {
    Texts names;
    EXPECT_EQ(ListModules(names), MV_SERVICE_NOT_INITIALISED);
    EXPECT_EQ(Reason(), "the grabber is not initialised");
    EXPECT_EQ(names, Texts{});
    Init();
    EXPECT_EQ(ListModules(names), MV_SERVICE_OK);
    EXPECT_EQ(names, Texts{"System"});
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(ListModules(names), MV_SERVICE_OK);
    EXPECT_EQ(names,
              (Texts{"System", "Camera", "Interface", "Transportlayer", "Localdevice", "Stream0"}));
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    EXPECT_EQ(ListModules(names), MV_SERVICE_OK);
    EXPECT_EQ(names, Texts{"System"});
    ASSERT_EQ(Grabber().DeInit(), MV_OK);
    EXPECT_EQ(ListModules(names), MV_SERVICE_NOT_INITIALISED);
}

TEST_F(FeatureServices, NameWhatIsMissing) {
    Init();
    EXPECT_EQ(Read("Camera", "Width"), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(Reason(), "no camera is open");
    EXPECT_EQ(Read("Kitchen", "Width"), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Reason(), "there is no module \"Kitchen\"; there are System");
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    EXPECT_EQ(Read("Kitchen", "Width"), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Reason(), "there is no module \"Kitchen\"; there are System, Camera, Interface, "
                        "Transportlayer, Localdevice, Stream0");
    EXPECT_EQ(Read("Camera", "Depth"), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Reason(), "Camera has no feature \"Depth\"");
    EXPECT_EQ(Read("Camera", ""), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Read("camera", "Width"), MV_SERVICE_OK);
    EXPECT_EQ(Read("PxnSystem", "TLVendorName"), MV_SERVICE_OK);
    EXPECT_EQ(Reason(), "");
}

TEST_F(FeatureServices, WantTheirArguments) {
    Open();
    IMivoraModuleServices& services = Services();
    const MV_FEATURE_VALUE value = IntegerValue(640);
    MV_FEATURE_VALUE shorter = value;
    shorter.size = sizeof shorter - 1;
    uint64_t number = 0;
    const auto feature = [](const MV_FEATURE_DESCRIPTION*, void*) {
    };
    const auto receiver = [](const MV_FEATURE_VALUE*, void*) {
    };
    const auto change = [](const char*, const char*, void*) {
    };
    for (const MV_SERVICE_RESULT result :
         {services.ListModules(nullptr, nullptr, &reason),
          services.ListFeatures(nullptr, feature, nullptr, &reason),
          services.ListFeatures("Camera", nullptr, nullptr, &reason),
          services.DescribeFeature(nullptr, "Width", feature, nullptr, &reason),
          services.DescribeFeature("Camera", nullptr, feature, nullptr, &reason),
          services.DescribeFeature("Camera", "Width", nullptr, nullptr, &reason),
          services.ReadFeature(nullptr, "Width", receiver, nullptr, &reason),
          services.ReadFeature("Camera", nullptr, receiver, nullptr, &reason),
          services.ReadFeature("Camera", "Width", nullptr, nullptr, &reason),
          services.WriteFeature(nullptr, "Width", &value, nullptr, nullptr, &reason),
          services.WriteFeature("Camera", nullptr, &value, nullptr, nullptr, &reason),
          services.WriteFeature("Camera", "Width", nullptr, nullptr, nullptr, &reason),
          services.WriteFeature("Camera", "Width", &shorter, nullptr, nullptr, &reason),
          services.RunCommand(nullptr, "AcquisitionStop", 0, &reason),
          services.RunCommand("Camera", nullptr, 0, &reason),
          services.Subscribe(nullptr, "Width", change, nullptr, &number, &reason),
          services.Subscribe("Camera", nullptr, change, nullptr, &number, &reason),
          services.Subscribe("Camera", "Width", nullptr, nullptr, &number, &reason),
          services.Subscribe("Camera", "Width", change, nullptr, nullptr, &reason),
          services.ReadDescriptionFile(nullptr, nullptr, &reason),
          services.ListCameras(nullptr, nullptr, &reason)}) {
        EXPECT_EQ(result, MV_SERVICE_BAD_ARGUMENT);
    }
    EXPECT_EQ(Reason(), "a required argument is missing, or a size is wrong");
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(services.ListModules(nullptr, nullptr, nullptr), MV_SERVICE_BAD_ARGUMENT);
    EXPECT_EQ(services.WriteFeature("Camera", "Width", &value, nullptr, nullptr, nullptr),
              MV_SERVICE_OK);
    EXPECT_EQ(services.GetVersion(), MIVORA_SERVICES_VERSION);
}

// ---- descriptions ----

TEST_F(FeatureServices, ListWhatIsFixedInTheOrderOfTheSdk) {
    Camera().features.clear();
    scripted::Feature& width = Camera().Put(scripted::IntFeature("Width", 640, 16, 2048, 16));
    width.category = "/ImageFormatControl";
    width.displayName = "Image width";
    width.unit = "px";
    width.tooltip = "Columns";
    width.description = "Columns of the image.";
    width.sfncNamespace = "Custom";
    width.representation = "Linear";
    width.visibility = PxnVisibilityGuru;
    width.isStreamable = true;
    width.flags |= PxnFeatureFlagVolatile;
    scripted::Feature& selector =
        Camera().Put(scripted::EnumFeature("GainSelector", "All", {{.name = "All"}}));
    selector.selected = {"Gain"};
    selector.visibility = 77;
    Camera().Put(scripted::CommandFeature("Start"));
    Camera().Put(scripted::RawFeature("Table", {'a'}));
    Camera().Put(scripted::BoolFeature("Odd", true)).type = 99;
    Open();
    ASSERT_EQ(List("Camera"), MV_SERVICE_OK);
    EXPECT_EQ(Names(), (Texts{"Camera/Width", "Camera/GainSelector", "Camera/Start", "Camera/Table",
                              "Camera/Odd"}));
    EXPECT_EQ(received[0].texts,
              (Texts{"Camera", "Width", "Image width", "/ImageFormatControl", "px", "Columns",
                     "Columns of the image.", "Custom", "Linear"}));
    const MV_FEATURE_DESCRIPTION& first = received[0].record;
    EXPECT_EQ(first.size, sizeof first);
    EXPECT_EQ(first.type, MV_FEATURE_INTEGER);
    EXPECT_EQ(first.visibility, MV_VISIBILITY_GURU);
    EXPECT_EQ(first.isSelector, 0u);
    EXPECT_EQ(first.isStreamable, 1u);
    EXPECT_EQ(first.isVolatile, 1u);
    EXPECT_EQ(first.hasLimits, 0u);
    EXPECT_EQ(received[1].record.isSelector, 1u);
    EXPECT_EQ(received[1].record.isStreamable, 0u);
    EXPECT_EQ(received[1].record.isVolatile, 0u);
    EXPECT_EQ(received[1].record.visibility, MV_VISIBILITY_UNKNOWN);
    EXPECT_EQ(received[2].record.type, MV_FEATURE_COMMAND);
    EXPECT_EQ(received[3].record.type, MV_FEATURE_REGISTER);
    EXPECT_EQ(received[4].record.type, MV_FEATURE_UNKNOWN);
    EXPECT_EQ(Calls(), Texts{}) << "what is fixed is known";
    EXPECT_EQ(List("Kitchen"), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Names(), Texts{});
    EXPECT_EQ(List("System"), MV_SERVICE_OK);
    EXPECT_EQ(received[0].texts[0], "System");
}

TEST_F(FeatureServices, DescribeWhatHoldsAtPresent) {
    Camera().Put(scripted::IntFeature("Width", 640, 16, 2048, 16)).writeable = false;
    Camera().Put(scripted::FloatFeature("Gain", 1.5, 0.25, 24.0)).readable = false;
    Camera().Put(scripted::StringFeature("Label", "left", 8));
    scripted::Feature& selector = Camera().Put(scripted::EnumFeature(
        "GainSelector", "Red",
        {{.name = "Red", .intValue = 1}, {.name = "Blue", .intValue = 4, .available = false}}));
    selector.selected = {"Gain", "Width"};
    Open();
    ASSERT_EQ(Describe("Camera", "Width"), MV_SERVICE_OK);
    const MV_FEATURE_DESCRIPTION width = received[0].record;
    EXPECT_EQ(width.isReadable, 1u);
    EXPECT_EQ(width.isWritable, 0u);
    EXPECT_EQ(width.hasLimits, 1u);
    EXPECT_EQ(width.integerMin, 16);
    EXPECT_EQ(width.integerMax, 2048);
    EXPECT_EQ(width.hasIncrement, 1u);
    EXPECT_EQ(width.increment, 16);
    ASSERT_EQ(Describe("Camera", "Gain"), MV_SERVICE_OK);
    const MV_FEATURE_DESCRIPTION gain = received[0].record;
    EXPECT_EQ(gain.isReadable, 0u);
    EXPECT_EQ(gain.isWritable, 1u);
    EXPECT_EQ(gain.realMin, 0.25);
    EXPECT_EQ(gain.realMax, 24.0);
    EXPECT_EQ(gain.hasIncrement, 0u);
    ASSERT_EQ(Describe("Camera", "Label"), MV_SERVICE_OK);
    EXPECT_EQ(received[0].record.longestText, 8u);
    ASSERT_EQ(Describe("Camera", "GainSelector"), MV_SERVICE_OK);
    EXPECT_EQ(received[0].entries, (Texts{"Red", "Blue (unavailable)"}));
    EXPECT_EQ(received[0].selected, (Texts{"Gain", "Width"}));
    ASSERT_EQ(Describe("Camera", "AcquisitionStart"), MV_SERVICE_OK);
    EXPECT_EQ(received[0].record.type, MV_FEATURE_COMMAND);
    EXPECT_EQ(received[0].record.hasLimits, 0u);
    EXPECT_EQ(Reason(), "");
    EXPECT_EQ(Describe("Camera", "Depth"), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(received.size(), 0u);
}

TEST_F(FeatureServices, LeaveOutLimitsThatCannotBeRead) {
    Open();
    sdk.Fail("PxnFeatureIntRangeQuery", PxnErrIO);
    ASSERT_EQ(Describe("Camera", "Width"), MV_SERVICE_OK);
    EXPECT_EQ(received[0].record.hasLimits, 0u);
    sdk.Fail("PxnFeatureIntIncrementQuery", PxnErrIO);
    ASSERT_EQ(Describe("Camera", "Width"), MV_SERVICE_OK);
    EXPECT_EQ(received[0].record.hasIncrement, 0u);
    EXPECT_EQ(received[0].record.hasLimits, 1u);
}

TEST_F(FeatureServices, ReportWhatTheSdkFailsToDescribe) {
    Camera().Find("PixelFormat")->selected = {"Width"};
    Open();
    sdk.Fail("PxnFeatureAccessQuery", PxnErrIO);
    EXPECT_EQ(Describe("Camera", "Width"), MV_SERVICE_SDK_FAILED);
    EXPECT_EQ(received.size(), 0u);
    EXPECT_NE(Reason().find("(-20)"), std::string::npos);
    sdk.Fail("PxnFeatureListSelected", PxnErrBadHandle);
    EXPECT_EQ(Describe("Camera", "PixelFormat"), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(Reason(), "Camera/PixelFormat: the camera has gone");
}

// ---- reading ----

TEST_F(FeatureServices, ReadEveryType) {
    Camera().Put(scripted::FloatFeature("Gain", 1.5, 0, 24));
    Camera().Put(scripted::RawFeature("Table", {'a', '\0', 'b'}));
    Open();
    std::vector<ReceivedValue> values;
    for (const char* const name :
         {"Width", "Gain", "PixelFormat", "DeviceUserID", "ReverseX", "Table"}) {
        EXPECT_EQ(Read("Camera", name, values), MV_SERVICE_OK) << name;
        EXPECT_EQ(Reason(), "");
    }
    ASSERT_EQ(values.size(), 6u);
    EXPECT_EQ(values[0].type, MV_FEATURE_INTEGER);
    EXPECT_EQ(values[0].integer, 640);
    EXPECT_EQ(values[1].type, MV_FEATURE_FLOAT);
    EXPECT_EQ(values[1].real, 1.5);
    EXPECT_EQ(values[2].type, MV_FEATURE_ENUMERATION);
    EXPECT_EQ(values[2].text, "Mono8");
    EXPECT_EQ(values[2].integer, 0x01080001);
    EXPECT_EQ(values[3].type, MV_FEATURE_STRING);
    EXPECT_EQ(values[3].text, "left");
    EXPECT_EQ(values[4].type, MV_FEATURE_BOOLEAN);
    EXPECT_EQ(values[4].integer, 0);
    EXPECT_EQ(values[5].type, MV_FEATURE_REGISTER);
    EXPECT_EQ(values[5].text, std::string("a\0b", 3));
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(FeatureServices, ReadAnEntryWhoseNumberIsUnknown) {
    Open();
    std::vector<ReceivedValue> values;
    sdk.Fail("PxnFeatureEnumAsInt", PxnErrIO);
    EXPECT_EQ(Read("Camera", "PixelFormat", values), MV_SERVICE_OK);
    ASSERT_EQ(values.size(), 1u);
    EXPECT_EQ(values[0].text, "Mono8");
    EXPECT_EQ(values[0].integer, 0);
}

TEST_F(FeatureServices, SayWhyAFeatureCannotBeRead) {
    Open();
    EXPECT_EQ(Read("Camera", "AcquisitionStart"), MV_SERVICE_WRONG_TYPE);
    EXPECT_EQ(Reason(), "Camera/AcquisitionStart: has no value");
    const std::pair<PxnError, MV_SERVICE_RESULT> codes[] = {
        {PxnErrInvalidAccess, MV_SERVICE_NO_ACCESS}, {PxnErrBadHandle, MV_SERVICE_NO_CAMERA},
        {PxnErrNotFound, MV_SERVICE_NOT_FOUND},      {PxnErrNotSupported, MV_SERVICE_NOT_SUPPORTED},
        {PxnErrIO, MV_SERVICE_SDK_FAILED},           {PxnErrWrongType, MV_SERVICE_WRONG_TYPE}};
    for (const auto& [code, result] : codes) {
        sdk.Fail("PxnFeatureIntGet", code);
        EXPECT_EQ(Read("Camera", "Width"), result) << code;
        EXPECT_TRUE(Reason().starts_with("Camera/Width: "));
    }
    sdk.Fail("PxnFeatureIntGet", -999);
    EXPECT_EQ(Read("Camera", "Width"), MV_SERVICE_SDK_FAILED);
    EXPECT_EQ(Reason(), "Camera/Width: the camera's SDK failed (-999)");
    sdk.Fail("PxnFeatureIntGet", PxnErrNotImplemented);
    EXPECT_EQ(Read("Camera", "Width"), MV_SERVICE_NOT_SUPPORTED);
    sdk.Fail("PxnFeatureIntGet", PxnErrBadHandle);
    EXPECT_EQ(Read("System", "EventCameraDiscovery"), MV_SERVICE_SDK_FAILED)
        << "the system does not go";
    EXPECT_TRUE(Reason().ends_with(" (-4)"));
}

TEST_F(FeatureServices, CutReasonsAtTheEndOfACharacter) {
    Open();
    struct {
        uint32_t size;
        char text[9];
    } small = {4 + 7, {'#', '#', '#', '#', '#', '#', '#', '#', '#'}};
    auto* const record = reinterpret_cast<MV_SERVICE_REASON*>(&small);
    const auto ignore = [](const MV_FEATURE_VALUE*, void*) {
    };
    // "Camera has no ..." is cut after six bytes; the terminator is the seventh.
    EXPECT_EQ(Services().ReadFeature("Camera", "Depth", ignore, nullptr, record),
              MV_SERVICE_NOT_FOUND);
    EXPECT_STREQ(small.text, "Camera");
    EXPECT_EQ(small.text[7], '#') << "written behind the record's end";
    small.size = 4;
    small.text[0] = '#';
    EXPECT_EQ(Services().ReadFeature("Camera", "Depth", ignore, nullptr, record),
              MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(small.text[0], '#');
    const std::string name(2000, 'x');
    EXPECT_EQ(Read("Camera", name.c_str()), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Reason().size(), sizeof reason.text - 1);
    // The last byte that there is room for belongs to a character of two bytes.
    std::string twoBytes = "there is no module \"";
    twoBytes.resize(sizeof reason.text - 2, 'x');
    const std::string wide =
        twoBytes.substr(std::string("there is no module \"").size()) + "\xC3\xA9";
    EXPECT_EQ(Read(wide.c_str(), "Width"), MV_SERVICE_NOT_FOUND);
    EXPECT_EQ(Reason(), twoBytes);
}

TEST_F(FeatureServices, SurviveReceiversThatThrow) {
    Open();
    const auto thrower = [](const MV_FEATURE_VALUE*, void*) {
        throw 1;
    };
    EXPECT_EQ(Services().ReadFeature("Camera", "Width", thrower, nullptr, &reason), MV_SERVICE_OK);
    EXPECT_EQ(Read("Camera", "Width"), MV_SERVICE_OK);
}

TEST_F(FeatureServices, MayBeCalledByTheirReceivers) {
    Open();
    MV_SERVICE_RESULT inside = MV_SERVICE_BUSY;
    ReceiverOf<const MV_FEATURE_VALUE*> receiver{[&](const MV_FEATURE_VALUE*) {
        inside = Read("Camera", "Height");
    }};
    EXPECT_EQ(Services().ReadFeature("Camera", "Width", receiver.Receive, &receiver, &reason),
              MV_SERVICE_OK);
    EXPECT_EQ(inside, MV_SERVICE_OK);
    receiver.call = [&](const MV_FEATURE_VALUE*) {
        inside = Grabber().CloseActCamera() == MV_OK ? MV_SERVICE_OK : MV_SERVICE_BUSY;
    };
    EXPECT_EQ(Services().ReadFeature("Camera", "PixelFormat", receiver.Receive, &receiver, &reason),
              MV_SERVICE_OK);
    EXPECT_EQ(inside, MV_SERVICE_OK);
}

// ---- commands ----

TEST_F(FeatureServices, RunACommandAndWaitForIt) {
    Camera().Find("AcquisitionStop")->doneSequence = {false, false, true};
    Open();
    EXPECT_EQ(Run("Camera", "AcquisitionStop", 0xFFFFFFFF), MV_SERVICE_OK);
    EXPECT_EQ(Calls(), (Texts{"PxnFeatureCommandRun(camera0, \"AcquisitionStop\")",
                              "PxnFeatureCommandIsDone(camera0, \"AcquisitionStop\")",
                              "PxnFeatureCommandIsDone(camera0, \"AcquisitionStop\")",
                              "PxnFeatureCommandIsDone(camera0, \"AcquisitionStop\")"}));
    EXPECT_EQ(sleep.Take(), (std::vector<uint32_t>{10, 10}));
    EXPECT_EQ(Reason(), "");
}

TEST_F(FeatureServices, DoNotAskForACommandThatNobodyWaitsFor) {
    Camera().Find("AcquisitionStop")->doneSequence = {false};
    Open();
    EXPECT_EQ(Run("Camera", "AcquisitionStop", 0), MV_SERVICE_OK);
    EXPECT_EQ(Calls(), Texts{"PxnFeatureCommandRun(camera0, \"AcquisitionStop\")"});
}

TEST_F(FeatureServices, StopWaitingForACommandInTime) {
    Camera().Find("AcquisitionStop")->doneSequence.assign(10'000'000, false);
    Open();
    EXPECT_EQ(Run("Camera", "AcquisitionStop", 5), MV_SERVICE_TIMED_OUT);
    EXPECT_EQ(Reason(), "Camera/AcquisitionStop: has been started and is not done yet");
    EXPECT_LE(sleep.Take().front(), 5u);
}

TEST_F(FeatureServices, SayWhyACommandDoesNotRun) {
    Open();
    EXPECT_EQ(Run("Camera", "Width", 0), MV_SERVICE_WRONG_TYPE);
    EXPECT_EQ(Reason(), "Camera/Width: is no command");
    EXPECT_EQ(Run("Camera", "Jump", 0), MV_SERVICE_NOT_FOUND);
    sdk.Fail("PxnFeatureCommandRun", PxnErrInvalidAccess);
    EXPECT_EQ(Run("Camera", "AcquisitionStop", 0), MV_SERVICE_NO_ACCESS);
    sdk.Fail("PxnFeatureCommandIsDone", PxnErrBadHandle);
    EXPECT_EQ(Run("Camera", "AcquisitionStop", 100), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(Reason(), "Camera/AcquisitionStop: the camera has gone");
}

TEST_F(FeatureServices, WaitNoLongerForACommandOfACameraThatWasClosed) {
    Camera().Find("AcquisitionStop")->doneSequence.assign(1000, false);
    Open();
    sleep.Shut();
    std::thread closer([this] {
        EXPECT_TRUE(sleep.WaitForSleeper());
        EXPECT_EQ(Grabber().CloseActCamera(), MV_OK) << "the lock is held while waiting";
        EXPECT_EQ(Grabber().OpenActCamera(), MV_OK);
        sleep.Open();
    });
    EXPECT_EQ(Run("Camera", "AcquisitionStop", 0xFFFFFFFF), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(Reason(), "Camera/AcquisitionStop: the camera was closed meanwhile");
    closer.join();
}

} // namespace
