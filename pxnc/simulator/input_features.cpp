// input_features.cpp - what a frame grabber board has to know about the camera's images
#include "pxnc/simulator/input_features.h"

namespace pxsim {
namespace {

constexpr FeatureRow kInputRows[] = {
    {"InputWidth", Int{.value = 640, .min = 1, .max = 4096}, kBeginner | kCustom,
     "Number of pixels per line that the board acquires."},
    {"InputExposureTime", Float{.value = 10000.0, .min = 1.0, .max = 1e6}, kBeginner | kCustom,
     "Duration of the pulse with which the board exposes the sensor.", Extra{.unit = "µs"}},
    {"InputFormat", Enum{}, kBeginner | kCustom, "Pixel format that the board expects."},
    {"InputCameraName", String{.maxLength = 12}, kBeginner | kCustom,
     "Name of the camera at the board's input."},
    {"InputMirrored", Bool{}, kBeginner | kCustom,
     "The board acquires the lines from right to left."},
};

} // namespace

void AddInputFeatures(Module& module) {
    module.AddTable("/InputControl", kInputRows);
    module.Get<Enum>("InputFormat").PixelFormatEntries().Value("Mono8");
}

} // namespace pxsim
