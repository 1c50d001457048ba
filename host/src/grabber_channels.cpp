// grabber_channels.cpp - the list of command channels
#include "grabber_impl.h"

#include "copy_text.h"

CCmdChannel* CMivoraGrabber::Impl::ChannelAt(std::int32_t index) {
    if (index < 0) {
        return nullptr;
    }
    const platform::MutexLock lock(channelMutex);
    CCmdChannel* channel = firstChannel;
    for (; channel && index > 0; --index) {
        channel = channel->GetNext();
    }
    return channel;
}

CCmdChannel* CMivoraGrabber::Impl::TakeChannels() {
    const platform::MutexLock lock(channelMutex);
    CCmdChannel* const first = firstChannel;
    firstChannel = nullptr;
    actChannel = -1;
    return first;
}

std::uint32_t CMivoraGrabber::GetNumCmdChannels() {
    const platform::MutexLock lock(impl->channelMutex);
    std::uint32_t count = 0;
    for (const CCmdChannel* channel = impl->firstChannel; channel; channel = channel->GetNext()) {
        ++count;
    }
    return count;
}

MV_ERRCODE CMivoraGrabber::SetActCmdChannelIndex(std::int32_t index) {
    if (index != -1 && !impl->ChannelAt(index)) {
        return MV_NO_CHANNEL;
    }
    const platform::MutexLock lock(impl->channelMutex);
    impl->actChannel = index;
    return MV_OK;
}

CCmdChannel* CMivoraGrabber::GetFirstCmdChannel() {
    return impl->ChannelAt(0);
}

CCmdChannel* CMivoraGrabber::GetActCmdChannel() {
    return impl->ChannelAt(GetActCmdChannelIndex());
}

CCmdChannel* CMivoraGrabber::GetCmdChannel(std::int32_t index) {
    return impl->ChannelAt(index);
}

std::int32_t CMivoraGrabber::GetActCmdChannelIndex() {
    const platform::MutexLock lock(impl->channelMutex);
    return impl->actChannel;
}

MV_ERRCODE CMivoraGrabber::AddCmdChannel(CCmdChannel* channel) {
    if (!channel) {
        return MV_BAD_VALUE;
    }
    const platform::MutexLock lock(impl->channelMutex);
    CCmdChannel* last = nullptr;
    std::int32_t index = 0;
    for (CCmdChannel* node = impl->firstChannel; node; node = node->GetNext()) {
        if (node == channel) {
            return MV_BAD_VALUE;
        }
        last = node;
        ++index;
    }
    channel->SetNext(nullptr);
    if (last) {
        last->SetNext(channel);
    } else {
        impl->firstChannel = channel;
    }
    impl->actChannel = index;
    return MV_OK;
}

void CMivoraGrabber::DeleteCmdChannelList() {
    CCmdChannel* channel = impl->TakeChannels();
    while (channel) {
        CCmdChannel* const next = channel->GetNext();
        channel->Close();
        DeleteCmdChannel(channel);
        channel = next;
    }
}

void CMivoraGrabber::GetCmdChannelSection(std::int32_t index, char* buffer,
                                          std::uint32_t capacity) const {
    CopyText(SectionName::Channel(impl->sectionNumber, index).Text(), buffer, capacity);
}

MV_ERRCODE CMivoraGrabber::SelectCmdDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) {
    MV_DLG_EXITCODE exit = MV_DLG_CANCEL;
    CCmdChannel* const channel = GetActCmdChannel();
    MV_ERRCODE result = channel ? channel->ConfigDialog(parent, &exit) : MV_NO_CHANNEL;
    if (exitCode) {
        *exitCode = exit;
    }
    if (result == MV_OK && exit == MV_DLG_OK) {
        const SectionName section =
            SectionName::Channel(impl->sectionNumber, GetActCmdChannelIndex());
        result = channel->SetConfig(GetIni(), section.Text());
        if (result != MV_OK) {
            impl->NotSaved(section.Text(), GetIni());
        }
    }
    return result;
}

namespace {

// The result of a transfer without an active channel.
MV_ERRCODE NoChannel(std::uint64_t* count) {
    if (count) {
        *count = 0;
    }
    return MV_NO_CHANNEL;
}

} // namespace

MV_ERRCODE CMivoraGrabber::CMDOpen() {
    CCmdChannel* const channel = GetActCmdChannel();
    return channel ? channel->Open() : MV_NO_CHANNEL;
}

MV_ERRCODE CMivoraGrabber::CMDReadByte(std::uint8_t* buffer, std::uint64_t* count) {
    CCmdChannel* const channel = GetActCmdChannel();
    return channel ? channel->ReadByte(buffer, count) : NoChannel(count);
}

MV_ERRCODE CMivoraGrabber::CMDWriteByte(const std::uint8_t* buffer, std::uint64_t* count) {
    CCmdChannel* const channel = GetActCmdChannel();
    return channel ? channel->WriteByte(buffer, count) : NoChannel(count);
}

MV_ERRCODE CMivoraGrabber::CMDReadBuffer(std::uint8_t* buffer, std::uint64_t length,
                                         std::uint64_t* count) {
    CCmdChannel* const channel = GetActCmdChannel();
    return channel ? channel->ReadBuffer(buffer, length, count) : NoChannel(count);
}

MV_ERRCODE CMivoraGrabber::CMDWriteBuffer(const std::uint8_t* buffer, std::uint64_t length,
                                          std::uint64_t* count) {
    CCmdChannel* const channel = GetActCmdChannel();
    return channel ? channel->WriteBuffer(buffer, length, count) : NoChannel(count);
}

MV_ERRCODE CMivoraGrabber::CMDWriteCString(const char* text, std::uint64_t* count) {
    CCmdChannel* const channel = GetActCmdChannel();
    return channel ? channel->WriteCString(text, count) : NoChannel(count);
}

MV_ERRCODE CMivoraGrabber::CMDPurge(std::uint32_t flags) {
    CCmdChannel* const channel = GetActCmdChannel();
    return channel ? channel->Purge(flags) : MV_NO_CHANNEL;
}

MV_ERRCODE CMivoraGrabber::CMDClose() {
    CCmdChannel* const channel = GetActCmdChannel();
    return channel ? channel->Close() : MV_NO_CHANNEL;
}
