// row_text.h - the columns in a tree row's text
#pragma once

#include <string_view>
#include <vector>

namespace pyxen {

/// Cuts a row's text at its tab characters: the texts of the columns, at least one.
std::vector<std::wstring_view> SplitRow(std::wstring_view text);

} // namespace pyxen
