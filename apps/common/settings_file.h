// settings_file.h - the content of a settings file, without a camera
#pragma once

#include <string>
#include <vector>

/// One feature of a settings file; texts as they are in the file.
struct FileSetting {
    std::string name;  ///< "Camera/Gain", with selectors "Camera/Gain[GainSelector=Red]"
    std::string value; ///< strings without their quotes
};

struct SettingsFile {
    std::string camera; ///< what the file says about the camera that it was saved from
    std::vector<FileSetting> settings;
};

/// Parses the text of a settings file. Throws CommandFailure, which names `path` and what is wrong.
SettingsFile ParseSettingsFile(const std::string& path, const std::string& text);
