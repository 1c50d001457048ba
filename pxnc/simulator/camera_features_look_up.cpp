#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"

namespace pxsim {
namespace {

constexpr std::int64_t kEntries = 1024;

void AddTables(Camera& camera) {
    constexpr const char* kLUTControl = "/LUTControl";
    camera.Enum("LUTSelector")
        .Entries({"Luminance", "Red", "Green", "Blue"})
        .In(kLUTControl)
        .For(PxnVisibilityExpert)
        .Text("Table that the features below belong to.");
    camera.Bool("LUTEnable")
        .SelectedBy("LUTSelector")
        .In(kLUTControl)
        .For(PxnVisibilityExpert)
        .Text("The table is used.");
    camera.Int("LUTIndex")
        .SelectedBy("LUTSelector")
        .Range(0, kEntries - 1)
        .In(kLUTControl)
        .For(PxnVisibilityGuru)
        .NotStored()
        .Text("Entry of the table.");
    RawFeature& all = camera.Raw("LUTValueAll")
                          .Value(std::string(2 * kEntries, '\0'))
                          .SelectedBy("LUTSelector")
                          .In(kLUTControl)
                          .For(PxnVisibilityGuru)
                          .Affects({"LUTValue"})
                          .Text("All values of the table, 16 bits each, high byte first.");
    const auto position = [&camera] {
        return 2 * static_cast<std::size_t>(camera.IntValue("LUTIndex"));
    };
    camera.Int("LUTValue")
        .SelectedBy("LUTSelector")
        .SelectedBy("LUTIndex")
        .Range(0, 4095)
        .Computed([&all, position] {
            const std::string bytes = all.Get();
            const auto high = static_cast<unsigned char>(bytes[position()]);
            const auto low = static_cast<unsigned char>(bytes[position() + 1]);
            return std::int64_t{high} * 256 + low;
        })
        .Writes([&all, position](std::int64_t value) {
            std::string bytes = all.Get();
            bytes[position()] = static_cast<char>(value / 256);
            bytes[position() + 1] = static_cast<char>(value % 256);
            return all.Set(std::move(bytes));
        })
        .In(kLUTControl)
        .For(PxnVisibilityGuru)
        .NotStored()
        .Text("Value of the entry.");
}

void AddColorTransformation(Camera& camera) {
    constexpr const char* kColorTransformationControl = "/ColorTransformationControl";
    camera.Enum("ColorTransformationSelector")
        .Entries({"RGBtoRGB", "RGBtoYUV"})
        .In(kColorTransformationControl)
        .For(PxnVisibilityExpert)
        .Text("Transformation that the features below belong to.");
    camera.Bool("ColorTransformationEnable")
        .SelectedBy("ColorTransformationSelector")
        .In(kColorTransformationControl)
        .For(PxnVisibilityExpert)
        .Text("The transformation is used.");
    camera.Enum("ColorTransformationValueSelector")
        .Entries({"Gain00", "Gain01", "Gain02", "Gain10", "Gain11", "Gain12", "Gain20", "Gain21",
                  "Gain22", "Offset0", "Offset1", "Offset2"})
        .SelectedBy("ColorTransformationSelector")
        .In(kColorTransformationControl)
        .For(PxnVisibilityExpert)
        .Text("Coefficient that the value belongs to.");
    FloatFeature& value = camera.Float("ColorTransformationValue")
                              .SelectedBy("ColorTransformationSelector")
                              .SelectedBy("ColorTransformationValueSelector")
                              .Range(-4.0, 4.0)
                              .In(kColorTransformationControl)
                              .For(PxnVisibilityExpert)
                              .Text("Value of the coefficient.");
    for (const std::int64_t diagonal : {0, 4, 8}) {
        value.ValueFor(diagonal, 1.0); // of the first transformation
    }
}

} // namespace

void AddLookUpControl(Camera& camera) {
    AddTables(camera);
    AddColorTransformation(camera);
}

} // namespace pxsim
