// log_sink.cpp - the installed log sink
#include "mivora/log_sink.h"

#include <atomic>

namespace {

/// Hosts that install no sink get this one.
class DiscardingSink final : public ILogSink {
public:
    void Write(int /*level*/, const char* /*format*/, ...) override {}
    void WriteError(const char* /*text*/) override {}
};

// Constants and without destructors: static objects of a host may create and delete grabbers.
constinit DiscardingSink discardingSink;
constinit std::atomic<ILogSink*> installedSink{&discardingSink};

} // namespace

void MivoraInstallLogSink(ILogSink* sink) {
    installedSink = sink;
}

ILogSink* MivoraInstalledLogSink() {
    return installedSink;
}
