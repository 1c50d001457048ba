// query.h - the parameters of a request
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// What stands behind the question mark of a target. All functions throw RequestFailure.
class Query {
public:
    /// Takes each of the names once at most, and no others.
    Query(std::string_view text, const std::vector<std::string>& names);
    Query() = default;

    bool Has(const std::string& name) const { return values.count(name) != 0; }
    const std::string& Text(const std::string& name) const;
    /// A whole number within the limits.
    std::uint32_t Number(const std::string& name, std::uint32_t least, std::uint32_t most) const;
    /// The same; `missing` when it is not there.
    std::uint32_t Number(const std::string& name, std::uint32_t least, std::uint32_t most,
                         std::uint32_t missing) const;
    /// A number within the limits; `missing` when it is not there.
    double Real(const std::string& name, double least, double most, double missing) const;

private:
    std::map<std::string, std::string> values;
};
