// serial_settings.cpp - line settings of the host's serial channel
#include "serial_settings.h"

#include "parse_number.h"
#include "platform/text.h"

using platform::SerialParity;
using platform::SerialStopBits;

const char* ParityText(SerialParity parity) {
    switch (parity) {
    case SerialParity::kOdd:
        return "Odd";
    case SerialParity::kEven:
        return "Even";
    case SerialParity::kNone:
        break;
    }
    return "No";
}

SerialParity ParseParity(const std::string& text) {
    for (const SerialParity parity : {SerialParity::kOdd, SerialParity::kEven}) {
        if (platform::CompareNoCase(text.c_str(), ParityText(parity)) == 0) {
            return parity;
        }
    }
    return SerialParity::kNone;
}

const char* StopBitsText(SerialStopBits stopBits) {
    switch (stopBits) {
    case SerialStopBits::kOneAndHalf:
        return "1.5";
    case SerialStopBits::kTwo:
        return "2";
    case SerialStopBits::kOne:
        break;
    }
    return "1";
}

SerialStopBits ParseStopBits(const std::string& text) {
    for (const SerialStopBits bits : {SerialStopBits::kOneAndHalf, SerialStopBits::kTwo}) {
        if (text == StopBitsText(bits)) {
            return bits;
        }
    }
    return SerialStopBits::kOne;
}

std::uint32_t ParseByteSize(const std::string& text) {
    const std::uint32_t bits = ParseUint32(text).value_or(kMaxByteSize);
    return bits >= kMinByteSize && bits <= kMaxByteSize ? bits : kMaxByteSize;
}
