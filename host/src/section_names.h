// section_names.h - names of the sections in the ini files
#pragma once

#include <cstdint>

/// A section name, ready to hand to CIniFile.
class SectionName {
public:
    /// "Grabber_N"
    static SectionName Grabber(std::int32_t grabber);
    /// "Camera_N"
    static SectionName Camera(std::int32_t camera);
    /// "Mode_N_M": mode M of the camera with section N
    static SectionName Mode(std::int32_t camera, std::uint32_t mode);
    /// "Channel_N_M": channel M of the grabber with section N
    static SectionName Channel(std::int32_t grabber, std::int32_t channel);

    const char* Text() const { return text; }

private:
    char text[40] = {};
};

/// What the names of all camera sections begin with.
inline constexpr const char* kCameraSectionPrefix = "Camera_";
