#include "pxnc/simulator/input_features.h"

#include "pxnc/simulator/pixel_formats.h"

namespace pxsim {

void AddInputFeatures(Module& module) {
    constexpr const char* kInputControl = "/InputControl";
    std::vector<EnumFeature::NamedValue> formats;
    for (const PixelFormat& format : AllPixelFormats()) {
        formats.push_back({format.name, std::int64_t{format.code}});
    }
    module.Int("InputWidth")
        .Value(640)
        .Range(1, 4096)
        .In(kInputControl)
        .Custom()
        .Text("Pixels of a line that the board takes in.");
    module.Float("InputExposureTime")
        .Value(10000.0)
        .Range(1.0, 1e6)
        .Unit("µs")
        .In(kInputControl)
        .Custom()
        .Text("Length of the pulse by which the board exposes the sensor.");
    module.Enum("InputFormat")
        .EntriesWithValues(formats)
        .Value("Mono8")
        .In(kInputControl)
        .Custom()
        .Text("Layout of the pixels that the board expects.");
    module.String("InputCameraName")
        .In(kInputControl)
        .MaxLength(12)
        .Custom()
        .Text("Name of the camera at the board's input.");
    module.Bool("InputMirrored")
        .In(kInputControl)
        .Custom()
        .Text("The board takes the lines in from right to left.");
}

} // namespace pxsim
