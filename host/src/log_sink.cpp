// log_sink.cpp - the installed log sink
#include "mivora/log_sink.h"

#include <atomic>

namespace {

std::atomic<ILogSink*> installedSink{nullptr};

} // namespace

void MivoraInstallLogSink(ILogSink* sink) {
    installedSink = sink;
}

ILogSink* MivoraInstalledLogSink() {
    return installedSink;
}
