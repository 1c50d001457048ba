// companion.cpp - what one of the libraries needs beside it
#include <cstdint>

extern "C" std::int32_t BareSdkCompanion() {
    return 0;
}
