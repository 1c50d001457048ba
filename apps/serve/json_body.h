// json_body.h - the JSON that requests bring
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Parses an object whose members are among those named. Throws RequestFailure, which says where
/// the text is wrong; also for one that is nested more than 32 times.
nlohmann::json ParseJsonBody(std::string_view text, const std::vector<std::string>& members);

/// A member that has to be there. Throw RequestFailure.
std::string TextMember(const nlohmann::json& body, const char* name);
std::uint64_t NumberMember(const nlohmann::json& body, const char* name, std::uint64_t least,
                           std::uint64_t most);
