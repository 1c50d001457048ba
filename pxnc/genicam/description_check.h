// description_check.h - whether a camera's GenICam description can be evaluated
#pragma once

#include "pxnc.h"

#include <arv.h>

#include <cstdint>
#include <string_view>

namespace genicam {

/// The longest register in bytes.
inline constexpr std::int64_t kLongestRegister = 1 << 24;

/// PxnErrXml for a description whose values depend on one another in circles, through too many
/// steps, or in so many ways that a single value would take minutes, and for one with a register of
/// negative or enormous length. Aravis follows every reference without counting and allocates
/// whatever it reads: such a description would end the process or stop it. Evaluates nothing.
/// `text` is the description's XML.
PxnError CheckDescription(ArvGc* description, std::string_view text);

} // namespace genicam
