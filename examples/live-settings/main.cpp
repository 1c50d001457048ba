// main.cpp - shows a feature of the camera, changes it while images come, and what is known of
// those
//
// usage: live-settings MODULE FEATURE VALUE..., a float such as ExposureTime and what it is set to,
// one after ten images each
#include <mivora/grabber.h>
#include <mivora/module_loader.h>
#include <mivora/module_services.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <semaphore>
#include <stdexcept>
#include <string>

/// What the threads of the SDK report. Outlives the grabber.
struct Received {
    std::counting_semaphore<> images{0};
    std::atomic<int> damaged = 0;
};

constexpr const char* kModule = "Camera"; // the camera's own features
constexpr int kImagesBetween = 10;

void Check(const std::string& operation, MV_ERRCODE code) {
    if (code != MV_OK) {
        throw std::runtime_error(operation + ": " + MivoraErrorText(code));
    }
}

void Check(MV_SERVICE_RESULT result, const MV_SERVICE_REASON& reason) {
    if (result != MV_SERVICE_OK) {
        throw std::runtime_error(reason.text);
    }
}

/// What a receiver gets is valid during the call only.
void PrintFeature(const MV_FEATURE_DESCRIPTION* feature, void*) {
    std::printf("%s/%s, %s: %g to %g %s, %s\n", feature->module, feature->name, feature->toolTip,
                feature->realMin, feature->realMax, feature->unit,
                feature->isWritable != 0 ? "writable" : "not writable now");
}

void PrintValue(const MV_FEATURE_VALUE* value, void*) {
    std::printf("set to %g\n", value->real);
}

/// For every image that can be taken.
void OnImage(uint64_t, uint32_t, void* received) {
    static_cast<Received*>(received)->images.release();
}

/// For every frame, before that: also for those of which no image can be taken.
void OnFrame(const MV_FRAME_INFO* frame, void* received) {
    if (frame->status != MV_FRAME_COMPLETE) {
        ++static_cast<Received*>(received)->damaged;
    }
}

void SetFeature(IMivoraModuleServices& services, const char* feature, double number) {
    MV_SERVICE_REASON reason{};
    reason.size = sizeof reason;
    MV_FEATURE_VALUE value{};
    value.size = sizeof value;
    value.type = MV_FEATURE_FLOAT;
    value.real = number;
    // A value that is refused is no reason to stop: the one before stays.
    if (services.WriteFeature(kModule, feature, &value, PrintValue, nullptr, &reason) !=
        MV_SERVICE_OK) {
        std::printf("%s\n", reason.text);
    }
}

void TakeImages(CMivoraGrabber& grabber, IMivoraModuleServices& services, Received& received) {
    for (int taken = 0; taken < kImagesBetween;) {
        Check("waiting for an image", received.images.try_acquire_for(std::chrono::seconds(5))
                                          ? MV_OK
                                          : MV_ACQUISITION_FAILED);
        uint64_t index = 0;
        if (grabber.GetLastFilledBuffer(&index) != MV_OK) {
            continue; // all buffers were in use
        }
        MV_SERVICE_REASON reason{};
        reason.size = sizeof reason;
        MV_FRAME_INFO frame{};
        frame.size = sizeof frame;
        Check(services.GetFrameInfo(index, &frame, &reason), reason);
        std::printf("frame %llu at %.3f ms, %u x %u pixels\n",
                    static_cast<unsigned long long>(frame.frameId),
                    static_cast<double>(frame.timestamp) / 1e6, frame.width, frame.height);
        grabber.ReleaseFrameBuffer(index);
        ++taken;
    }
}

void Run(CMivoraGrabber& grabber, IMivoraModuleServices& services, Received& received,
         char** arguments) {
    const char* const feature = *arguments++;
    Check("Init", grabber.Init());
    Check("SetActCameraIndex", grabber.SetActCameraIndex(0));
    Check("OpenActCamera", grabber.OpenActCamera());
    MV_SERVICE_REASON reason{};
    reason.size = sizeof reason;
    Check(services.DescribeFeature(kModule, feature, PrintFeature, nullptr, &reason), reason);
    Check("PrepareFrameBuffers", grabber.PrepareFrameBuffers(16));
    Check(services.InstallFrameReceiver(OnFrame, &received, &reason), reason);
    grabber.InstPostProcessCallBack(OnImage, &received);
    Check("Snap", grabber.Snap(1));
    TakeImages(grabber, services, received);
    while (*arguments) {
        SetFeature(services, feature, std::strtod(*arguments++, nullptr));
        TakeImages(grabber, services, received);
    }
    Check("StopSnap", grabber.StopSnap());
    std::printf("%d damaged frames\n", received.damaged.load());
}

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: live-settings MODULE FEATURE VALUE...\n");
        return 2;
    }
    Received received;
    CModuleLoader loader; // deletes the grabber, which closes the camera
    try {
        CMivoraGrabber* const grabber = loader.Load(argv[1]) ? loader.CreateGrabber() : nullptr;
        IMivoraModuleServices* const services = grabber ? loader.GetServices(grabber) : nullptr;
        if (!services) {
            throw std::runtime_error(loader.GetErrorText());
        }
        Run(*grabber, *services, received, argv + 2);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "live-settings: %s\n", failure.what());
        return 1;
    }
}
