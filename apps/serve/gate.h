// gate.h - who may ask for what
#pragma once

#include "apps/serve/http_head.h"
#include "apps/serve/http_server.h"

#include <cstdint>
#include <optional>
#include <string>

struct GateSettings {
    std::uint32_t address = 0; ///< that is listened at; 127.0.0.1 is 0x7F000001
    std::uint16_t port = 0;
    std::string token; ///< empty: none is asked for, which is for this computer only
};

/// Refuses what does not come from this server's own page, or a program that means this server:
/// another site in the same browser can send requests here, too. Any thread.
class Gate {
public:
    explicit Gate(GateSettings gateSettings) : settings(std::move(gateSettings)) {}

    /// The answer of a request that is not to be done.
    std::optional<HttpAnswer> Refuse(const HttpHead& head) const;
    /// "http://127.0.0.1:8080/", with the token if there is one.
    std::string Url() const;

private:
    bool IsOwnHost(const std::string& host) const;
    bool HasToken(const HttpHead& head) const;
    std::string CookieName() const;

    const GateSettings settings;
};

/// 32 hexadecimal digits that nobody can guess.
std::string NewToken();
/// Takes the same time wherever the texts differ.
bool IsSameSecret(const std::string& left, const std::string& right);
/// Headers of all answers: nothing but this server's own scripts, styles and images runs or shows.
std::vector<std::pair<std::string, std::string>> SecurityHeaders();
