// input_features.cpp - what a frame grabber board has to know about the camera's images
#include "pxnc/simulator/input_features.h"

namespace pxsim {
namespace {

constexpr FeatureRow kInputRows[] = {
    {"InputWidth", Int{.value = 640, .min = 1, .max = 4096}, kBeginner | kCustom,
     "Pixels of a line that the board takes in."},
    {"InputExposureTime", Float{.value = 10000.0, .min = 1.0, .max = 1e6}, kBeginner | kCustom,
     "Length of the pulse by which the board exposes the sensor.", Extra{.unit = "µs"}},
    {"InputFormat", Enum{}, kBeginner | kCustom, "Layout of the pixels that the board expects."},
    {"InputCameraName", String{.maxLength = 12}, kBeginner | kCustom,
     "Name of the camera at the board's input."},
    {"InputMirrored", Bool{}, kBeginner | kCustom,
     "The board takes the lines in from right to left."},
};

} // namespace

void AddInputFeatures(Module& module) {
    module.AddTable("/InputControl", kInputRows);
    module.Get<Enum>("InputFormat").PixelFormatEntries().Value("Mono8");
}

} // namespace pxsim
