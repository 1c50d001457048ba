// embedded_files.h - the table that the build makes of the page's files
#pragma once

#include "apps/serve/page_files.h"

#include <cstddef>

extern const PageFile kEmbeddedFiles[];
extern const std::size_t kEmbeddedFileCount;
