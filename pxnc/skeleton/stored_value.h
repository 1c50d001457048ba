// stored_value.h - a feature's value in a settings file
#pragma once

#include "pxnc.h"

#include <string>
#include <utility>
#include <vector>

namespace skeleton {

class Feature;

/// The value of a feature, and the states of its selectors that it belongs to.
struct StoredValue {
    std::string feature; ///< its name
    /// Names and states, outermost first.
    std::vector<std::pair<std::string, std::string>> selectors = {};
    std::string value = {}; ///< as ReadAsText has it
};

/// A feature's present value as text. PxnErrNotSupported for commands.
PxnError ReadAsText(Feature& feature, std::string& text);
/// Writes a value that ReadAsText has read. PxnErrInvalidValue when the text is none of the type.
PxnError WriteAsText(Feature& feature, const std::string& text);

} // namespace skeleton
