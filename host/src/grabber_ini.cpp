// grabber_ini.cpp - access to single values in a grabber's ini files
#include "grabber_impl.h"

#include "config_access.h"
#include "copy_text.h"
#include "guarded.h"
#include "platform/file_system.h"

#include <algorithm>

namespace {

constexpr std::size_t kMaxPathLength = 32768;

std::uint32_t ReadText(const CIniFile* file, const SectionName& section, const char* key,
                       const char* defaultValue, char* buffer, std::uint32_t capacity) {
    if (!file) {
        return CopyText(defaultValue ? defaultValue : "", buffer, capacity);
    }
    return file->GetText(section.Text(), key, defaultValue, buffer, capacity);
}

std::int32_t ReadInt32(const CIniFile* file, const SectionName& section, const char* key,
                       std::int32_t defaultValue) {
    return file ? file->GetInt32(section.Text(), key, defaultValue) : defaultValue;
}

// Without a camera or section number the name is "Camera_-1", which is never written.
SectionName CameraSection(const CMivoraCamera* camera) {
    return SectionName::Camera(camera ? camera->GetCameraSectionNum() : -1);
}

SectionName ActModeSection(const CMivoraCamera* camera) {
    const std::int32_t mode = camera ? camera->GetActGfxModeIndex() : -1;
    return mode < 0
               ? SectionName::Mode(-1, 0)
               : SectionName::Mode(camera->GetCameraSectionNum(), static_cast<std::uint32_t>(mode));
}

} // namespace

CIniFile* CMivoraGrabber::Impl::CameraIni() {
    if (hasCameraIni) {
        return &cameraIni;
    }
    return hasGrabberIni ? &grabberIni : nullptr;
}

MV_ERRCODE CMivoraGrabber::Impl::NotSaved(const char* what, const CIniFile* file) const {
    if (sink) {
        sink->Write(kMvLogError, "Mivora: Cannot save %s: %s", what,
                    file ? file->GetLastErrorText() : "the grabber has no ini file");
    }
    return MV_CONFIG_NOT_SAVED;
}

MV_ERRCODE CMivoraGrabber::SetGrabberIni(const char* path, std::int32_t sectionNumber) {
    if (!path || *path == '\0' || sectionNumber < 0) {
        return MV_BAD_VALUE;
    }
    return Guarded(MV_REFUSED, [&] {
        std::string directory = platform::DirectoryOf(path);
        if (!impl->grabberIni.Open(path)) {
            if (impl->sink) {
                impl->sink->Write(kMvLogError, "Mivora: SetGrabberIni: %s",
                                  impl->grabberIni.GetLastErrorText());
            }
            return MV_CONFIG_NOT_LOADED;
        }
        impl->configDirectory = std::move(directory);
        impl->sectionNumber = sectionNumber;
        impl->hasGrabberIni = true;
        return MV_OK;
    });
}

MV_ERRCODE CMivoraGrabber::SetCameraIni(const char* path) {
    if (!path || *path == '\0') {
        return MV_BAD_VALUE;
    }
    return Guarded(MV_REFUSED, [&] {
        // The same file is not opened twice: neither object would see the other one's writes.
        if (impl->hasGrabberIni &&
            platform::FullPath(path, kMaxPathLength) ==
                platform::FullPath(impl->grabberIni.GetPath(), kMaxPathLength)) {
            impl->hasCameraIni = false;
            return MV_OK;
        }
        if (!impl->cameraIni.Open(path)) {
            if (impl->sink) {
                impl->sink->Write(kMvLogError, "Mivora: SetCameraIni: %s",
                                  impl->cameraIni.GetLastErrorText());
            }
            return MV_CONFIG_NOT_LOADED;
        }
        impl->hasCameraIni = true;
        return MV_OK;
    });
}

std::int32_t CMivoraGrabber::GetCamSpecInt32(CMivoraCamera* camera, const char* key,
                                             std::int32_t defaultValue) {
    return ReadInt32(impl->CameraIni(), CameraSection(camera), key, defaultValue);
}

