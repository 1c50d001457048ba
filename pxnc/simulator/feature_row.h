// feature_row.h - the rows of the tables that describe features
#pragma once

#include "pxnc.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <variant>

namespace pxsim {

class BoolFeature;
class CommandFeature;
class EnumFeature;
class FloatFeature;
class IntFeature;
class RawFeature;
class StringFeature;

// A feature's type with its value at power-on and its limits. `Class` implements it.

struct Int {
    using Class = IntFeature;
    std::int64_t value = 0;
    std::int64_t min = std::numeric_limits<std::int64_t>::min();
    std::int64_t max = std::numeric_limits<std::int64_t>::max();
    std::int64_t step = 1;
};

struct Float {
    using Class = FloatFeature;
    double value = 0;
    double min = std::numeric_limits<double>::lowest();
    double max = std::numeric_limits<double>::max();
};

struct Enum {
    using Class = EnumFeature;
    const char* entries = "";    // names separated by spaces, numbered from 0
    const char* value = nullptr; // null: the first entry
};

struct String {
    using Class = StringFeature;
    const char* value = "";
    std::uint32_t maxLength = 63; // bytes; a longer `value` extends it
};

struct Bool {
    using Class = BoolFeature;
    bool value = false;
};

struct Command {
    using Class = CommandFeature;
    bool startsOrStops = false; // the acquisition
};

struct Raw {
    using Class = RawFeature;
    std::size_t length = 0; // bytes, all 0 at power-on
};

/// One visibility, combined with any of the others.
enum FeatureFlag : std::uint32_t {
    kBeginner = PxnVisibilityBeginner,
    kExpert = PxnVisibilityExpert,
    kGuru = PxnVisibilityGuru,
    kInvisible = PxnVisibilityInvisible,
    kVisibilityMask = 7,
    kReadOnly = 1 << 3,
    kWriteOnly = 1 << 4,
    kNotStored = 1 << 5, // neither in user sets nor in settings files
    kLocked = 1 << 6,    // not writable while streaming
    kCustom = 1 << 7,    // not a name of the standard
};

/// What only some features have.
struct Extra {
    const char* unit = "";
    const char* representation = nullptr; // null: the type's
    /// Features of the same module, separated by spaces. There is one value per state of the
    /// selectors, which precede the feature in their table or in an earlier one.
    const char* selectors = "";
    /// Features of the same module, separated by spaces, whose value, limits or access may change
    /// with this one. Names that the module does not have are ignored.
    const char* affects = "";
    /// Set when the value changes by itself: hosts read it again after so many milliseconds.
    std::optional<std::uint32_t> pollingMs = std::nullopt;
    const char* category = nullptr; // null: the table's
};

/// One feature:
///
///     {"Gain", Float{.min = 0.0, .max = 24.0}, kBeginner, "Amplification of the signal.",
///      Extra{.unit = "dB", .selectors = "GainSelector"}},
///
/// What needs code - computed values, moving limits, conditions, reactions - is attached to the
/// feature after its table has been added to the module. Text, unit and representation must live
/// until the last shutdown; the other texts are copied.
struct FeatureRow {
    const char* name;
    std::variant<Int, Float, Enum, String, Bool, Command, Raw> type;
    std::uint32_t flags; // FeatureFlag
    const char* text;    // tooltip and description
    Extra extra = {};
};

} // namespace pxsim
