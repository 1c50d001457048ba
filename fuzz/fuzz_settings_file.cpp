// fuzz_settings_file.cpp - reading and writing the settings of a camera
#include "services/settings_file.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pyxen::SettingsFile file;
    std::string error;
    if (!pyxen::ReadSettingsText({reinterpret_cast<const char*>(data), size}, file, error)) {
        if (error.empty() || !(file == pyxen::SettingsFile())) {
            std::abort(); // a refused file says why and gives nothing
        }
        return 0;
    }
    for (const pyxen::StoredSetting& setting : file.settings) {
        if (!setting.value.CanBeWritten() ||
            !(pyxen::StoredValue::Of(setting.value.Get()) == setting.value)) {
            std::abort(); // what was read can be given to a feature
        }
    }
    const std::string written = pyxen::WriteSettingsText(file);
    pyxen::SettingsFile again;
    if (written.size() <= pyxen::kMostSettingsBytes &&
        (!pyxen::ReadSettingsText(written, again, error) || !(again == file) ||
         pyxen::WriteSettingsText(again) != written)) {
        std::abort(); // what was written is read back, and written as it was
    }
    return 0;
}
