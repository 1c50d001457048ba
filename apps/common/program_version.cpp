// program_version.cpp - what --version prints
#include "apps/common/program_version.h"

#include "apps/common/json_text.h"
#include "mivora/module_loader.h"
#include "mivora/types.h"
#include "mivora/version.h"
#include "platform/file_version.h"

#include <cstdint>

namespace {

std::optional<std::string> VersionOfFile(const std::string& file) {
    platform::FileVersion version;
    if (!version.Read(file)) {
        return std::nullopt;
    }
    return std::to_string(version.Part(0)) + "." + std::to_string(version.Part(1)) + "." +
           std::to_string(version.Part(2));
}

std::string ModuleLine(const ModuleVersion& module) {
    if (!module.problem.empty()) {
        return module.problem;
    }
    return "grabber module" + (module.version ? " " + *module.version : std::string()) +
           (module.file.empty() ? ", linked in" : " " + module.file);
}

JsonValue NullIfEmpty(const std::string& text) {
    return text.empty() ? JsonValue(nullptr) : JsonValue(text);
}

} // namespace

ModuleVersion VersionOfModule(const std::string& file) {
    ModuleVersion module;
    CModuleLoader loader;
    if (loader.Load(file.c_str())) {
        module.file = loader.GetPath();
        const std::string said = loader.GetModuleVersion();
        module.version = said.empty() ? VersionOfFile(module.file) : said;
    } else {
        module.file = file;
        module.problem = loader.GetErrorText();
    }
    return module;
}

ModuleVersion VersionOfLinkedModule() {
    return {"", MIVORA_PROGRAM_VERSION, ""};
}

std::string VersionText(const std::string& program, const ModuleVersion& module, bool isJson) {
    if (isJson) {
        return JsonReport(
                   {{"program", program},
                    {"version", MIVORA_PROGRAM_VERSION},
                    {"host", JsonObject({{"version", MivoraHostVersion()},
                                         {"interface", MIVORA_INTERFACE_VERSION}})},
                    {"module", JsonObject({{"version", NullIfEmpty(module.version.value_or(""))},
                                           {"file", NullIfEmpty(module.file)},
                                           {"problem", NullIfEmpty(module.problem)}})}})
            .Text();
    }
    return program + " " + MIVORA_PROGRAM_VERSION + "\nhost library " + MivoraHostVersion() +
           ", interface " + std::to_string(MIVORA_INTERFACE_VERSION) + "\n" + ModuleLine(module);
}
