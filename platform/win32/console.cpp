// console.cpp - standard streams without translation of line ends
#include "platform/console.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <stdio.h>

#include <initializer_list>

namespace platform {

void PrepareStandardStreams() {
    for (FILE* stream : {stdin, stdout, stderr}) {
        _setmode(_fileno(stream), _O_BINARY);
    }
    SetConsoleCP(CP_UTF8);
    SetConsoleOutputCP(CP_UTF8);
}

} // namespace platform
