// camera.cpp - a camera in a grabber's list
#include "mivora/camera.h"

#include "copy_text.h"

#include <atomic>
#include <cstdint>
#include <new>

// Atomic members may be read by other threads while the host's thread sets them.
struct CMivoraCamera::Impl {
    CMivoraCamera* next = nullptr;
    CMivoraCamera* prev = nullptr;
    char name[256] = {};
    std::atomic<std::uint32_t> uniqueId{0};
    std::atomic<std::uint32_t> qzrId{0};
    std::atomic<std::int32_t> sectionNumber{-1};
    std::atomic<std::uint32_t> camCntrlDlgIndex{0};
    CMivoraGfxMode* firstMode = nullptr;
    std::atomic<std::int32_t> actMode{-1};
};

CMivoraCamera::CMivoraCamera() : impl(new Impl) {}

CMivoraCamera::~CMivoraCamera() {
    DeleteGfxModes();
    delete impl;
}

CMivoraGfxMode* CMivoraCamera::CreateGfxMode() {
    return new (std::nothrow) CMivoraGfxMode;
}

const char* CMivoraCamera::GetExtraDescription() const {
    return "";
}

std::uint32_t CMivoraCamera::BuildGfxModeList(CMivoraGrabber* /*grabber*/) {
    if (!impl->firstMode) {
        AddGfxMode(CreateGfxMode());
    }
    return GetNumGfxModes();
}

void* CMivoraCamera::GetCameraRecord() {
    return nullptr;
}

CMivoraCamera* CMivoraCamera::GetNext() const {
    return impl->next;
}

CMivoraCamera* CMivoraCamera::GetPrev() const {
    return impl->prev;
}

void CMivoraCamera::SetNext(CMivoraCamera* node) {
    impl->next = node;
}

void CMivoraCamera::SetPrev(CMivoraCamera* node) {
    impl->prev = node;
}

const char* CMivoraCamera::GetCameraName() const {
    return impl->name;
}

void CMivoraCamera::SetCameraName(const char* name) {
    CopyText(name ? name : "", impl->name, sizeof impl->name);
}

std::uint32_t CMivoraCamera::GetCameraUniqueID() const {
    return impl->uniqueId;
}

void CMivoraCamera::SetCameraUniqueID(std::uint32_t id) {
    impl->uniqueId = id;
}

std::uint32_t CMivoraCamera::GetQZRCameraID() const {
    return impl->qzrId;
}

void CMivoraCamera::SetQZRCameraID(std::uint32_t id) {
    impl->qzrId = id;
}

std::int32_t CMivoraCamera::GetCameraSectionNum() const {
    return impl->sectionNumber;
}

void CMivoraCamera::SetCameraSectionNum(std::int32_t number) {
    impl->sectionNumber = number;
}

std::uint32_t CMivoraCamera::GetCamCntrlDlgIndex() const {
    return impl->camCntrlDlgIndex;
}

void CMivoraCamera::SetCamCntrlDlgIndex(std::uint32_t index) {
    impl->camCntrlDlgIndex = index;
}

std::uint32_t CMivoraCamera::GetNumGfxModes() const {
    std::uint32_t count = 0;
    for (const CMivoraGfxMode* mode = impl->firstMode; mode; mode = mode->GetNext()) {
        ++count;
    }
    return count;
}

CMivoraGfxMode* CMivoraCamera::GetFirstGfxMode() const {
    return impl->firstMode;
}

CMivoraGfxMode* CMivoraCamera::GetGfxMode(std::uint32_t index) const {
    CMivoraGfxMode* mode = impl->firstMode;
    for (; mode && index > 0; --index) {
        mode = mode->GetNext();
    }
    return mode;
}

void CMivoraCamera::AddGfxMode(CMivoraGfxMode* mode) {
    if (!mode) {
        return;
    }
    mode->SetNext(nullptr);
    if (!impl->firstMode) {
        impl->firstMode = mode;
        impl->actMode = 0;
        return;
    }
    CMivoraGfxMode* last = impl->firstMode;
    while (last->GetNext()) {
        last = last->GetNext();
    }
    last->SetNext(mode);
}

void CMivoraCamera::DeleteGfxModes() {
    impl->actMode = -1;
    CMivoraGfxMode* mode = impl->firstMode;
    impl->firstMode = nullptr;
    while (mode) {
        CMivoraGfxMode* const next = mode->GetNext();
        delete mode;
        mode = next;
    }
}

std::int32_t CMivoraCamera::GetActGfxModeIndex() const {
    return impl->actMode;
}

MV_ERRCODE CMivoraCamera::SetActGfxModeIndex(std::int32_t index) {
    if (index < -1 || (index >= 0 && !GetGfxMode(static_cast<std::uint32_t>(index)))) {
        return MV_BAD_VALUE;
    }
    impl->actMode = index;
    return MV_OK;
}

CMivoraGfxMode* CMivoraCamera::GetActGfxMode() const {
    const std::int32_t index = impl->actMode;
    return index < 0 ? nullptr : GetGfxMode(static_cast<std::uint32_t>(index));
}
