// checks_test.cpp - checks of libraries that fail in ways that a check must survive
//
// They are the scripted SDK with functions in front of its own.
#include "tests/pxnc/conformance/conformance_fixture.h"
#include "tests/pxnc/conformance/scripted_driver.h"

#include <algorithm>
#include <functional>
#include <map>

namespace conformance_tests {
namespace {

conformance::SdkFunctions original;

class WrongLibrary : public testing::Test {
protected:
    void SetUp() override {
        ScriptedDriver::UseModel();
        std::string error;
        ASSERT_TRUE(library.Load(LibraryOf("scripted"), error)) << error;
        original = library.Functions();
    }
    void TearDown() override { scripted::GetSdk().Reset(); }

    /// The failed checks with their reasons.
    std::map<std::string, std::string>
    FailuresOf(const std::function<void(conformance::SdkFunctions&)>& change) {
        conformance::SdkFunctions functions = original;
        change(functions);
        ScriptedDriver driver;
        conformance::Session session(functions, driver, {});
        std::map<std::string, std::string> failed;
        for (const Check& check : conformance::AllChecks()) {
            const conformance::CheckReport report = RunCheck(check, session);
            if (report.outcome == conformance::Outcome::kFailed) {
                failed[FullName(check)] = report.detail;
            }
        }
        return failed;
    }

private:
    conformance::SdkLibrary library;
};

/// A list of features with one field of each as a null pointer.
template <const char* PxnFeatureInfo::*kField>
PxnError PXN_CALL ListWithout(PxnHandle handle, PxnFeatureInfo* features, uint32_t capacity,
                              uint32_t* found, uint32_t size) {
    const PxnError result = original.PxnFeaturesList(handle, features, capacity, found, size);
    if (features && (result == PxnErrSuccess || result == PxnErrMoreData)) {
        for (uint32_t i = 0; i < std::min(capacity, *found); ++i) {
            features[i].*kField = nullptr;
        }
    }
    return result;
}

TEST_F(WrongLibrary, LeavesTextsOut) {
    const auto failed = FailuresOf([](conformance::SdkFunctions& functions) {
        functions.PxnFeaturesList = ListWithout<&PxnFeatureInfo::unit>;
    });
    ASSERT_EQ(failed.count("descriptions: texts of features"), 1u);
    EXPECT_NE(failed.at("descriptions: texts of features")
                  .find("a text of system/TLVendorName is a null pointer"),
              std::string::npos)
        << failed.at("descriptions: texts of features");
    EXPECT_EQ(failed.count("values: integers keep their limits"), 0u);
}

TEST_F(WrongLibrary, LeavesNamesOut) {
    const auto failed = FailuresOf([](conformance::SdkFunctions& functions) {
        functions.PxnFeaturesList = ListWithout<&PxnFeatureInfo::name>;
    });
    EXPECT_EQ(failed.count("descriptions: texts of features"), 1u);
    EXPECT_EQ(failed.count("descriptions: names of features are unique"), 1u);
    EXPECT_EQ(failed.count("descriptions: features by name"), 1u);
    EXPECT_EQ(failed.count("startup: startups are counted"), 0u);
}

TEST_F(WrongLibrary, LeavesIdentifiersOut) {
    const auto failed = FailuresOf([](conformance::SdkFunctions& functions) {
        functions.PxnCamerasList = [](PxnCameraInfo* cameras, uint32_t capacity, uint32_t* found,
                                      uint32_t size) -> PxnError {
            const PxnError result = original.PxnCamerasList(cameras, capacity, found, size);
            if (cameras && capacity > 0 && result == PxnErrSuccess) {
                cameras[0].cameraIdString = nullptr;
            }
            return result;
        };
    });
    // It cannot be opened by such an identifier.
    ASSERT_EQ(failed.count("descriptions: texts of cameras"), 1u);
    EXPECT_EQ(failed.at("descriptions: texts of cameras"), "PxnCameraOpen returned -3");
}

TEST_F(WrongLibrary, OpensACameraWithoutStreams) {
    const auto failed = FailuresOf([](conformance::SdkFunctions& functions) {
        functions.PxnCameraInfoQueryByHandle = [](PxnHandle camera, PxnCameraInfo* info,
                                                  uint32_t size) -> PxnError {
            const PxnError result = original.PxnCameraInfoQueryByHandle(camera, info, size);
            if (result == PxnErrSuccess) {
                info->streamHandles = nullptr;
            }
            return result;
        };
    });
    ASSERT_EQ(failed.count("queue: payload sizes of camera and stream"), 1u);
    EXPECT_EQ(failed.at("queue: payload sizes of camera and stream"),
              "the open camera has no streams");
}

TEST_F(WrongLibrary, FailsToStart) {
    const auto failed = FailuresOf([](conformance::SdkFunctions& functions) {
        functions.PxnStartup = [](const wchar_t*) -> PxnError {
            return PxnErrNoTL;
        };
    });
    ASSERT_EQ(failed.count("lists: cameras"), 1u);
    EXPECT_EQ(failed.at("lists: cameras"), "PxnStartup returned -16");
    EXPECT_EQ(failed.count("startup: nothing else works before the startup"), 0u);
}

TEST_F(WrongLibrary, FindsMoreThanItLists) {
    const auto failed = FailuresOf([](conformance::SdkFunctions& functions) {
        functions.PxnInterfacesList = [](PxnInterfaceInfo* interfaces, uint32_t capacity,
                                         uint32_t* found, uint32_t size) -> PxnError {
            const PxnError result = original.PxnInterfacesList(interfaces, capacity, found, size);
            if (found) {
                ++*found;
            }
            return result;
        };
    });
    EXPECT_EQ(failed.count("lists: interfaces"), 1u);
    EXPECT_EQ(failed.count("lists: cameras"), 0u);
}

} // namespace
} // namespace conformance_tests
