// plain_set.cpp - converters without any special instruction
#include "imaging/conversion/plain_converters.h"

namespace pyxen {

const ConverterSet kPlainConverters = {
    "plain",
    PlainUnpack10p,
    PlainUnpack12p,
    PlainUnpack10Packed,
    PlainUnpack12Packed,
    PlainConvertYUV422,
    PlainConvertYUV444,
    PlainConvertYUV411,
};

} // namespace pyxen
