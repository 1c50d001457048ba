// page_files.cpp - the files of the page, which the program carries
#include "apps/serve/page_files.h"

#include "apps/serve/embedded_files.h"

namespace {

struct TypeOfEnding {
    std::string_view ending;
    const char* type;
};

constexpr TypeOfEnding kTypes[] = {
    {".html", "text/html; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".svg", "image/svg+xml"},
    {".json", "application/json"},
    {".png", "image/png"},
    {".webmanifest", "application/manifest+json"},
};

constexpr std::string_view kOpenApi = "openapi.json";

const PageFile* FindEmbedded(std::string_view name) {
    for (std::size_t i = 0; i < kEmbeddedFileCount; ++i) {
        if (kEmbeddedFiles[i].name == name) {
            return &kEmbeddedFiles[i];
        }
    }
    return nullptr;
}

} // namespace

const PageFile* FindPageFile(std::string_view name) {
    return name == kOpenApi ? nullptr : FindEmbedded(name);
}

std::string_view OpenApiText() {
    return FindEmbedded(kOpenApi)->content;
}

std::string PageFileType(std::string_view name) {
    for (const TypeOfEnding& known : kTypes) {
        if (name.ends_with(known.ending)) {
            return known.type;
        }
    }
    return "application/octet-stream";
}
