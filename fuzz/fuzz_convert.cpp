// fuzz_convert.cpp - pyxen-tool convert on dumps of any content, format and size
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/raw_dump.h"
#include "fuzz/fuzz_file.h"
#include "platform/file_system.h"

#include <lodepng.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

class Directory {
public:
    ~Directory() { platform::RemoveDirectoryTree(path); }

    const std::string path = platform::CreateTemporaryDirectory("fuzz-convert");
};

int RunConvert(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    CommandLine program("fuzzed", "pyxen-tool");
    AppOptions options; // which the command refuses
    AddAppOptions(program, options);
    AddConvertCommand(program);
    return program.Run(static_cast<int>(pointers.size()), pointers.data());
}

/// The written file is the whole image.
void CheckOutput(const std::string& path, const PixelFormat& format, std::uint32_t width,
                 std::uint32_t height) {
    std::string written;
    if (!platform::ReadWholeFile(path, written)) {
        std::abort();
    }
    if (path.ends_with(".raw") && written.size() != HostLayout(format, width, height).Size()) {
        std::abort();
    }
    if (path.ends_with(".png")) {
        std::vector<unsigned char> pixels;
        unsigned shownWidth = 0;
        unsigned shownHeight = 0;
        if (lodepng::decode(pixels, shownWidth, shownHeight,
                            reinterpret_cast<const unsigned char*>(written.data()),
                            written.size()) != 0 ||
            shownWidth != width || shownHeight != height) {
            std::abort();
        }
    }
}

} // namespace

// A line with format, width, height and the output's name, then the dump.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Directory directory;
    const auto* const end = std::find(data, data + size, '\n');
    std::istringstream words(std::string(data, end));
    std::string format;
    std::string width;
    std::string height;
    std::string name;
    words >> format >> width >> height >> name;
    std::replace(name.begin(), name.end(), '/', '_');
    const std::string output = platform::JoinPath(directory.path, name);
    const auto dumpSize =
        static_cast<std::size_t>(std::max<std::ptrdiff_t>(data + size - end - 1, 0));
    const FuzzFile dump(data + size - dumpSize, dumpSize);
    const int status = RunConvert({"pyxen-tool", "convert", "--format", format, "--width", width,
                                   "--height", height, dump.Path(), output});
    if (status == 0) {
        const PixelFormat* const known = FindPixelFormatByName(format.c_str());
        const auto columns = static_cast<std::uint32_t>(std::strtoul(width.c_str(), nullptr, 0));
        const auto lines = static_cast<std::uint32_t>(std::strtoul(height.c_str(), nullptr, 0));
        if (!known || RawImageSize(*known, columns, lines) != dumpSize) {
            std::abort(); // every other length must be refused
        }
        CheckOutput(output, *known, columns, lines);
    }
    std::remove(output.c_str());
    std::remove((output + ".json").c_str()); // of a raw image
    return 0;
}
