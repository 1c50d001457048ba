// page_files.h - the files of the page, which the program carries
#pragma once

#include <string>
#include <string_view>

struct PageFile {
    const char* name = nullptr; ///< "index.html"
    std::string_view content;
};

/// Null when the page has no such file.
const PageFile* FindPageFile(std::string_view name);
/// The description of the interface, see /openapi.json.
std::string_view OpenApiText();
/// The content type of a file, by the ending of its name.
std::string PageFileType(std::string_view name);
