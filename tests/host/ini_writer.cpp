// ini_writer.cpp - a process that writes keys to an ini file, for the tests of several processes
#include "mivora/ini_file.h"

#include <cstdio>
#include <cstdlib>
#include <string>

/// ini_writer FILE SECTION KEY COUNT: opens the file, waits for a line on standard input, writes
/// the keys KEY0 to KEY(COUNT - 1), each by itself and with its number as value, and prints the
/// number of each key that the file has. Ends with status 1 at the first write that fails.
int main(int argc, char** argv) {
    CIniFile ini;
    if (argc != 5 || !ini.Open(argv[1])) {
        std::fprintf(stderr, "%s\n", argc == 5 ? ini.GetLastErrorText() : "wrong arguments");
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    std::getchar();
    const int count = std::atoi(argv[4]);
    for (int i = 0; i < count; ++i) {
        if (!ini.WriteInt32(argv[2], (argv[3] + std::to_string(i)).c_str(), i)) {
            std::fprintf(stderr, "%s\n", ini.GetLastErrorText());
            return 1;
        }
        std::printf("%d\n", i);
        std::fflush(stdout);
    }
    return 0;
}
