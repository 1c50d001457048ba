// format_spec.h - one conversion of a log format
#pragma once

/// How long the argument of a conversion is.
enum class ArgumentLength { kPlain, kChar, kShort, kLong, kLongLong, kInt32, kSize };

/// A conversion as written between its percent sign and its letter. A blank is no flag: the text
/// "% c" is far more often a slip in a message than a wish for a padded character.
struct FormatSpec {
    bool left = false;
    bool plus = false;
    bool alternate = false;
    bool zero = false;
    bool widthFromArgument = false;
    int width = 0;
    bool precisionFromArgument = false;
    int precision = -1; ///< -1: none given
    ArgumentLength length = ArgumentLength::kPlain;
    char conversion = '\0';
};

/// Reads the conversion that stands after a percent sign. Returns what follows it, or null when
/// the text is no conversion of the formatter.
const char* ParseFormatSpec(const char* text, FormatSpec& spec);
