// log_format_test.cpp - conversions of the log formatter
#include "mivora/log_sink.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

namespace {

std::string Format(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    char buffer[4096];
    const std::size_t length = MivoraFormatLogText(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    EXPECT_EQ(length, std::string(buffer).size());
    return buffer;
}

std::size_t FormatTo(char* buffer, std::size_t capacity, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::size_t length = MivoraFormatLogText(buffer, capacity, format, arguments);
    va_end(arguments);
    return length;
}

TEST(LogFormat, WritesPlainTextUnchanged) {
    EXPECT_EQ(Format(""), "");
    EXPECT_EQ(Format("CMivoraKVNPyxenClass::Init"), "CMivoraKVNPyxenClass::Init");
    EXPECT_EQ(Format(nullptr), "(null)");
}

TEST(LogFormat, WritesADoubledPercentSignOnce) {
    EXPECT_EQ(Format("%%"), "%");
    EXPECT_EQ(Format("100%% of %d%%", 5), "100% of 5%");
}

TEST(LogFormat, LeavesAPercentSignBeforeASpaceUnchanged) {
    EXPECT_EQ(Format("CheckSync: Feature % cannot be written"),
              "CheckSync: Feature % cannot be written");
    EXPECT_EQ(Format("% d %d", 7), "% d 7");
}

TEST(LogFormat, LeavesUnknownConversionsUnchanged) {
    EXPECT_EQ(Format("%y %d", 1), "%y 1");
    EXPECT_EQ(Format("%n %d", 2), "%n 2");
    EXPECT_EQ(Format("%*y %d", 3), "%*y 3");
    EXPECT_EQ(Format("%.*k %d", 4), "%.*k 4");
    EXPECT_EQ(Format("%Lf %d", 5), "%Lf 5");
    EXPECT_EQ(Format("%hhs %d", 6), "%hhs 6");
    EXPECT_EQ(Format("%lp %d", 7), "%lp 7");
    EXPECT_EQ(Format("%I16d %d", 8), "%I16d 8");
    EXPECT_EQ(Format("%5% %d", 9), "%5% 9");
}

TEST(LogFormat, LeavesAnIncompleteConversionUnchanged) {
    EXPECT_EQ(Format("%"), "%");
    EXPECT_EQ(Format("100%"), "100%");
    EXPECT_EQ(Format("%-08.3l"), "%-08.3l");
    EXPECT_EQ(Format("%*."), "%*.");
}

TEST(LogFormat, ConvertsSignedNumbersOfEveryLength) {
    EXPECT_EQ(Format("%d %i", 0, -1), "0 -1");
    EXPECT_EQ(Format("%d %d", INT_MAX, INT_MIN), "2147483647 -2147483648");
    EXPECT_EQ(Format("%hhd %hhd", 127, 255), "127 -1");
    EXPECT_EQ(Format("%hd %hd", 32767, 65535), "32767 -1");
    EXPECT_EQ(Format("%ld", LONG_MIN), std::to_string(LONG_MIN));
    EXPECT_EQ(Format("%lld", LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(Format("%I64d %I64i", LLONG_MAX, -5LL), "9223372036854775807 -5");
    EXPECT_EQ(Format("%I32d", -3), "-3");
    EXPECT_EQ(Format("%zd", static_cast<std::ptrdiff_t>(-7)), "-7");
}

TEST(LogFormat, ConvertsUnsignedNumbersOfEveryLength) {
    EXPECT_EQ(Format("%u %u", 0u, UINT_MAX), "0 4294967295");
    EXPECT_EQ(Format("%hhu %hu", 511u, 65537u), "255 1");
    EXPECT_EQ(Format("%lu", ULONG_MAX), std::to_string(ULONG_MAX));
    EXPECT_EQ(Format("%I64u %llu", ULLONG_MAX, 1ULL), "18446744073709551615 1");
    EXPECT_EQ(Format("%I32u %zu", 9u, static_cast<std::size_t>(10)), "9 10");
}

TEST(LogFormat, ConvertsHexadecimalNumbers) {
    EXPECT_EQ(Format("%x %X", 0xabcu, 0xABCu), "abc ABC");
    EXPECT_EQ(Format("%08X", 0x1080001u), "01080001");
    EXPECT_EQ(Format("%#x %#X %#x", 255u, 255u, 0u), "0xff 0XFF 0");
    EXPECT_EQ(Format("%I64x", 0xFEDCBA9876543210ULL), "fedcba9876543210");
    EXPECT_EQ(Format("%#010x|%#.4x", 0x12u, 0x12u), "0x00000012|0x0012");
}

TEST(LogFormat, AppliesFlagsWidthAndPrecision) {
    EXPECT_EQ(Format("[%5d][%-5d][%05d][%+d][%+d]", 42, 42, 42, 42, -42),
              "[   42][42   ][00042][+42][-42]");
    EXPECT_EQ(Format("[%05d][%-05d][%+05d]", -42, -42, 42), "[-0042][-42  ][+0042]");
    EXPECT_EQ(Format("[%.4d][%8.4d][%08.4d][%-8.4d]", 42, 42, 42, -42),
              "[0042][    0042][    0042][-0042   ]");
    EXPECT_EQ(Format("[%.0d][%.0d][%5.0u]", 0, 1, 0u), "[][1][     ]");
    EXPECT_EQ(Format("[%2d][%.1d]", 12345, 678), "[12345][678]");
}

TEST(LogFormat, TakesWidthAndPrecisionFromArguments) {
    EXPECT_EQ(Format("[%*d][%*d]", 5, 42, -5, 42), "[   42][42   ]");
    EXPECT_EQ(Format("[%.*d][%.*d]", 4, 42, -4, 42), "[0042][42]");
    EXPECT_EQ(Format("[%*.*s]", 6, 2, "abc"), "[    ab]");
    EXPECT_EQ(Format("[%-*s]", -4, "ab"), "[ab  ]");
}

TEST(LogFormat, ConvertsTexts) {
    EXPECT_EQ(Format("%s%s", "a", ""), "a");
    EXPECT_EQ(Format("%hs", "narrow"), "narrow");
    EXPECT_EQ(Format("[%5s][%-5s][%.2s][%5.1s]", "abc", "abc", "abc", "abc"),
              "[  abc][abc  ][ab][    a]");
    EXPECT_EQ(
        Format("[%s][%.3s]", static_cast<const char*>(nullptr), static_cast<const char*>(nullptr)),
        "[(null)][(nu]");
}

TEST(LogFormat, ReadsNoMoreOfATextThanThePrecisionAllows) {
    const char unterminated[3] = {'x', 'y', 'z'};
    EXPECT_EQ(Format("%.3s|%.0s|", unterminated, unterminated), "xyz||");
}

TEST(LogFormat, ConvertsWideTextsToUtf8) {
    EXPECT_EQ(Format("[%ls][%6ls][%-6ls]", L"a\u00FC\u20AC", L"\u20AC", L"\u20AC"),
              "[a\xC3\xBC\xE2\x82\xAC][   \xE2\x82\xAC][\xE2\x82\xAC   ]");
    EXPECT_EQ(Format("%ls", L"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Format("[%.4ls]", L"\u20AC\u20AC"), "[\xE2\x82\xAC]");
    EXPECT_EQ(Format("%ls", static_cast<const wchar_t*>(nullptr)), "(null)");
    const wchar_t loneSurrogate[] = {static_cast<wchar_t>(0xD800), L'x', L'\0'};
    EXPECT_EQ(Format("%ls", loneSurrogate), "\xEF\xBF\xBDx");
}

TEST(LogFormat, ConvertsCharacters) {
    EXPECT_EQ(Format("%c%c[%3c][%-3c]", 'a', 0xE9, 'b', 'c'), "a\xE9[  b][c  ]");
    EXPECT_EQ(Format("%lc", L'\u00FC'), "\xC3\xBC");
    char buffer[8];
    EXPECT_EQ(FormatTo(buffer, sizeof buffer, "%c", 0), 1u);
    EXPECT_EQ(buffer[0], '\0');
}

TEST(LogFormat, ConvertsPointersToSixteenDigits) {
    EXPECT_EQ(Format("0x%p", reinterpret_cast<void*>(std::uintptr_t{0xABCDEF})),
              "0x0000000000ABCDEF");
    EXPECT_EQ(Format("%p", static_cast<void*>(nullptr)), "0000000000000000");
    EXPECT_EQ(Format("[%18p][%-18p]", static_cast<void*>(nullptr), static_cast<void*>(nullptr)),
              "[  0000000000000000][0000000000000000  ]");
}

TEST(LogFormat, ConvertsFixedNumbers) {
    EXPECT_EQ(Format("%f %lf", 1.5, -0.25), "1.500000 -0.250000");
    EXPECT_EQ(Format("%.0f %.1f %.3f", 2.5, 0.05, 1e-4), "2 0.1 0.000");
    EXPECT_EQ(Format("%#.0f", 3.0), "3.");
    EXPECT_EQ(Format("[%9.2f][%-9.2f][%09.2f][%+.1f]", 3.14159, 3.14159, -3.14159, 1.0),
              "[     3.14][3.14     ][-00003.14][+1.0]");
    EXPECT_EQ(Format("%f", -0.0), "-0.000000");
}

TEST(LogFormat, ConvertsScientificAndGeneralNumbers) {
    EXPECT_EQ(Format("%e %.2e %.0e %#.0e", 12345.678, 0.00012, 5e10, 5e10),
              "1.234568e+04 1.20e-04 5e+10 5.e+10");
    EXPECT_EQ(Format("%e", 1e-300), "1.000000e-300");
    EXPECT_EQ(Format("%g %g %g %g", 100000.0, 1000000.0, 0.0001, 0.00001),
              "100000 1e+06 0.0001 1e-05");
    EXPECT_EQ(Format("%g %g %.3g %.0g", 0.0, 1.5, 1234.5, 0.37), "0 1.5 1.23e+03 0.4");
    EXPECT_EQ(Format("%#g %#.3g", 1.5, 100.0), "1.50000 100.");
    EXPECT_EQ(Format("%.2g", 9.99), "10");
}

TEST(LogFormat, ConvertsInfinityAndNaN) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Format("[%f][%5g][%-5e][%05f]", infinity, -infinity, infinity, infinity),
              "[inf][ -inf][inf  ][  inf]");
    EXPECT_EQ(Format("[%f][%+.1f]", std::fabs(std::nan("")), std::fabs(std::nan(""))),
              "[nan][+nan]");
}

TEST(LogFormat, ConvertsTheLargestNumbersAndManyDecimals) {
    char expected[2048];
    std::snprintf(expected, sizeof expected, "%.3f", DBL_MAX);
    EXPECT_EQ(Format("%.3f", DBL_MAX), expected);
    const std::string many = Format("%.1200f", 0.5);
    EXPECT_EQ(many, "0.5" + std::string(1199, '0'));
    const double tiny = std::numeric_limits<double>::denorm_min();
    std::snprintf(expected, sizeof expected, "%.1074f", tiny);
    EXPECT_EQ(Format("%.1074f", tiny), expected);
    EXPECT_EQ(Format("%.1100e", 1.0), "1." + std::string(1100, '0') + "e+00");
    EXPECT_EQ(Format("%.2000g", 0.5), "0.5");
}

TEST(LogFormat, AgreesWithPrintfOnFloatingPoint) {
    const double values[] = {0.0,     1.0,    -1.0,    0.1,      1.0 / 3, 2.5,      1e15,
                             1.5e-10, 123456, 9999995, 99999.25, 1e100,   4.9e-324, 6.02214e23};
    const char* const formats[] = {"%f",    "%.0f",  "%.3f",  "%12.4f",  "%-12.1f", "%+f",
                                   "%e",    "%.0e",  "%.10e", "%014.3e", "%g",      "%.0g",
                                   "%.1g",  "%.17g", "%#g",   "%#.5g",   "%+12g",   "%-12.3g",
                                   "%012g", "%#.0f", "%#.0e"};
    for (const char* const format : formats) {
        for (const double value : values) {
            char expected[512];
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#endif
            std::snprintf(expected, sizeof expected, format, value);
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
            EXPECT_EQ(Format(format, value), expected) << format;
        }
    }
}

TEST(LogFormat, WritesADecimalPointInEveryLocale) {
    const std::string former = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* const name : {"de_DE.UTF-8", "de_DE", "German"}) {
        if (std::setlocale(LC_NUMERIC, name)) {
            break;
        }
    }
    EXPECT_EQ(Format("%.2f %g", 1.25, 0.5), "1.25 0.5");
    std::setlocale(LC_NUMERIC, former.c_str());
}

TEST(LogFormat, TruncatesAndCountsLikePrintf) {
    char buffer[8];
    EXPECT_EQ(FormatTo(buffer, sizeof buffer, "%s", "1234567"), 7u);
    EXPECT_STREQ(buffer, "1234567");
    EXPECT_EQ(FormatTo(buffer, sizeof buffer, "%s", "123456789"), 9u);
    EXPECT_STREQ(buffer, "1234567");
    EXPECT_EQ(FormatTo(buffer, 1, "%d", 12), 2u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(FormatTo(nullptr, 0, "%d-%d", 12, 34), 5u);
    buffer[0] = 'x';
    EXPECT_EQ(FormatTo(buffer, 0, "%d", 12), 2u);
    EXPECT_EQ(buffer[0], 'x');
}

TEST(LogFormat, CountsEnormousWidthsWithoutWritingThem) {
    char buffer[4];
    EXPECT_EQ(FormatTo(buffer, sizeof buffer, "%2147483647d", 1), 2147483647u);
    EXPECT_STREQ(buffer, "   ");
    EXPECT_EQ(FormatTo(buffer, sizeof buffer, "%99999999999d", 1), 2147483647u);
    EXPECT_EQ(FormatTo(buffer, sizeof buffer, "%*d", INT_MIN, 1), 2147483647u);
    EXPECT_STREQ(buffer, "1  ");
}

TEST(LogFormat, LeavesTheCallersArgumentsUnchanged) {
    const auto twice = [](const char* format, ...) {
        std::va_list arguments;
        va_start(arguments, format);
        char first[32];
        char second[32];
        MivoraFormatLogText(first, sizeof first, format, arguments);
        MivoraFormatLogText(second, sizeof second, format, arguments);
        va_end(arguments);
        return std::string(first) + second;
    };
    EXPECT_EQ(twice("%d,%s;", 1, "x"), "1,x;1,x;");
}

} // namespace
