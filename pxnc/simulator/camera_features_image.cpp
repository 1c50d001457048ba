#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

#include <algorithm>
#include <numeric>

namespace pxsim {
namespace {

constexpr const char* kImageFormatControl = "/ImageFormatControl";
constexpr std::int64_t kSmallest = 16;
constexpr std::int64_t kOffsetStep = 4;
constexpr std::int64_t kDefaultWidth = 640;
constexpr std::int64_t kDefaultHeight = 480;

std::int64_t WidthStep(Camera& camera) {
    const std::int64_t own = camera.Setup().kind == CameraKind::kGigE ? 4 : 2;
    const PixelFormat* format = FindPixelFormat(camera.EnumValue("PixelFormat"));
    const std::int64_t group = WidthGroup(*format);
    return own / std::gcd(own, group) * group;
}

void AddSensor(Camera& camera) {
    const CameraConfiguration& setup = camera.Setup();
    camera.Int("SensorWidth")
        .Value(setup.sensorWidth)
        .Unit("px")
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Columns of the sensor.");
    camera.Int("SensorHeight")
        .Value(setup.sensorHeight)
        .Unit("px")
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Lines of the sensor.");
    for (const char* name : {"BinningHorizontal", "BinningVertical"}) {
        camera.Int(name)
            .Value(1)
            .ValidValues({1, 2, 4})
            .In(kImageFormatControl)
            .LockedWhileStreaming()
            .For(PxnVisibilityExpert)
            .Affects({"WidthMax", "HeightMax", "Width", "Height", "OffsetX", "OffsetY"})
            .OnChange([&camera] { camera.FitRegion(); })
            .Text("Photo cells that are joined to one.");
    }
    camera.Int("WidthMax")
        .Computed([&camera] {
            return camera.IntValue("SensorWidth") / camera.IntValue("BinningHorizontal");
        })
        .Unit("px")
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Largest width of an image.");
    camera.Int("HeightMax")
        .Computed([&camera] {
            return camera.IntValue("SensorHeight") / camera.IntValue("BinningVertical");
        })
        .Unit("px")
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Largest height of an image.");
}

void AddRegion(Camera& camera) {
    const CameraConfiguration& setup = camera.Setup();
    const auto sized = [&camera](IntFeature& feature) -> IntFeature& {
        return feature.Unit("px").In(kImageFormatControl).OnChange([&camera] {
            camera.FitRegion();
        });
    };
    sized(camera.Int("Width"))
        .Value(std::min(kDefaultWidth, std::int64_t{setup.sensorWidth}))
        .Min([&camera] { return std::lcm(kSmallest, WidthStep(camera)); })
        .Max([&camera] {
            const std::int64_t step = WidthStep(camera);
            const std::int64_t room = camera.IntValue("WidthMax") - camera.IntValue("OffsetX");
            return room / step * step;
        })
        .Increment([&camera] { return WidthStep(camera); })
        .LockedWhileStreaming()
        .Affects({"OffsetX", "LinePitch", "PayloadSize", "ImageSize", "AcquisitionFrameRate"})
        .Text("Width of the image.");
    sized(camera.Int("Height"))
        .Value(std::min(kDefaultHeight, std::int64_t{setup.sensorHeight}))
        .Min([] { return kSmallest; })
        .Max([&camera] {
            return (camera.IntValue("HeightMax") - camera.IntValue("OffsetY")) / 2 * 2;
        })
        .Increment([] { return std::int64_t{2}; })
        .LockedWhileStreaming()
        .Affects({"OffsetY", "PayloadSize", "ImageSize", "AcquisitionFrameRate"})
        .Text("Height of the image.");
    sized(camera.Int("OffsetX"))
        .Min([] { return std::int64_t{0}; })
        .Max([&camera] {
            return (camera.IntValue("WidthMax") - camera.IntValue("Width")) / kOffsetStep *
                   kOffsetStep;
        })
        .Increment([] { return kOffsetStep; })
        .Affects({"Width"})
        .Text("First column of the image on the sensor.");
    sized(camera.Int("OffsetY"))
        .Min([] { return std::int64_t{0}; })
        .Max([&camera] {
            return (camera.IntValue("HeightMax") - camera.IntValue("Height")) / 2 * 2;
        })
        .Increment([] { return std::int64_t{2}; })
        .Affects({"Height"})
        .Text("First line of the image on the sensor.");
}

void AddPixelFormat(Camera& camera) {
    std::vector<EnumFeature::NamedValue> entries;
    for (const PixelFormat& format : AllPixelFormats()) {
        entries.push_back({format.name, std::int64_t{format.code}});
    }
    camera.Enum("PixelFormat")
        .EntriesWithValues(entries)
        .Value("Mono8")
        .In(kImageFormatControl)
        .LockedWhileStreaming()
        .Affects({"PixelSize", "PixelColorFilter", "PixelDynamicRangeMax", "LinePitch",
                  "PayloadSize", "ImageSize", "Width", "AcquisitionFrameRate", "GainSelector",
                  "BalanceRatio"})
        .OnChange([&camera] { camera.FitRegion(); })
        .Text("Layout of the pixels in memory.");
    camera.Int("PixelSize")
        .Computed([&camera] {
            return std::int64_t{BitsPerPixel(*FindPixelFormat(camera.EnumValue("PixelFormat")))};
        })
        .Unit("bit")
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Bits of a pixel in memory.");
    camera.Bool("ReverseX")
        .In(kImageFormatControl)
        .OnChange([&camera] { camera.UpdatePlan(); })
        .Text("Mirrors the image from left to right.");
}

const char* PatternName(Pattern pattern) {
    static constexpr const char* kNames[] = {
        "GreyDiagonalRamp", "ColorBar", "ResolutionChart", "Noise", "Black", "White"};
    return kNames[static_cast<std::size_t>(pattern)];
}

void AddTestPattern(Camera& camera) {
    camera.Enum("TestPattern")
        .Entries({"GreyDiagonalRamp", "ColorBar", "ResolutionChart", "Noise", "Black", "White"})
        .Value(PatternName(camera.Setup().pattern))
        .In(kImageFormatControl)
        .OnChange([&camera] { camera.UpdatePlan(); })
        .Text("What the camera looks at.");
    camera.Int("TestPatternSeed")
        .Value(camera.Setup().seed)
        .Range(0, 0x7FFFFFFF)
        .In(kImageFormatControl)
        .Custom()
        .For(PxnVisibilityExpert)
        .AvailableWhen([&camera] { return camera.EnumIs("TestPattern", "Noise"); })
        .OnChange([&camera] { camera.UpdatePlan(); })
        .Text("Start of the noise; the same seed gives the same noise.");
}

const char* ColorFilterName(Order order) {
    switch (order) {
    case Order::kBayerGR:
        return "BayerGR";
    case Order::kBayerRG:
        return "BayerRG";
    case Order::kBayerGB:
        return "BayerGB";
    case Order::kBayerBG:
        return "BayerBG";
    default:
        return "None";
    }
}

void AddDerived(Camera& camera) {
    const auto format = [&camera]() -> const PixelFormat& {
        return *FindPixelFormat(camera.EnumValue("PixelFormat"));
    };
    camera.Enum("PixelColorFilter")
        .Entries({"None", "BayerRG", "BayerGB", "BayerGR", "BayerBG"})
        .Computed([format] { return ColorFilterName(format().order); })
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Colour filter of the image.");
    camera.Int("PixelDynamicRangeMin")
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Smallest value of a pixel.");
    camera.Int("PixelDynamicRangeMax")
        .Computed([format] { return (std::int64_t{1} << format().bits) - 1; })
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Largest value of a pixel.");
    camera.Int("LinePitch")
        .Computed([&camera] { return std::int64_t{camera.CurrentImage().LineBytesInMemory()}; })
        .Unit("B")
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Bytes from one line to the next.");
    camera.Enum("ImageCompressionMode")
        .Entries({"Off", "JPEG"})
        .EntryAvailableWhen("JPEG", [] { return false; })
        .In(kImageFormatControl)
        .For(PxnVisibilityExpert)
        .LockedWhileStreaming()
        .Text("Compression of the image.");
    camera.Enum("SensorShutterMode")
        .Entries({"Global", "Rolling"})
        .In(kImageFormatControl)
        .For(PxnVisibilityExpert)
        .ReadOnly()
        .Text("How the lines are exposed.");
    for (const char* name : {"SensorPixelWidth", "SensorPixelHeight"}) {
        camera.Float(name)
            .Value(4.8)
            .Unit("µm")
            .In(kImageFormatControl)
            .ReadOnly()
            .For(PxnVisibilityExpert)
            .Text("Size of a photo cell.");
    }
    camera.String("SensorName")
        .Value("PX-CMOS " + camera.Setup().model)
        .In(kImageFormatControl)
        .ReadOnly()
        .For(PxnVisibilityExpert)
        .Text("Name of the sensor.");
}

} // namespace

void Camera::FitRegion() {
    platform::MutexLock lock(mutex);
    for (const char* feature : {"OffsetX", "OffsetY", "Width", "Height"}) {
        auto& value = dynamic_cast<IntFeature&>(*Find(feature));
        value.Put(value.Nearest(value.Get()));
    }
    LimitFrameRate();
}

void AddImageFormatControl(Camera& camera) {
    AddSensor(camera);
    AddPixelFormat(camera);
    AddRegion(camera);
    AddTestPattern(camera);
    AddDerived(camera);
    // Hosts ask for it before PayloadSize; only this kind of camera has it.
    if (camera.Setup().kind == CameraKind::kUsb) {
        camera.Int("ImageSize")
            .Computed([&camera] { return camera.PayloadBytes(); })
            .Unit("B")
            .In(kImageFormatControl)
            .ReadOnly()
            .Custom()
            .For(PxnVisibilityExpert)
            .Text("Bytes of an image with all that comes with it.");
    }
}

} // namespace pxsim
