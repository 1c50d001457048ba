// shell_operation.h - an operation of the shell and how its arguments are read
#pragma once

#include "apps/common/hex_bytes.h"
#include "apps/common/parse_number.h"
#include "apps/common/shell_answer.h"
#include "apps/common/shell_line.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// An argument that an operation cannot take, or an operation that cannot run; the shell prints
/// the reason.
class ShellRefusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// 64 bits as a parameter takes them: a negative number stands for its two's complement.
struct ParameterValue {
    std::uint64_t bits = 0;
};

/// All behind the name, as it stands.
struct RestOfLine {
    std::string text;
};

/// Reads one argument as the type that an operation asks for.
template <typename T>
T ReadArgument(const std::string& text) {
    if constexpr (std::is_same_v<T, std::string>) {
        return text;
    } else if constexpr (std::is_same_v<T, bool>) {
        if (text != "0" && text != "1") {
            throw ShellRefusal("\"" + text + "\" is neither 0 nor 1");
        }
        return text == "1";
    } else if constexpr (std::is_same_v<T, std::vector<std::uint8_t>>) {
        auto bytes = ParseHex(text);
        if (!bytes) {
            throw ShellRefusal("\"" + text + "\" is no sequence of hexadecimal bytes");
        }
        return *std::move(bytes);
    } else if constexpr (std::is_same_v<T, ParameterValue>) {
        if (const auto number = ParseUnsigned(text)) {
            return {*number};
        }
        const auto number = ParseSigned(text);
        if (!number) {
            throw ShellRefusal("\"" + text + "\" is no number");
        }
        return {static_cast<std::uint64_t>(*number)};
    } else if constexpr (std::is_signed_v<T>) {
        const auto number = ParseSigned(text);
        if (!number || *number < std::numeric_limits<T>::min() ||
            *number > std::numeric_limits<T>::max()) {
            throw ShellRefusal("\"" + text + "\" is no number in range");
        }
        return static_cast<T>(*number);
    } else {
        const auto number = ParseUnsigned(text);
        if (!number || *number > std::numeric_limits<T>::max()) {
            throw ShellRefusal("\"" + text + "\" is no number in range");
        }
        return static_cast<T>(*number);
    }
}

template <typename T>
struct IsOptional : std::false_type {};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type {};

/// Runs with the line's arguments; throws ShellRefusal.
using ShellOperation = std::function<ShellAnswer(const ShellLine&)>;

/// Operations by name.
class ShellOperations {
public:
    /// Adds an operation. `run` is any callable that answers a ShellAnswer; the types of its
    /// parameters say what the line must hold: numbers, bool, std::string, bytes, ParameterValue,
    /// and at the end std::optional of these or one RestOfLine. Nothing runs unless all of them
    /// could be read and nothing is left over. `usage` names them for messages and help.
    template <typename Callable>
    void Add(const char* name, const char* usage, Callable run) {
        Bind(name, usage, std::function(std::move(run)));
    }

    struct Entry {
        std::string usage;
        ShellOperation run;
    };
    const std::map<std::string, Entry>& All() const { return entries; }

private:
    template <typename... Parameters>
    void Bind(const char* name, const char* usage, std::function<ShellAnswer(Parameters...)> run) {
        entries[name] = {usage, [run = std::move(run), usage](const ShellLine& line) {
                             return Call<std::remove_cvref_t<Parameters>...>(
                                 run, line, usage, std::index_sequence_for<Parameters...>());
                         }};
    }

    template <typename... Parameters, typename Run, std::size_t... Index>
    static ShellAnswer Call(const Run& run, const ShellLine& line, const char* usage,
                            std::index_sequence<Index...>) {
        if constexpr ((std::is_same_v<Parameters, RestOfLine> || ...)) {
            return run(RestOfLine{line.Rest()});
        } else {
            if (!line.Error().empty()) {
                throw ShellRefusal(line.Error());
            }
            constexpr std::size_t kMost = sizeof...(Parameters);
            constexpr std::size_t kLeast =
                kMost - (std::size_t{0} + ... + (IsOptional<Parameters>::value ? 1u : 0u));
            const std::vector<std::string>& given = line.Arguments();
            if (given.size() < kLeast || given.size() > kMost) {
                throw ShellRefusal(*usage ? std::string("expects ") + usage
                                          : "expects no arguments");
            }
            // Braces read the arguments from left to right, so that the first bad one is named.
            std::tuple<Parameters...> values{Read<Parameters>(given, Index)...};
            return std::apply(run, std::move(values));
        }
    }

    template <typename T>
    static T Read(const std::vector<std::string>& given, std::size_t index) {
        if constexpr (IsOptional<T>::value) {
            if (index >= given.size()) {
                return std::nullopt;
            }
            return ReadArgument<typename T::value_type>(given[index]);
        } else {
            return ReadArgument<T>(given[index]);
        }
    }

    std::map<std::string, Entry> entries;
};
