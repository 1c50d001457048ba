// format_spec.h - a conversion specification of a log format
#pragma once

/// Size of a conversion's argument.
enum class ArgumentLength { kPlain, kChar, kShort, kLong, kLongLong, kInt32, kSize };

/// A conversion specification without its percent sign.
///
/// Compatibility: a space is not a flag. Log texts contain a percent sign before a word, as in
/// "Feature % cannot be written", which hosts expect to find unchanged in the log.
struct FormatSpec {
    bool left = false;
    bool plus = false;
    bool alternate = false;
    bool zero = false;
    bool widthFromArgument = false;
    int width = 0;
    bool precisionFromArgument = false;
    int precision = -1; ///< -1 if none is given
    ArgumentLength length = ArgumentLength::kPlain;
    char conversion = '\0';
};

/// Parses the conversion at `text`, which follows a percent sign. Returns the text after it, or
/// null if the formatter does not support the conversion.
const char* ParseFormatSpec(const char* text, FormatSpec& spec);
