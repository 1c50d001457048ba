// feature_value.h - the values of features and their types
#pragma once

#include "pxnc.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace pyxen {

/// The types of features, numbered as by the SDK. Other numbers may occur; their features have no
/// value.
enum class FeatureType : std::uint32_t {
    kUnknown = PxnFeatureDataUnknown,
    kInteger = PxnFeatureDataInt,
    kFloat = PxnFeatureDataFloat,
    kEnumeration = PxnFeatureDataEnum,
    kText = PxnFeatureDataString,
    kBoolean = PxnFeatureDataBool,
    kCommand = PxnFeatureDataCommand,
    kBytes = PxnFeatureDataRaw,
    kNone = PxnFeatureDataNone,
};

constexpr bool HasValue(FeatureType type) {
    return (type >= FeatureType::kInteger && type <= FeatureType::kBoolean) ||
           type == FeatureType::kBytes;
}

/// What an operation needs to know of each type that it is for, such as the words of its log lines:
/// the types from kInteger to kBoolean, or the first of them.
template <typename Row, std::size_t kRows = 5>
struct TypeTable {
    Row rows[kRows];

    /// Null for the other types.
    constexpr const Row* Find(FeatureType type) const {
        const auto index =
            static_cast<std::size_t>(type) - static_cast<std::size_t>(FeatureType::kInteger);
        return index < kRows ? &rows[index] : nullptr;
    }
};

/// Combines lambdas into one visitor.
template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

/// An entry of an enumeration by name. The text is not owned: it is the SDK's, which has one
/// pointer for each distinct name, or one that outlives the value. Null when the SDK left it out.
struct EnumEntry {
    const char* name = nullptr;

    bool operator==(const EnumEntry&) const = default;
};

using FeatureBytes = std::vector<std::uint8_t>;

template <typename T>
concept FeatureValueAlternative =
    std::same_as<T, std::int64_t> || std::same_as<T, double> || std::same_as<T, EnumEntry> ||
    std::same_as<T, std::string> || std::same_as<T, bool> || std::same_as<T, FeatureBytes>;

/// A value of one of the types that can be read and written.
class FeatureValue {
public:
    /// The integer 0.
    FeatureValue() = default;
    /// Takes exactly the types above, so that no text or number turns into a boolean.
    template <FeatureValueAlternative T>
    // Implicit: values are passed where a FeatureValue is expected.
    FeatureValue(T held) : value(std::move(held)) {}

    FeatureType Type() const {
        constexpr FeatureType kTypes[] = {FeatureType::kInteger,     FeatureType::kFloat,
                                          FeatureType::kEnumeration, FeatureType::kText,
                                          FeatureType::kBoolean,     FeatureType::kBytes};
        return kTypes[value.index()];
    }

    /// The value is known to be a T.
    template <FeatureValueAlternative T>
    const T& Get() const {
        return std::get<T>(value);
    }
    template <FeatureValueAlternative T>
    T& Get() {
        return std::get<T>(value);
    }
    /// Null when the value is not a T.
    template <FeatureValueAlternative T>
    const T* GetIf() const {
        return std::get_if<T>(&value);
    }
    template <typename Visitor>
    decltype(auto) Visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), value);
    }

    /// Calls `write` with the value as log lines take it: a 64-bit integer, a double or a text. A
    /// boolean is shown as one of the two words; bytes are not shown.
    template <typename Write>
    void Show(const char* whenFalse, const char* whenTrue, Write&& write) const {
        Visit(Overloaded{[&](const EnumEntry& entry) { write(entry.name); },
                         [&](const std::string& text) { write(text.c_str()); },
                         [&](bool state) { write(state ? whenTrue : whenFalse); },
                         [](const FeatureBytes&) {},
                         [&](auto number) {
                             write(number);
                         }});
    }

    bool operator==(const FeatureValue&) const = default;

private:
    std::variant<std::int64_t, double, EnumEntry, std::string, bool, FeatureBytes> value;
};

} // namespace pyxen
