// number_text.h - numbers to text and back, whole texts only and free of the locale
#pragma once

#include <cstdint>
#include <string>

namespace skeleton {

///@{
/// Reads a number: an integer is decimal or 0x-hexadecimal. False unless the whole text is one
/// number that fits.
bool ParseInt(const std::string& text, std::int64_t& value);
bool ParseFloat(const std::string& text, double& value);
///@}
/// "true"/"false", "1"/"0", "On"/"Off" without regard to case.
bool ParseBool(const std::string& text, bool& value);
/// The shortest text that reads back as the same double.
std::string FormatFloat(double value);
/// Upper-case hexadecimal without blanks.
std::string ToHex(const std::string& bytes);
/// Reads what ToHex writes, in upper or lower case. False for any other text.
bool FromHex(const std::string& text, std::string& bytes);

} // namespace skeleton
