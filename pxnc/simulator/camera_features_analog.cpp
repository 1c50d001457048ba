// camera_features_analog.cpp - gain, black level, white balance and response curve
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr FeatureRow kAnalogRows[] = {
    {"GainSelector", Enum{"All AnalogAll DigitalAll DigitalRed DigitalGreen DigitalBlue"},
     kBeginner, "Amplifier that Gain controls."},
    {"GainAuto", Enum{"Off Once Continuous"}, kBeginner, "Automatic gain.",
     Extra{.affects = "Gain"}},
    {"Gain", Float{.min = 0.0, .max = 24.0}, kBeginner, "Amplification of the signal.",
     Extra{.unit = "dB", .selectors = "GainSelector"}},
    {"BlackLevelSelector", Enum{"All Red Green Blue"}, kExpert, "Colour that BlackLevel controls."},
    {"BlackLevel", Float{.min = 0.0, .max = 100.0}, kExpert, "Brightness of black pixels.",
     Extra{.unit = "%", .selectors = "BlackLevelSelector"}},
    {"BlackLevelAuto", Enum{"Off Once Continuous"}, kExpert, "Automatic black level."},
    {"BalanceRatioSelector", Enum{"Red Green Blue"}, kBeginner,
     "Colour that BalanceRatio controls."},
    {"BalanceRatio", Float{.value = 1.0, .min = 0.1, .max = 8.0}, kBeginner,
     "Weight of the selected colour.", Extra{.selectors = "BalanceRatioSelector"}},
    {"BalanceWhiteAuto", Enum{"Off Once Continuous"}, kBeginner, "Automatic white balance.",
     Extra{.affects = "BalanceRatio"}},
    {"Gamma", Float{.value = 1.0, .min = 0.25, .max = 4.0}, kBeginner,
     "Exponent of the response curve: output = input^γ."},
    {"WhiteClip", Int{.value = 100, .min = 50, .max = 100}, kExpert,
     "Brightness above which pixels are white.", Extra{.unit = "%"}},
};

} // namespace

void AddAnalogControl(Camera& camera) {
    camera.AddTable("/AnalogControl", kAnalogRows);
    const auto color = [&camera] {
        return FindPixelFormat(camera.EnumValue("PixelFormat"))->order != Order::kMono;
    };
    for (const char* entry : {"DigitalRed", "DigitalGreen", "DigitalBlue"}) {
        camera.Get<Enum>("GainSelector").EntryAvailableWhen(entry, color);
    }
    for (const char* entry : {"Red", "Green", "Blue"}) {
        camera.Get<Enum>("BlackLevelSelector").EntryAvailableWhen(entry, color);
    }
    for (const char* name : {"BalanceRatioSelector", "BalanceRatio", "BalanceWhiteAuto"}) {
        camera.At(name).AvailableWhen(color);
    }
    camera.At("Gain").WritableWhen([&camera] { return camera.EnumIs("GainAuto", "Off"); });
    camera.At("BalanceRatio").WritableWhen([&camera] {
        return camera.EnumIs("BalanceWhiteAuto", "Off");
    });
}

} // namespace pxsim
