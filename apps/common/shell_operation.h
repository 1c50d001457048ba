// shell_operation.h - operations of the shell and their arguments
#pragma once

#include "apps/common/shell_answer.h"
#include "apps/common/shell_line.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Thrown for an argument that an operation does not accept and for an operation that cannot run;
/// the shell prints the reason.
class ShellRefusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A 64-bit parameter value; a negative number is stored as its two's complement.
struct ParameterValue {
    std::uint64_t bits = 0;
};

/// Everything after the name, as written.
struct RestOfLine {
    std::string text;
};

/// Reads one argument as the type of an operation's parameter; throws ShellRefusal.
template <typename T>
T ReadArgument(const std::string& text);
template <>
bool ReadArgument(const std::string& text);
template <>
std::int32_t ReadArgument(const std::string& text);
template <>
std::int64_t ReadArgument(const std::string& text);
template <>
std::uint32_t ReadArgument(const std::string& text);
template <>
std::uint64_t ReadArgument(const std::string& text);
template <>
std::string ReadArgument(const std::string& text);
template <>
std::vector<std::uint8_t> ReadArgument(const std::string& text);
template <>
ParameterValue ReadArgument(const std::string& text);

template <typename T>
struct IsOptional : std::false_type {};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type {};

/// Runs with the line's arguments; throws ShellRefusal.
using ShellOperation = std::function<ShellAnswer(const ShellLine&)>;

/// Operations by name.
class ShellOperations {
public:
    /// Adds an operation. `run` is any callable that returns a ShellAnswer; the types of its
    /// parameters define what the line must contain: integers, bool, std::string, bytes,
    /// ParameterValue, and at the end std::optional of these, or a single RestOfLine. The operation
    /// runs only if all arguments could be read and none is left over. `usage` names them for
    /// messages and help.
    template <typename Callable>
    void Add(const char* name, const char* usage, Callable run) {
        Bind(name, usage, std::move(run), &Callable::operator());
    }

    struct Entry {
        std::string usage;
        ShellOperation run;
    };
    const std::map<std::string, Entry>& All() const { return entries; }

private:
    // Calls with the values of a braced list, which is evaluated from left to right: the first bad
    // argument is the one reported.
    struct Invocation {
        template <typename Callable, typename... Values>
        explicit Invocation(const Callable& run, Values&&... values)
            : answer(run(std::forward<Values>(values)...)) {}

        ShellAnswer answer;
    };

    template <typename Callable, typename... Parameters>
    void Bind(const char* name, const char* usage, Callable run,
              ShellAnswer (Callable::*)(Parameters...) const) {
        Insert(name, usage, [run = std::move(run), usage](const ShellLine& line) {
            return Call<std::remove_cvref_t<Parameters>...>(
                run, line, usage, std::index_sequence_for<Parameters...>());
        });
    }

    template <typename... Parameters, typename Callable, std::size_t... kIndex>
    static ShellAnswer Call(const Callable& run, const ShellLine& line, const char* usage,
                            std::index_sequence<kIndex...>) {
        if constexpr ((std::is_same_v<Parameters, RestOfLine> || ...)) {
            return run(RestOfLine{line.Rest()});
        } else {
            constexpr std::size_t kMost = sizeof...(Parameters);
            constexpr std::size_t kLeast =
                kMost - (std::size_t{0} + ... + (IsOptional<Parameters>::value ? 1u : 0u));
            CheckArguments(line, usage, kLeast, kMost);
            return Invocation{run, Read<Parameters>(line.Arguments(), kIndex)...}.answer;
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

    void Insert(const char* name, const char* usage, ShellOperation run);
    static void CheckArguments(const ShellLine& line, const char* usage, std::size_t least,
                               std::size_t most);

    std::map<std::string, Entry> entries;
};
