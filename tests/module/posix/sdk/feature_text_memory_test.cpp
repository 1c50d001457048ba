// feature_text_memory_test.cpp - a text for which there is no memory
#include "tests/module/sdk/loaded_api.h"

#include <sys/resource.h>

#include <fstream>

namespace {

// Lets this process have little more memory than it has, for a scope.
class MemoryLimit {
public:
    MemoryLimit() {
        getrlimit(RLIMIT_DATA, &former);
        std::ifstream status("/proc/self/status");
        std::string word;
        rlim_t kilobytes = 0;
        while (status >> word) {
            if (word == "VmData:") {
                status >> kilobytes;
            }
        }
        rlimit lower = former;
        lower.rlim_cur = (kilobytes + 256 * 1024) * 1024;
        EXPECT_GT(kilobytes, 0u);
        EXPECT_EQ(setrlimit(RLIMIT_DATA, &lower), 0);
    }
    ~MemoryLimit() { EXPECT_EQ(setrlimit(RLIMIT_DATA, &former), 0); }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

private:
    rlimit former{};
};

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
