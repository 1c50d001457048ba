// fuzz_ini_file.cpp - reading and writing the host's ini files
#include "mivora/ini_file.h"
#include "platform/file_system.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Writing replaces the file by renaming another one, which requires a real directory.
class Directory {
public:
    ~Directory() { platform::RemoveDirectoryTree(path); }

    const std::string path = platform::CreateTemporaryDirectory("fuzz-ini");
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Directory directory;
    const std::string path = platform::JoinPath(directory.path, "fuzz.ini");
    const std::string content(reinterpret_cast<const char*>(data), size);
    if (!platform::ReplaceWholeFile(path, content)) {
        std::abort();
    }
    CIniFile ini;
    if (!ini.Open(path.c_str())) {
        return 0;
    }
    for (std::uint32_t index = 0; index < ini.GetNumSections(); ++index) {
        if (!ini.HasSection(ini.GetSectionName(index))) {
            std::abort(); // a listed section must be found
        }
    }
    if (!ini.WriteText("Fuzz section", "Fuzz key", "kept")) {
        std::abort();
    }
    CIniFile again;
    char value[8];
    if (!again.Open(path.c_str()) ||
        again.GetText("Fuzz section", "Fuzz key", "", value, sizeof(value)) != 4 ||
        std::strcmp(value, "kept") != 0) {
        std::abort(); // what was written must be read back
    }
    return 0;
}
