// sync_check_command.cpp - checks a feature synchronisation file
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/line_sink.h"
#include "apps/pyxen-tool/commands.h"
#include "mivora/log_sink.h"
#include "platform/printable_text.h"
#include "sync/feature_syncher.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

struct SyncCheckOptions {
    std::string file;
    bool json = false;
};

std::vector<JsonMember> Describe(const FeatureRef& reference) {
    return {{"module", reference.ModuleName}, {"feature", reference.FeatureName}};
}

void PrintJson(bool ok, const FeatureSyncher& syncher, const LineSink& sink) {
    std::vector<JsonValue> entries;
    for (const SyncFeatureEntry& entry : syncher.GetEntries()) {
        std::vector<JsonValue> dependencies;
        for (const FeatureRef& dependency : entry.Dependencies) {
            dependencies.push_back(JsonObject(Describe(dependency)));
        }
        std::vector<JsonMember> members = Describe(entry.watched);
        members.push_back({"dependencies", JsonArray(dependencies)});
        entries.push_back(JsonObject(members));
    }
    std::vector<JsonValue> log;
    for (const LogLine& line : sink.Lines()) {
        log.push_back(JsonObject({{"level", line.level}, {"text", line.text}}));
    }
    PrintReport({{"ok", ok}, {"entries", JsonArray(entries)}, {"log", JsonArray(log)}});
}

void PrintText(const LineSink& sink) {
    for (const LogLine& line : sink.Lines()) {
        std::printf("%d %s\n", line.level, platform::PrintableText(line.text).c_str());
    }
}

/// Locates the fault, because the reader does not log every one.
std::string FaultText(const std::string& file, const FeatureSyncher& syncher,
                      const LineSink& sink) {
    if (sink.Lines().front().level == kMvLogError) {
        return file + " cannot be read";
    }
    const std::vector<SyncFeatureEntry>& entries = syncher.GetEntries();
    if (entries.empty()) {
        return file + " has a fault; no entry of it is in use";
    }
    const FeatureRef& last = entries.back().watched;
    return file + " has a fault behind entry " + std::to_string(entries.size()) + " (" +
           last.ModuleName + "::" + last.FeatureName + "); the entries up to there are in use";
}

} // namespace

void AddSyncCheckCommand(CommandLine& program) {
    Command command = program.AddCommand(
        "sync-check", "Read a feature synchronisation file and say what is in it");
    command.ExcludesCameraOptions();
    const auto options = std::make_shared<SyncCheckOptions>();
    command.AddOption("FILE", options->file, "The file").Required();
    command.AddJson(options->json);
    command.SetFooter(
        "Prints the reader's log lines as LEVEL TEXT. Status 0 when the whole file is\n"
        "right, 1 when not; entries before a fault are in use all the same.\n"
        "\n"
        "Example:\n"
        "  pyxen-tool sync-check camera.sync --json\n");
    command.OnRun([options] {
        LineSink sink;
        FeatureSyncher syncher;
        const bool ok = syncher.Init(options->file.c_str(), &sink) == 1;
        if (options->json) {
            PrintJson(ok, syncher, sink);
        } else {
            PrintText(sink);
        }
        if (!ok) {
            std::fflush(stdout);
            throw CommandFailure(FaultText(options->file, syncher, sink));
        }
    });
}
