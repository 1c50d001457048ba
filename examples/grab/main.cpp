// main.cpp - takes a hundred images from the first camera of a grabber module
#include <mivora/grabber.h>
#include <mivora/module_loader.h>

#include <chrono>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <semaphore>
#include <stdexcept>
#include <string>

using Signal = std::counting_semaphore<>;

/// Prints the errors of the log: the reasons behind result codes.
class ErrorPrinter final : public ILogSink {
public:
    void Write(int level, const char* format, ...) override {
        if (level != kMvLogError) {
            return;
        }
        char line[1024];
        va_list arguments;
        va_start(arguments, format);
        MivoraFormatLogText(line, sizeof line, format, arguments);
        va_end(arguments);
        WriteError(line);
    }
    void WriteError(const char* text) override { std::fprintf(stderr, "%s\n", text); }
};

void Check(const std::string& operation, MV_ERRCODE code) {
    if (code != MV_OK) {
        throw std::runtime_error(operation + ": " + MivoraErrorText(code));
    }
}

void TakeImages(CMivoraGrabber& grabber, Signal& filled, int count) {
    Check("Init", grabber.Init());
    Check("SetActCameraIndex", grabber.SetActCameraIndex(0));
    Check("OpenActCamera", grabber.OpenActCamera());
    Check("PrepareFrameBuffers", grabber.PrepareFrameBuffers(8));
    grabber.InstPostProcessCallBack(
        [](uint64_t, uint32_t, void* signal) { static_cast<Signal*>(signal)->release(); }, &filled);
    Check("Snap", grabber.Snap(1));
    for (int taken = 0; taken < count;) {
        Check("waiting for an image",
              filled.try_acquire_for(std::chrono::seconds(5)) ? MV_OK : MV_ACQUISITION_FAILED);
        uint64_t index = 0;
        if (grabber.GetLastFilledBuffer(&index) == MV_OK) { // otherwise all buffers were in use
            const auto* const pixels = static_cast<const uint8_t*>(grabber.GetFrameBuffer(index));
            std::printf("image %d begins with %u\n", ++taken, static_cast<unsigned>(pixels[0]));
            grabber.ReleaseFrameBuffer(index);
        }
    }
    Check("StopSnap", grabber.StopSnap());
}

int main(int argc, char** argv) {
    ErrorPrinter log;
    Signal filled(0);
    MivoraInstallLogSink(&log);
    CModuleLoader loader; // deletes the grabber, which closes the camera, before the two above go
    try {
        CMivoraGrabber* const grabber =
            loader.Load(argc == 2 ? argv[1] : "") ? loader.CreateGrabber() : nullptr;
        if (!grabber) {
            throw std::runtime_error(std::string("usage: grab MODULE\n") + loader.GetErrorText());
        }
        TakeImages(*grabber, filled, 100);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "grab: %s\n", failure.what());
        return 1;
    }
}
