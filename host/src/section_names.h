// section_names.h - names of the sections in the ini files
#pragma once

#include <cstdint>

/// The name of a section, for CIniFile.
class SectionName {
public:
    /// "Grabber_N"
    static SectionName Grabber(std::int32_t grabber);
    /// "Camera_N"
    static SectionName Camera(std::int32_t camera);
    /// "Mode_N_M": mode M of the camera in section N
    static SectionName Mode(std::int32_t camera, std::uint32_t mode);
    /// "Channel_N_M": channel M of the grabber in section N
    static SectionName Channel(std::int32_t grabber, std::int32_t channel);

    const char* Text() const { return text; }

private:
    char text[40] = {};
};

/// The prefix of all camera section names.
inline constexpr const char* kCameraSectionPrefix = "Camera_";
