// camera_features_image.cpp - sensor, region, pixel format and test pattern
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

#include <algorithm>
#include <numeric>

namespace pxsim {
namespace {

constexpr const char* kImageFormatControl = "/ImageFormatControl";
constexpr std::int64_t kSmallest = 16;
constexpr std::int64_t kOffsetStep = 4;
constexpr std::int64_t kLineStep = 2;
constexpr std::int64_t kDefaultWidth = 640;
constexpr std::int64_t kDefaultHeight = 480;

// In the order of Pattern.
constexpr const char* kPatternNames[] = {
    "GreyDiagonalRamp", "ColorBar", "ResolutionChart", "Noise", "Black", "White"};

constexpr FeatureRow kSensorSizeRows[] = {
    {"SensorWidth", Int{}, kExpert | kReadOnly, "Width of the sensor.", Extra{.unit = "px"}},
    {"SensorHeight", Int{}, kExpert | kReadOnly, "Height of the sensor.", Extra{.unit = "px"}},
    {"BinningHorizontal", Int{1}, kExpert | kLocked,
     "Number of horizontal photo cells combined into one.",
     Extra{.affects = "WidthMax HeightMax Width Height OffsetX OffsetY"}},
    {"BinningVertical", Int{1}, kExpert | kLocked,
     "Number of vertical photo cells combined into one.",
     Extra{.affects = "WidthMax HeightMax Width Height OffsetX OffsetY"}},
    {"WidthMax", Int{}, kExpert | kReadOnly, "Maximum width of an image.", Extra{.unit = "px"}},
    {"HeightMax", Int{}, kExpert | kReadOnly, "Maximum height of an image.", Extra{.unit = "px"}},
};

constexpr FeatureRow kPixelRows[] = {
    {"PixelFormat", Enum{}, kBeginner | kLocked, "Layout of the pixels in memory.",
     Extra{.affects = "PixelSize PixelColorFilter PixelDynamicRangeMax LinePitch PayloadSize "
                      "ImageSize Width AcquisitionFrameRate GainSelector BalanceRatio"}},
    {"PixelSize", Int{}, kExpert | kReadOnly, "Number of bits per pixel in memory.",
     Extra{.unit = "bit"}},
    {"ReverseX", Bool{}, kBeginner, "Mirrors the image horizontally."},
};

constexpr FeatureRow kRegionRows[] = {
    {"Width", Int{}, kBeginner | kLocked, "Width of the image.",
     Extra{.unit = "px",
           .affects = "OffsetX LinePitch PayloadSize ImageSize AcquisitionFrameRate"}},
    {"Height", Int{.min = kSmallest, .step = kLineStep}, kBeginner | kLocked,
     "Height of the image.",
     Extra{.unit = "px", .affects = "OffsetY PayloadSize ImageSize AcquisitionFrameRate"}},
    {"OffsetX", Int{.min = 0, .step = kOffsetStep}, kBeginner,
     "First column of the image on the sensor.", Extra{.unit = "px", .affects = "Width"}},
    {"OffsetY", Int{.min = 0, .step = kLineStep}, kBeginner,
     "First line of the image on the sensor.", Extra{.unit = "px", .affects = "Height"}},
};

constexpr FeatureRow kPatternRows[] = {
    {"TestPattern", Enum{}, kBeginner, "Pattern that the camera sees."},
    {"TestPatternSeed", Int{.min = 0, .max = 0x7FFFFFFF}, kExpert | kCustom,
     "Seed of the noise; equal seeds produce equal noise."},
};

constexpr FeatureRow kDerivedRows[] = {
    {"PixelColorFilter", Enum{"None BayerRG BayerGB BayerGR BayerBG"}, kExpert | kReadOnly,
     "Colour filter of the image."},
    {"PixelDynamicRangeMin", Int{}, kExpert | kReadOnly, "Minimum value of a pixel."},
    {"PixelDynamicRangeMax", Int{}, kExpert | kReadOnly, "Maximum value of a pixel."},
    {"LinePitch", Int{}, kExpert | kReadOnly, "Number of bytes from one line to the next.",
     Extra{.unit = "B"}},
    {"ImageCompressionMode", Enum{"Off JPEG"}, kExpert | kLocked, "Compression of the image."},
    {"SensorShutterMode", Enum{"Global Rolling"}, kExpert | kReadOnly,
     "Shutter mode of the sensor."},
    {"SensorPixelWidth", Float{4.8}, kExpert | kReadOnly, "Width of a photo cell.",
     Extra{.unit = "µm"}},
    {"SensorPixelHeight", Float{4.8}, kExpert | kReadOnly, "Height of a photo cell.",
     Extra{.unit = "µm"}},
};

constexpr FeatureRow kImageSizeRows[] = {
    {"ImageSize", Int{}, kExpert | kReadOnly | kCustom, "Size of an image with all appended data.",
     Extra{.unit = "B"}},
};

const PixelFormat& FormatOf(Camera& camera) {
    return *FindPixelFormat(camera.EnumValue("PixelFormat"));
}

std::int64_t WidthStep(Camera& camera) {
    const std::int64_t own = camera.Setup().kind == CameraKind::kGigE ? 4 : 2;
    const std::int64_t group = WidthGroup(FormatOf(camera));
    return own / std::gcd(own, group) * group;
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

void AddSensor(Camera& camera) {
    camera.AddTable(kImageFormatControl, kSensorSizeRows);
    camera.Get<Int>("SensorWidth").Value(camera.Setup().sensorWidth);
    camera.Get<Int>("SensorHeight").Value(camera.Setup().sensorHeight);
    for (const char* name : {"BinningHorizontal", "BinningVertical"}) {
        camera.Get<Int>(name).ValidValues({1, 2, 4}).OnChange([&camera] { camera.FitRegion(); });
    }
    camera.Get<Int>("WidthMax").Computed([&camera] {
        return camera.IntValue("SensorWidth") / camera.IntValue("BinningHorizontal");
    });
    camera.Get<Int>("HeightMax").Computed([&camera] {
        return camera.IntValue("SensorHeight") / camera.IntValue("BinningVertical");
    });
}

void AddPixelFormat(Camera& camera) {
    camera.AddTable(kImageFormatControl, kPixelRows);
    camera.Get<Enum>("PixelFormat").PixelFormatEntries().Value("Mono8").OnChange([&camera] {
        camera.FitRegion();
    });
    camera.Get<Int>("PixelSize").Computed([&camera] {
        return std::int64_t{BitsPerPixel(FormatOf(camera))};
    });
    camera.At("ReverseX").OnChange([&camera] { camera.UpdatePlan(); });
}

void AddRegion(Camera& camera) {
    const CameraConfiguration& setup = camera.Setup();
    camera.AddTable(kImageFormatControl, kRegionRows);
    // `whole` minus `part`, rounded down to a multiple of `step`.
    const auto room = [&camera](const char* whole, const char* part, std::int64_t step) {
        return (camera.IntValue(whole) - camera.IntValue(part)) / step * step;
    };
    camera.Get<Int>("Width")
        .Value(std::min(kDefaultWidth, std::int64_t{setup.sensorWidth}))
        .Min([&camera] { return std::lcm(kSmallest, WidthStep(camera)); })
        .Max([&camera, room] { return room("WidthMax", "OffsetX", WidthStep(camera)); })
        .Increment([&camera] { return WidthStep(camera); });
    camera.Get<Int>("Height")
        .Value(std::min(kDefaultHeight, std::int64_t{setup.sensorHeight}))
        .Max([room] { return room("HeightMax", "OffsetY", kLineStep); });
    camera.Get<Int>("OffsetX").Max([room] { return room("WidthMax", "Width", kOffsetStep); });
    camera.Get<Int>("OffsetY").Max([room] { return room("HeightMax", "Height", kLineStep); });
    for (const char* name : {"Width", "Height", "OffsetX", "OffsetY"}) {
        camera.At(name).OnChange([&camera] { camera.FitRegion(); });
    }
}

void AddTestPattern(Camera& camera) {
    camera.AddTable(kImageFormatControl, kPatternRows);
    camera.Get<Enum>("TestPattern")
        .Entries(kPatternNames)
        .Value(kPatternNames[static_cast<std::size_t>(camera.Setup().pattern)])
        .OnChange([&camera] { camera.UpdatePlan(); });
    camera.Get<Int>("TestPatternSeed")
        .Value(camera.Setup().seed)
        .AvailableWhen([&camera] { return camera.EnumIs("TestPattern", "Noise"); })
        .OnChange([&camera] { camera.UpdatePlan(); });
}

void AddDerived(Camera& camera) {
    camera.AddTable(kImageFormatControl, kDerivedRows);
    camera.Get<Enum>("PixelColorFilter").Computed([&camera] {
        return ColorFilterName(FormatOf(camera).order);
    });
    camera.Get<Int>("PixelDynamicRangeMax").Computed([&camera] {
        return (std::int64_t{1} << FormatOf(camera).bits) - 1;
    });
    camera.Get<Int>("LinePitch").Computed([&camera] {
        return std::int64_t{camera.CurrentImage().LineBytesInMemory()};
    });
    camera.Get<Enum>("ImageCompressionMode").EntryAvailableWhen("JPEG", [] { return false; });
    const std::string sensor = "PX-CMOS " + camera.Setup().model;
    const FeatureRow nameRows[] = {
        {"SensorName", String{sensor.c_str()}, kExpert | kReadOnly, "Name of the sensor."},
    };
    camera.AddTable(kImageFormatControl, nameRows);
}

} // namespace

void Camera::FitRegion() {
    platform::MutexLock lock(mutex);
    for (const char* feature : {"OffsetX", "OffsetY", "Width", "Height"}) {
        IntFeature& value = Get<Int>(feature);
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
    // Hosts prefer it to PayloadSize; only this kind of camera has it.
    if (camera.Setup().kind == CameraKind::kUsb) {
        camera.AddTable(kImageFormatControl, kImageSizeRows);
        camera.Get<Int>("ImageSize").Computed([&camera] { return camera.PayloadBytes(); });
    }
}

} // namespace pxsim
