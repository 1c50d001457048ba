// feature_text_posix_test.cpp - a text for which there is no memory
#include "tests/module/memory_limit_posix.h"
#include "tests/module/sdk/loaded_api.h"

namespace {

using FeatureTextMemory = LoadedApi;

TEST_F(FeatureTextMemory, AnswersOtherErrorWhenItIsOut) {
    api.PxnFeatureStringGet = [](PxnHandle, const char*, char* buffer, std::uint32_t,
                                 std::uint32_t* filled) -> PxnError {
        *filled = 0xFFFFFFFF;
        return buffer ? PxnErrInternalFault : PxnErrSuccess;
    };
    std::string text = "before";
    const MemoryLimit limit;
    EXPECT_EQ(api.GetFeatureAsText(scripted::CameraHandle(), "DeviceUserID", text), PxnErrOther);
    EXPECT_EQ(text, "before");
}

} // namespace
