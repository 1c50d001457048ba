// shell_operation.cpp - operations of the shell and their arguments
#include "apps/common/shell_operation.h"

#include "apps/common/hex_bytes.h"
#include "apps/common/parse_number.h"

#include <limits>

namespace {

template <typename T, typename Number>
T RequireInRange(const std::optional<Number>& number, const std::string& text) {
    if (!number || *number < std::numeric_limits<T>::min() ||
        *number > std::numeric_limits<T>::max()) {
        throw ShellRefusal("\"" + text + "\" is no number in range");
    }
    return static_cast<T>(*number);
}

} // namespace

template <>
bool ReadArgument(const std::string& text) {
    if (text != "0" && text != "1") {
        throw ShellRefusal("\"" + text + "\" is neither 0 nor 1");
    }
    return text == "1";
}

template <>
std::int32_t ReadArgument(const std::string& text) {
    return RequireInRange<std::int32_t>(ParseSigned(text), text);
}

template <>
std::int64_t ReadArgument(const std::string& text) {
    return RequireInRange<std::int64_t>(ParseSigned(text), text);
}

template <>
std::uint32_t ReadArgument(const std::string& text) {
    return RequireInRange<std::uint32_t>(ParseUnsigned(text), text);
}

template <>
std::uint64_t ReadArgument(const std::string& text) {
    return RequireInRange<std::uint64_t>(ParseUnsigned(text), text);
}

template <>
std::string ReadArgument(const std::string& text) {
    return text;
}

template <>
std::vector<std::uint8_t> ReadArgument(const std::string& text) {
    auto bytes = ParseHex(text);
    if (!bytes) {
        throw ShellRefusal("\"" + text + "\" is no sequence of hexadecimal bytes");
    }
    return *std::move(bytes);
}

template <>
ParameterValue ReadArgument(const std::string& text) {
    if (const auto number = ParseUnsigned(text)) {
        return {*number};
    }
    const auto number = ParseSigned(text);
    if (!number) {
        throw ShellRefusal("\"" + text + "\" is no number");
    }
    return {static_cast<std::uint64_t>(*number)};
}

void ShellOperations::Insert(const char* name, const char* usage, ShellOperation run) {
    entries[name] = {usage, std::move(run)};
}

void ShellOperations::CheckArguments(const ShellLine& line, const char* usage, std::size_t least,
                                     std::size_t most) {
    if (!line.Error().empty()) {
        throw ShellRefusal(line.Error());
    }
    const std::size_t count = line.Arguments().size();
    if (count < least || count > most) {
        throw ShellRefusal(*usage ? std::string("expects ") + usage : "expects no arguments");
    }
}
