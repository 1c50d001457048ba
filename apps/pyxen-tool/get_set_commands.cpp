// get_set_commands.cpp - reads and writes one feature
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/session.h"
#include "apps/pyxen-tool/commands.h"
#include "apps/pyxen-tool/feature_access.h"
#include "apps/pyxen-tool/feature_write.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/printable_text.h"

#include <cstdio>
#include <deque>
#include <memory>
#include <optional>
#include <string>

using namespace pyxen;

namespace {

/// Works like the feature control dialog: checks all features involved, writes, synchronises and
/// reads back.
void Set(Session& session, CMivoraKVNPyxenClass& grabber, const std::string& path,
         const std::optional<std::string>& text) {
    const FeatureAccess feature = FeatureAccess::Find(grabber, path);
    if (feature.Get().Type() == FeatureType::kCommand && !text) {
        RunFeatureCommand(feature);
        std::printf("%s was executed\n", platform::PrintableText(feature.Path()).c_str());
        return;
    }
    if (!text) {
        throw MissingArgument("VALUE");
    }
    WriteFeatureValue(grabber.Sync(), feature, ParseFeatureValue(feature, *text), *text);
    session.Log().TakeErrors();
    if (grabber.Sync().SyncDependentFeatures(&feature.Cache(), feature.Info().name, true) != 1) {
        const std::deque<std::string> reasons = session.Log().TakeErrors();
        throw CommandFailure(feature.Path() +
                                 " was written, but not all features that depend on it followed",
                             {reasons.begin(), reasons.end()});
    }
    std::printf("%s\n", platform::PrintableText(feature.ValueText()).c_str());
}

} // namespace

void AddGetCommand(CommandLine& program, const AppOptions& options, LinkedMaker& maker) {
    Command command = program.AddCommand("get", "Print the value of one feature");
    const auto path = std::make_shared<std::string>();
    command.AddOption("FEATURE", *path, "Module and feature, as in Camera/Width")
        .Required()
        .TypeName("MODULE/FEATURE");
    command.SetFooter("Example:\n  pyxen-tool get Camera/ExposureTime\n");
    command.OnRun([&options, &maker, path] {
        Session session(options, maker);
        session.OpenCamera();
        std::printf("%s\n",
                    platform::PrintableText(FeatureAccess::Find(maker.Grabber(), *path).ValueText())
                        .c_str());
    });
}

void AddSetCommand(CommandLine& program, const AppOptions& options, LinkedMaker& maker) {
    Command command = program.AddCommand("set", "Write one feature, and those that depend on it");
    const auto path = std::make_shared<std::string>();
    const auto value = std::make_shared<std::optional<std::string>>();
    command.AddOption("FEATURE", *path, "Module and feature, as in Camera/Width")
        .Required()
        .TypeName("MODULE/FEATURE");
    command.AddOption("VALUE", *value,
                      "Number, text, name of an entry, true or false; none for a command");
    command.SetFooter(
        "Before the write it is checked whether the feature and all features that depend on\n"
        "it by the feature synchronisation file can take the value; what refuses is named.\n"
        "Prints the value that the feature has then.\n"
        "\n"
        "Examples:\n"
        "  pyxen-tool set Camera/Width 640\n"
        "  pyxen-tool set Camera/PixelFormat Mono12p\n"
        "  pyxen-tool set Camera/AcquisitionStop\n");
    command.OnRun([&options, &maker, path, value] {
        Session session(options, maker);
        session.OpenCamera();
        Set(session, maker.Grabber(), *path, *value);
    });
}
