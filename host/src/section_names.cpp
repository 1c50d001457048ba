// section_names.cpp - names of the sections in the ini files
#include "section_names.h"

#include "copy_text.h"
#include "mivora/grabber.h"

#include <cstdio>

SectionName SectionName::Grabber(std::int32_t grabber) {
    SectionName name;
    std::snprintf(name.text, sizeof name.text, "Grabber_%d", grabber);
    return name;
}

SectionName SectionName::Camera(std::int32_t camera) {
    SectionName name;
    std::snprintf(name.text, sizeof name.text, "%s%d", kCameraSectionPrefix, camera);
    return name;
}

SectionName SectionName::Mode(std::int32_t camera, std::uint32_t mode) {
    SectionName name;
    std::snprintf(name.text, sizeof name.text, "Mode_%d_%u", camera, mode);
    return name;
}

SectionName SectionName::Channel(std::int32_t grabber, std::int32_t channel) {
    SectionName name;
    std::snprintf(name.text, sizeof name.text, "Channel_%d_%d", grabber, channel);
    return name;
}

void InitGrabberSectStr(char* buffer, std::uint32_t capacity, std::int32_t sectionNumber) {
    CopyText(SectionName::Grabber(sectionNumber).Text(), buffer, capacity);
}
