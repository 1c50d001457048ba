// main.cpp - takes a hundred images from the first camera of a grabber module
#include <mivora/grabber.h>
#include <mivora/module_loader.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <semaphore>

static bool Succeeds(const char* operation, MV_ERRCODE code) {
    if (code != MV_OK) {
        std::fprintf(stderr, "grab: %s: %s\n", operation, MivoraErrorText(code));
    }
    return code == MV_OK;
}

int main(int argc, char** argv) {
    std::counting_semaphore<> filled(0); // used until the loader deletes the grabber
    CModuleLoader loader;
    CMivoraGrabber* const grabber =
        loader.Load(argc == 2 ? argv[1] : "") ? loader.CreateGrabber() : nullptr;
    if (!grabber) {
        std::fprintf(stderr, "usage: grab MODULE\n%s\n", loader.GetErrorText());
        return 1;
    }
    grabber->InstPostProcessCallBack(
        [](uint64_t, uint32_t, void* signal) {
            static_cast<std::counting_semaphore<>*>(signal)->release();
        },
        &filled);
    const bool isGood = Succeeds("Init", grabber->Init()) &&
                        Succeeds("SetActCameraIndex", grabber->SetActCameraIndex(0)) &&
                        Succeeds("OpenActCamera", grabber->OpenActCamera()) &&
                        Succeeds("PrepareFrameBuffers", grabber->PrepareFrameBuffers(8)) &&
                        Succeeds("Snap", grabber->Snap(1));
    for (int taken = 0; isGood && taken < 100;) {
        if (!filled.try_acquire_for(std::chrono::seconds(5))) {
            std::fprintf(stderr, "grab: no image within 5 s\n");
            return 1;
        }
        uint64_t index = 0;
        if (grabber->GetLastFilledBuffer(&index) == MV_OK) { // else all buffers were in use
            const auto* const pixels = static_cast<const uint8_t*>(grabber->GetFrameBuffer(index));
            std::printf("image %d begins with %u\n", ++taken, static_cast<unsigned>(pixels[0]));
            grabber->ReleaseFrameBuffer(index);
        }
    }
    return isGood && Succeeds("StopSnap", grabber->StopSnap()) ? 0 : 1;
}
