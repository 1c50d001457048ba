// two_grabbers_test.cpp - two cameras at full rate in one process
#include "tests/support/in_process_grabber.h"
#include "tests/support/temporary_directory.h"

#include "mivora/log_sink.h"
#include "platform/environment.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <thread>

namespace {

/// Fails the test for every error line. An acquisition requires a sink.
class NoErrors final : public ILogSink {
public:
    void Write(int level, const char* format, ...) override {
        EXPECT_NE(level, kMvLogError) << format;
    }
    void WriteError(const char* text) override { ADD_FAILURE() << text; }
};

/// How long both cameras run: three seconds, or the value of MIVORA_SOAK_SECONDS.
std::chrono::seconds Duration() {
    const std::string wanted = platform::GetEnvironment("MIVORA_SOAK_SECONDS");
    return std::chrono::seconds(wanted.empty() ? 3 : std::atoi(wanted.c_str()));
}

/// A grabber and its camera. Run acquires images for Duration() on the calling thread.
class Station {
public:
    Station(CMivoraGrabber& newGrabber, const std::string& iniPath, std::int32_t newCamera)
        : grabber(newGrabber), ini(iniPath), camera(newCamera) {}

    void Run() {
        ASSERT_EQ(grabber.SetGrabberIni(ini.c_str(), 0), MV_OK);
        ASSERT_EQ(grabber.Init(), MV_OK);
        ASSERT_EQ(grabber.SetActCameraIndex(camera), MV_OK);
        ASSERT_EQ(grabber.OpenActCamera(), MV_OK);
        CMivoraGfxMode* const mode = grabber.GetActCamera()->GetActGfxMode();
        imageSize = mode->GetImageSize();
        ASSERT_GT(imageSize, 0u);
        ASSERT_EQ(grabber.SetFeature(EMV_FEATURE_KEEP_NEWEST, 0), MV_OK);
        ASSERT_EQ(grabber.PrepareFrameBuffers(8), MV_OK);
        ASSERT_EQ(grabber.InstPostProcessCallBack(&Station::OnFrame, this), MV_OK);
        const auto end = std::chrono::steady_clock::now() + Duration();
        const auto giveUp = end + std::chrono::minutes(1);
        const auto isToGoOn = [&] {
            const auto now = std::chrono::steady_clock::now();
            return now < end || (pictures < 2 && now < giveUp);
        };
        ASSERT_EQ(grabber.Snap(1), MV_OK);
        while (isToGoOn()) {
            TakeFrames();
            // Read and write parameters while frames arrive.
            std::uint64_t exposure = 0;
            std::uint64_t interval = 0;
            EXPECT_EQ(grabber.GetGrabberParam(257, &exposure, &interval), MV_OK);
            EXPECT_EQ(grabber.SetGrabberParam(257, exposure, interval), MV_OK);
        }
        ASSERT_EQ(grabber.StopSnap(), MV_OK);
        EXPECT_EQ(grabber.InstPostProcessCallBack(nullptr, nullptr), MV_OK);
        TakeFrames();
        std::uint64_t received = 0;
        EXPECT_EQ(grabber.GetGrabberParam(4096, &received, nullptr), MV_OK);
        EXPECT_EQ(received, delivered);
        EXPECT_EQ(delivered, taken + grabber.GetLostBufferCount());
        EXPECT_GT(delivered, 0u);
        EXPECT_GT(pictures, 1u) << "the picture moves";
        EXPECT_EQ(grabber.CloseActCamera(), MV_OK);
        EXPECT_EQ(grabber.DeInit(), MV_OK);
    }

    std::uint64_t Delivered() const { return delivered; }

private:
    static void OnFrame(std::uint64_t index, std::uint32_t, void* context) {
        auto* const self = static_cast<Station*>(context);
        ++self->delivered;
        // The camera may overwrite the buffer as soon as this function returns.
        const auto* const pixels = static_cast<std::uint8_t*>(self->grabber.GetFrameBuffer(index));
        const std::uint64_t sum = std::accumulate(pixels, pixels + 256, std::uint64_t{0});
        self->pictures += sum != self->lastSum ? 1 : 0;
        self->lastSum = sum;
    }
    void TakeFrames() {
        std::uint64_t index = 0;
        while (grabber.GetLastFilledBuffer(&index) == MV_OK) {
            ++taken;
            EXPECT_EQ(grabber.ReleaseFrameBuffer(index), MV_OK);
        }
    }

    CMivoraGrabber& grabber;
    const std::string ini;
    const std::int32_t camera;
    std::uint64_t imageSize = 0;
    std::uint64_t taken = 0;
    std::atomic<std::uint64_t> delivered{0};
    std::uint64_t lastSum = 0; // used by the camera's thread only
    std::atomic<std::uint64_t> pictures{0};
};

TEST(TwoGrabbers, RunTwoCamerasAtFullRateInOneProcess) {
    const support::TemporaryDirectory directory;
    const auto camera = [](const char* id, const char* interfaceId, const char* format) {
        return std::string("<camera id=\"") + id + "\" interface=\"" + interfaceId +
               "\" sensorWidth=\"640\" sensorHeight=\"480\" freeRunning=\"true\">"
               "<feature name=\"PixelFormat\" value=\"" +
               format + "\"/><feature name=\"ExposureTime\" value=\"1000\"/></camera>\n";
    };
    directory.Write("PxnC.xml", "<PxnC>\n" + camera("A", "Eth0", "BayerRG12p") +
                                    camera("B", "Usb0", "RGB8") + "</PxnC>\n");
    NoErrors sink;
    MivoraInstallLogSink(&sink);
    {
        support::InProcess process;
        CMivoraGrabber* const first = process.Create();
        CMivoraGrabber* const second = process.Create();
        ASSERT_NE(first, nullptr);
        ASSERT_NE(second, nullptr);
        Station left(*first, directory.PathOf("left.ini"), 0);
        Station right(*second, directory.PathOf("right.ini"), 1);
        std::thread other([&right] { right.Run(); });
        left.Run();
        other.join();
        process.Delete(first);
        process.Delete(second);
        EXPECT_EQ(process.Control("leaks"), "") << "everything was given back";
        if (!platform::GetEnvironment("MIVORA_SOAK_SECONDS").empty()) {
            std::printf("%llu and %llu frames\n", static_cast<unsigned long long>(left.Delivered()),
                        static_cast<unsigned long long>(right.Delivered()));
        }
    }
    MivoraInstallLogSink(nullptr);
}

} // namespace
