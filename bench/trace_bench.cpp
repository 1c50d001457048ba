// trace_bench.cpp - what a call of the camera SDK costs more while it is traced
#include "bench/support/baseline.h"
#include "bench/support/median_times.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "pxnc.h"
#include "pxnc/trace/recorder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr double kMostNanoseconds = 1000;
constexpr std::uint32_t kTextSize = 256;

std::string HomeOf(const char* sdk) {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), sdk);
}

[[noreturn]] void Fail(const std::string& reason) {
    std::fprintf(stderr, "trace_bench: %s\n", reason.c_str());
    std::exit(EXIT_FAILURE);
}

/// An SDK's library that is started, with its first camera open.
class OpenSdk {
public:
    explicit OpenSdk(const char* home) {
        const std::string path = platform::JoinPath(platform::JoinPath(HomeOf(home), "Bin"),
                                                    platform::LibraryFileName("PxnC"));
        std::string error;
        if (!library.Load(path, true, &error)) {
            Fail(error);
        }
        std::array<PxnCameraInfo, 8> cameras{};
        std::uint32_t found = 0;
        if (Find<decltype(&PxnStartup)>("PxnStartup")(nullptr) != 0 ||
            Find<decltype(&PxnCamerasList)>("PxnCamerasList")(cameras.data(), 8, &found,
                                                              sizeof(PxnCameraInfo)) != 0 ||
            Find<decltype(&PxnCameraOpen)>("PxnCameraOpen")(cameras[0].cameraIdString,
                                                            PxnAccessModeRead, &camera) != 0) {
            Fail(std::string("cannot open a camera of ") + home);
        }
        getInt = Find<decltype(getInt)>("PxnFeatureIntGet");
        getText = Find<decltype(getText)>("PxnFeatureStringGet");
        list = Find<decltype(list)>("PxnFeaturesList");
        features.resize(500);
    }
    ~OpenSdk() {
        Find<decltype(&PxnCameraClose)>("PxnCameraClose")(camera);
        Find<decltype(&PxnShutdown)>("PxnShutdown")();
    }
    OpenSdk(const OpenSdk&) = delete;
    OpenSdk& operator=(const OpenSdk&) = delete;

    void GetInteger() { Check(getInt(camera, "Width", &integer)); }
    void GetText() {
        std::uint32_t filled = 0;
        Check(getText(camera, "DeviceModelName", text.data(), kTextSize, &filled));
    }
    void ListFeatures() {
        Check(list(camera, features.data(), static_cast<std::uint32_t>(features.size()), &count,
                   sizeof(PxnFeatureInfo)));
    }
    std::uint32_t FeatureCount() const { return count; }

private:
    template <typename Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(library.FindSymbol(name));
    }
    static void Check(PxnError result) {
        if (result != PxnErrSuccess) {
            Fail("a call failed with " + std::to_string(result));
        }
    }

    platform::SharedLibrary library;
    PxnHandle camera = nullptr;
    decltype(&PxnFeatureIntGet) getInt = nullptr;
    decltype(&PxnFeatureStringGet) getText = nullptr;
    decltype(&PxnFeaturesList) list = nullptr;
    std::int64_t integer = 0;
    std::array<char, kTextSize> text{};
    std::vector<PxnFeatureInfo> features;
    std::uint32_t count = 0;
};

} // namespace

int main(int argc, char** argv) {
    StartMeasuring(argc, argv);
    const std::string directory = platform::CreateTemporaryDirectory("trace_bench");
    platform::SetEnvironment("PYXEN_TRACE_SDK", HomeOf("simulator"));
    platform::SetEnvironment("PYXEN_TRACE_FILE", platform::JoinPath(directory, "calls"));
    double most = 0;
    {
        OpenSdk bare("simulator");
        OpenSdk traced("trace");
        sdktrace::Recorder recorder;
        std::string error;
        if (!recorder.Create({platform::JoinPath(directory, "frames"), 64, {}}, false, error)) {
            Fail(error);
        }
        PxnFrame frame{};
        const sdktrace::Words words = sdktrace::ToWords(nullptr, nullptr, nullptr, &frame);
        auto times = MedianTimes(
            "trace", {{"an integer",
                       [&](std::size_t) {
                           bare.GetInteger();
                       }},
                      {"an integer, traced",
                       [&](std::size_t) {
                           traced.GetInteger();
                       }},
                      {"a text",
                       [&](std::size_t) {
                           bare.GetText();
                       }},
                      {"a text, traced",
                       [&](std::size_t) {
                           traced.GetText();
                       }},
                      {"a list",
                       [&](std::size_t) {
                           bare.ListFeatures();
                       }},
                      {"a list, traced",
                       [&](std::size_t) {
                           traced.ListFeatures();
                       }},
                      {"a frame callback", [&](std::size_t) {
                           constexpr auto kEntry = sdktrace::Entry::kFrameCallback;
                           recorder.EndCallback(recorder.BeginCallback(kEntry, words), kEntry, 0);
                       }}});
        std::printf("%s\n\n| call of the SDK | ns | traced | more |\n|---|---|---|---|\n",
                    ProcessorName().c_str());
        const auto row = [&](const std::string& name, const std::string& title) {
            const double before = times.at(name);
            const double after = times.at(name + ", traced");
            std::printf("| %s | %.0f | %.0f | %.0f |\n", title.c_str(), before, after,
                        after - before);
            return after - before;
        };
        most = row("an integer", "reading an integer");
        most = std::max(most, row("a text", "reading a text"));
        row("a list", "listing " + std::to_string(bare.FeatureCount()) + " features");
        const double callback = times.at("a frame callback");
        std::printf("| frame callback, its records alone | | | %.0f |\n", callback);
        most = std::max(most, callback);
    }
    platform::RemoveDirectoryTree(directory);
    if (most > kMostNanoseconds) {
        std::printf("FELL: more than %.0f ns a call\n", kMostNanoseconds);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
