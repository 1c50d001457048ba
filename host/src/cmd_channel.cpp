// cmd_channel.cpp - base class of the command channels
#include "mivora/cmd_channel.h"

#include "platform/sleep.h"

#include <atomic>
#include <cstdint>
#include <cstring>

struct CCmdChannel::Impl {
    std::atomic<bool> open{false};
    CCmdChannel* next = nullptr;
};

CCmdChannel::CCmdChannel() : impl(new Impl) {}

CCmdChannel::~CCmdChannel() {
    delete impl;
}

MV_ERRCODE CCmdChannel::SetConfig(CIniFile* ini, const char* section) {
    if (!ini || !section) {
        return MV_CONFIG_NOT_SAVED;
    }
    return ini->WriteText(section, "TYPE", GetChannelTypeName()) ? MV_OK : MV_CONFIG_NOT_SAVED;
}

// Compatibility: the key TYPE is not checked. LoadGrabberConfig has already chosen the channel by
// it, and a host that changes the channel type keeps the settings that both types share.
MV_ERRCODE CCmdChannel::GetConfig(CIniFile* ini, const char* section) {
    return ini && section ? MV_OK : MV_CONFIG_NOT_LOADED;
}

MV_ERRCODE CCmdChannel::WriteCString(const char* text, std::uint64_t* count) {
    if (!text) {
        if (count) {
            *count = 0;
        }
        return MV_BAD_VALUE;
    }
    return WriteBuffer(reinterpret_cast<const std::uint8_t*>(text), std::strlen(text), count);
}

MV_ERRCODE CCmdChannel::WriteBufferWithDelay(const std::uint8_t* buffer, std::uint64_t length,
                                             std::uint64_t* count, std::uint32_t delayMs) {
    std::uint64_t written = 0;
    MV_ERRCODE result = !buffer && length > 0 ? MV_BAD_VALUE : MV_OK;
    while (result == MV_OK && written < length) {
        if (written > 0 && delayMs > 0) {
            platform::SleepMs(delayMs);
        }
        std::uint64_t one = 0;
        result = WriteByte(buffer + written, &one);
        if (result == MV_OK) {
            ++written;
        }
    }
    if (count) {
        *count = written;
    }
    return result;
}

bool CCmdChannel::IsOpen() const {
    return impl->open;
}

void CCmdChannel::SetOpen(bool open) {
    impl->open = open;
}

CCmdChannel* CCmdChannel::GetNext() const {
    return impl->next;
}

void CCmdChannel::SetNext(CCmdChannel* node) {
    impl->next = node;
}
