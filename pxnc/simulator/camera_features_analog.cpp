#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr const char* kAnalogControl = "/AnalogControl";

bool IsColor(Camera& camera) {
    const PixelFormat* format = FindPixelFormat(camera.EnumValue("PixelFormat"));
    return format->order != Order::kMono;
}

} // namespace

void AddAnalogControl(Camera& camera) {
    const auto color = [&camera] {
        return IsColor(camera);
    };
    camera.Enum("GainSelector")
        .Entries({"All", "AnalogAll", "DigitalAll", "DigitalRed", "DigitalGreen", "DigitalBlue"})
        .EntryAvailableWhen("DigitalRed", color)
        .EntryAvailableWhen("DigitalGreen", color)
        .EntryAvailableWhen("DigitalBlue", color)
        .In(kAnalogControl)
        .Text("Amplifier that the features below belong to.");
    camera.Enum("GainAuto")
        .Entries({"Off", "Once", "Continuous"})
        .In(kAnalogControl)
        .Affects({"Gain"})
        .Text("Gain found by the camera.");
    camera.Float("Gain")
        .SelectedBy("GainSelector")
        .Range(0.0, 24.0)
        .Unit("dB")
        .In(kAnalogControl)
        .WritableWhen([&camera] { return camera.EnumIs("GainAuto", "Off"); })
        .Text("Amplification.");
    camera.Enum("BlackLevelSelector")
        .Entries({"All", "Red", "Green", "Blue"})
        .EntryAvailableWhen("Red", color)
        .EntryAvailableWhen("Green", color)
        .EntryAvailableWhen("Blue", color)
        .In(kAnalogControl)
        .For(PxnVisibilityExpert)
        .Text("Colour that the black level belongs to.");
    camera.Float("BlackLevel")
        .SelectedBy("BlackLevelSelector")
        .Range(0.0, 100.0)
        .Unit("%")
        .In(kAnalogControl)
        .For(PxnVisibilityExpert)
        .Text("Brightness of black.");
    camera.Enum("BlackLevelAuto")
        .Entries({"Off", "Once", "Continuous"})
        .In(kAnalogControl)
        .For(PxnVisibilityExpert)
        .Text("Black level found by the camera.");
    camera.Enum("BalanceRatioSelector")
        .Entries({"Red", "Green", "Blue"})
        .In(kAnalogControl)
        .AvailableWhen(color)
        .Text("Colour that the balance belongs to.");
    camera.Float("BalanceRatio")
        .SelectedBy("BalanceRatioSelector")
        .Value(1.0)
        .Range(0.1, 8.0)
        .In(kAnalogControl)
        .AvailableWhen(color)
        .WritableWhen([&camera] { return camera.EnumIs("BalanceWhiteAuto", "Off"); })
        .Text("Weight of the colour.");
    camera.Enum("BalanceWhiteAuto")
        .Entries({"Off", "Once", "Continuous"})
        .In(kAnalogControl)
        .AvailableWhen(color)
        .Affects({"BalanceRatio"})
        .Text("Balance found by the camera.");
    camera.Float("Gamma")
        .Value(1.0)
        .Range(0.25, 4.0)
        .In(kAnalogControl)
        .Text("Exponent of the response curve: output = input^γ.");
    camera.Int("WhiteClip")
        .Value(100)
        .Range(50, 100)
        .Unit("%")
        .In(kAnalogControl)
        .For(PxnVisibilityExpert)
        .Text("Brightness above which everything is white.");
}

} // namespace pxsim
