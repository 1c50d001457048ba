// camera_features_look_up.cpp - look-up tables and the colour transformation
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr std::int64_t kTableEntries = 1024;

constexpr FeatureRow kTableRows[] = {
    {"LUTSelector", Enum{"Luminance Red Green Blue"}, kExpert, "Look-up table to access."},
    {"LUTEnable", Bool{}, kExpert, "Enables the selected table.",
     Extra{.selectors = "LUTSelector"}},
    {"LUTIndex", Int{.min = 0, .max = kTableEntries - 1}, kGuru | kNotStored,
     "Index of the entry to access.", Extra{.selectors = "LUTSelector"}},
    {"LUTValueAll", Raw{2 * kTableEntries}, kGuru,
     "All values of the table, 16 bits each, high byte first.",
     Extra{.selectors = "LUTSelector", .affects = "LUTValue"}},
    {"LUTValue", Int{.min = 0, .max = 4095}, kGuru | kNotStored, "Value of the selected entry.",
     Extra{.selectors = "LUTSelector LUTIndex"}},
};

constexpr FeatureRow kTransformationRows[] = {
    {"ColorTransformationSelector", Enum{"RGBtoRGB RGBtoYUV"}, kExpert,
     "Colour transformation to configure."},
    {"ColorTransformationEnable", Bool{}, kExpert, "Enables the selected transformation.",
     Extra{.selectors = "ColorTransformationSelector"}},
    {"ColorTransformationValueSelector",
     Enum{"Gain00 Gain01 Gain02 Gain10 Gain11 Gain12 Gain20 Gain21 Gain22 Offset0 Offset1 Offset2"},
     kExpert, "Coefficient to access.", Extra{.selectors = "ColorTransformationSelector"}},
    {"ColorTransformationValue", Float{.min = -4.0, .max = 4.0}, kExpert,
     "Value of the selected coefficient.",
     Extra{.selectors = "ColorTransformationSelector ColorTransformationValueSelector"}},
};

void AttachTables(Camera& camera) {
    RawFeature& all = camera.Get<Raw>("LUTValueAll");
    const auto position = [&camera] {
        return 2 * static_cast<std::size_t>(camera.IntValue("LUTIndex"));
    };
    camera.Get<Int>("LUTValue")
        .Computed([&all, position] {
            const std::string& bytes = all.Get();
            const auto high = static_cast<unsigned char>(bytes[position()]);
            const auto low = static_cast<unsigned char>(bytes[position() + 1]);
            return std::int64_t{high} * 256 + low;
        })
        .Writes([&all, position](std::int64_t value) {
            std::string bytes = all.Get();
            bytes[position()] = static_cast<char>(value / 256);
            bytes[position() + 1] = static_cast<char>(value % 256);
            return all.Set(std::move(bytes));
        });
}

} // namespace

void AddLookUpControl(Camera& camera) {
    camera.AddTable("/LUTControl", kTableRows);
    AttachTables(camera);
    camera.AddTable("/ColorTransformationControl", kTransformationRows);
    for (const std::int64_t diagonal : {0, 4, 8}) { // of the first transformation
        camera.Get<Float>("ColorTransformationValue").ValueFor(diagonal, 1.0);
    }
}

} // namespace pxsim
