// nonsense.h - answers that make no sense, in place of the scripted SDK's own
#pragma once

#include "pxnc/skeleton/text_pool.h"
#include "tests/scripted_sdk/scripted_model.h"

#include <cstdint>
#include <string>

namespace scripted {

/// `text` as the SDK hands it out: one of the pool, or null.
const char* Say(skeleton::TextPool& texts, const std::string& text);
/// The same for texts that are copied into the host's memory.
std::string Garble(const std::string& text);
/// The text that was garbled to `text`; the same one when it was not.
std::string Plain(const char* text);

/// What is reported in place of the number `count`, at each call for `entry`.
std::uint32_t Miscount(const std::string& entry, std::uint32_t count);

/// What is reported in place of a value, of limits and of an increment.
void Distort(std::int64_t& value);
void Distort(double& value);
void Distort(std::int64_t& min, std::int64_t& max);
void Distort(double& min, double& max);
void DistortIncrement(std::int64_t& increment);

} // namespace scripted
