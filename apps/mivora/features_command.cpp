// features_command.cpp - lists the features of the open camera's modules
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/feature_text.h"
#include "apps/common/session.h"
#include "apps/common/whole_file.h"
#include "apps/mivora/commands.h"
#include "platform/console.h"
#include "platform/printable_text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kPathWidth = 64;
constexpr std::size_t kTreeWidth = 48;
constexpr std::size_t kIndent = 2;

struct FeaturesOptions {
    std::string module;
    std::string filter;
    std::optional<std::string> xml;
    bool tree = false;
    bool json = false;
};

struct ListedFeature {
    FeatureDescription description;
    std::optional<ServiceValue> value;
};

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::vector<ListedFeature> Listed(ServiceClient& services, const FeaturesOptions& options) {
    std::vector<ListedFeature> list;
    const std::string filter = Lower(options.filter);
    const std::vector<std::string> modules =
        options.module.empty() ? services.ListModules() : std::vector{options.module};
    for (const std::string& module : modules) {
        for (const FeatureDescription& feature : services.ListFeatures(module)) {
            if (feature.type == MV_FEATURE_CATEGORY ||
                Lower(feature.Path()).find(filter) == std::string::npos) {
                continue;
            }
            // What cannot be asked for at present is listed all the same.
            ListedFeature listed{
                services.TryDescribeFeature(module, feature.name).value_or(feature), std::nullopt};
            if (listed.description.isReadable) {
                listed.value = services.TryReadFeature(module, feature.name);
            }
            list.push_back(std::move(listed));
        }
    }
    return list;
}

/// Modules and categories as headings, features indented below them.
class FeatureTree {
public:
    void Add(const ListedFeature& listed) {
        FeatureTree* branch = &BranchOf(listed.description.module);
        std::string_view rest = listed.description.category;
        std::size_t depth = 1;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('/'), rest.size());
            if (end > 0) {
                branch = &branch->BranchOf(std::string(rest.substr(0, end)));
                ++depth;
            }
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        const std::size_t indent = depth * kIndent;
        branch->leaves.push_back(FeatureLine(listed.description.name,
                                             kTreeWidth - std::min(indent, kTreeWidth),
                                             listed.description, listed.value));
    }
    void Print(std::size_t indent) const {
        for (const std::string& leaf : leaves) {
            PrintIndented(indent, leaf);
        }
        for (const auto& [name, branch] : branches) {
            PrintIndented(indent, name);
            branch.Print(indent + kIndent);
        }
    }

private:
    static void PrintIndented(std::size_t indent, const std::string& text) {
        std::printf("%s%s\n", std::string(indent, ' ').c_str(),
                    platform::PrintableText(text).c_str());
    }
    FeatureTree& BranchOf(const std::string& name) {
        const auto found = std::find_if(branches.begin(), branches.end(),
                                        [&](const auto& branch) { return branch.first == name; });
        return found == branches.end() ? branches.emplace_back(name, FeatureTree()).second
                                       : found->second;
    }

    std::vector<std::string> leaves;
    std::vector<std::pair<std::string, FeatureTree>> branches; // in the order of the SDK
};

void PrintFeatures(const std::vector<ListedFeature>& list, const FeaturesOptions& options) {
    if (options.json) {
        std::vector<JsonValue> objects;
        objects.reserve(list.size());
        for (const ListedFeature& listed : list) {
            objects.push_back(JsonObject(FeatureMembers(listed.description, listed.value)));
        }
        PrintReport({{"features", JsonArray(objects)}});
        return;
    }
    if (options.tree) {
        FeatureTree tree;
        for (const ListedFeature& listed : list) {
            tree.Add(listed);
        }
        tree.Print(0);
        return;
    }
    for (const ListedFeature& listed : list) {
        const std::string line =
            FeatureLine(listed.description.Path(), kPathWidth, listed.description, listed.value);
        std::printf("%s\n", platform::PrintableText(line).c_str());
    }
}

/// Writes the camera's own description to a file, or to standard output without one.
void WriteDescriptionFile(const DescriptionFile& description, const std::string& file,
                          bool isJson) {
    const std::string& content = description.content;
    if (file.empty()) {
        if (Lower(description.name).ends_with(".zip")) {
            throw CommandFailure("the camera has its description compressed, as " +
                                 description.name + ": name a file for it");
        }
        const std::string shown =
            platform::IsTerminal(1) ? platform::PrintableLines(content) : content;
        std::fwrite(shown.data(), 1, shown.size(), stdout);
        return;
    }
    WriteWholeFile(file, content);
    if (isJson) {
        PrintReport(
            {{"file", file}, {"bytes", std::uint64_t{content.size()}}, {"name", description.name}});
        return;
    }
    std::printf("%s: %zu bytes of %s\n", platform::PrintableText(file).c_str(), content.size(),
                platform::PrintableText(description.name).c_str());
}

void Features(Session& session, const FeaturesOptions& options) {
    if (options.json && options.xml && options.xml->empty()) {
        throw BadUsage("--json with --xml wants a file for the description");
    }
    ServiceClient& services = session.Services();
    session.OpenCamera();
    if (options.xml) {
        WriteDescriptionFile(services.ReadDescriptionFile(), *options.xml, options.json);
    } else {
        PrintFeatures(Listed(services, options), options);
    }
}

} // namespace

void AddFeaturesCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command =
        program.AddCommand("features", "List every feature of the open camera's modules");
    const auto features = std::make_shared<FeaturesOptions>();
    const CommandOption module = command.AddOption(
        "MODULE", features->module, "Only this module, such as Camera, Interface or Stream0");
    const CommandOption filter =
        command.AddOption("-f,--filter", features->filter,
                          "Only features whose path has this text in it, case ignored");
    CommandOption tree =
        command.AddFlag("-t,--tree", features->tree, "Show modules and categories as a tree");
    command
        .AddOption("--xml", features->xml,
                   "Write the camera's own description of its features to a file instead, or to "
                   "standard output")
        .ValueOptional()
        .TypeName("[FILE]")
        .Excludes(module)
        .Excludes(filter)
        .Excludes(tree);
    tree.Excludes(command.AddJson(features->json));
    command.SetFooter("Path, type, access, value with unit, and range or entries.\n\n"
                      "Examples:\n"
                      "  mivora features Camera --filter exposure\n"
                      "  mivora features Camera --tree\n"
                      "  mivora features --xml camera.xml\n");
    command.OnRun([&options, maker, features] {
        Session session(options, maker());
        Features(session, *features);
    });
}