std::uint32_t CMivoraGrabber::GetCamSpecString(CMivoraCamera* camera, const char* key,
                                               const char* defaultValue, char* buffer,
                                               std::uint32_t capacity) {
    return ReadText(impl->CameraIni(), CameraSection(camera), key, defaultValue, buffer, capacity);
}

std::int32_t CMivoraGrabber::GetModeSpecInt32(CMivoraCamera* camera, std::uint32_t modeIndex,
                                              const char* key, std::int32_t defaultValue) {
    const std::int32_t section = camera ? camera->GetCameraSectionNum() : -1;
    return ReadInt32(impl->CameraIni(), SectionName::Mode(section, modeIndex), key, defaultValue);
}

std::int32_t CMivoraGrabber::GetGrabberInt32(const char* key, std::int32_t defaultValue) {
    return ReadInt32(GetIni(), impl->GrabberSection(), key, defaultValue);
}

std::uint32_t CMivoraGrabber::GetGrabberString(const char* key, const char* defaultValue,
                                               char* buffer, std::uint32_t capacity) {
    return ReadText(GetIni(), impl->GrabberSection(), key, defaultValue, buffer, capacity);
}

std::int32_t CMivoraGrabber::GetActCamSpecInt32(const char* key, std::int32_t defaultValue) {
    return GetCamSpecInt32(GetActCamera(), key, defaultValue);
}

std::uint32_t CMivoraGrabber::GetActCamSpecString(const char* key, const char* defaultValue,
                                                  char* buffer, std::uint32_t capacity) {
    return GetCamSpecString(GetActCamera(), key, defaultValue, buffer, capacity);
}

std::int32_t CMivoraGrabber::GetActModeSpecInt32(const char* key, std::int32_t defaultValue) {
    return ReadInt32(impl->CameraIni(), ActModeSection(GetActCamera()), key, defaultValue);
}

std::uint32_t CMivoraGrabber::GetActModeSpecString(const char* key, const char* defaultValue,
                                                   char* buffer, std::uint32_t capacity) {
    return ReadText(impl->CameraIni(), ActModeSection(GetActCamera()), key, defaultValue, buffer,
                    capacity);
}

MV_ERRCODE CMivoraGrabber::SaveGrabberInt32(const char* key, std::int32_t value) {
    CIniFile* const ini = GetIni();
    const bool saved = ini && ini->WriteInt32(impl->GrabberSection().Text(), key, value);
    return saved ? MV_OK : impl->NotSaved(key, ini);
}

MV_ERRCODE CMivoraGrabber::SaveGrabberHex32(const char* key, std::uint32_t value) {
    CIniFile* const ini = GetIni();
    const bool saved = ini && ini->WriteHex32(impl->GrabberSection().Text(), key, value);
    return saved ? MV_OK : impl->NotSaved(key, ini);
}

MV_ERRCODE CMivoraGrabber::SaveGrabberString(const char* key, const char* value) {
    CIniFile* const ini = GetIni();
    const bool saved = ini && ini->WriteText(impl->GrabberSection().Text(), key, value);
    return saved ? MV_OK : impl->NotSaved(key, ini);
}

std::int32_t CMivoraGrabber::GetBiggestSectionNum(const char* prefix) {
    const CIniFile* const ini = impl->CameraIni();
    if (!ini || !prefix) {
        return -1;
    }
    std::int32_t biggest = -1;
    for (std::uint32_t i = 0; const char* const name = ini->GetSectionName(i); ++i) {
        biggest = std::max(biggest, SectionNumber(name, prefix).value_or(-1));
    }
    return biggest;
}

CIniFile* CMivoraGrabber::GetIni() const {
    return impl->hasGrabberIni ? &impl->grabberIni : nullptr;
}

std::int32_t CMivoraGrabber::GetSectionNumber() const {
    return impl->sectionNumber;
}

const char* CMivoraGrabber::GetConfigDirectory() const {
    return impl->configDirectory.c_str();
}
