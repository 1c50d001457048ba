# embed_files.cmake - writes a C++ source with the content of files
#
# cmake -DOUTPUT=FILE.cpp -DFILES="A;B" -P embed_files.cmake

set(arrays "")
set(table "")
set(number 0)
foreach(file IN LISTS FILES)
  file(READ ${file} bytes HEX)
  string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  cmake_path(GET file FILENAME name)
  string(APPEND arrays "const unsigned char kFile${number}[] = {\n${bytes}0};\n")
  string(APPEND table "    {\"${name}\", {reinterpret_cast<const char*>(kFile${number}), "
                      "sizeof kFile${number} - 1}},\n")
  math(EXPR number "${number} + 1")
endforeach()
cmake_path(GET OUTPUT FILENAME source)
file(WRITE ${OUTPUT}.new "// ${source} - made by the build from the files of the page
#include \"apps/serve/embedded_files.h\"

namespace {

${arrays}
} // namespace

const PageFile kEmbeddedFiles[] = {
${table}};
const std::size_t kEmbeddedFileCount = ${number};
")
file(COPY_FILE ${OUTPUT}.new ${OUTPUT} ONLY_IF_DIFFERENT)
file(REMOVE ${OUTPUT}.new)
file(TOUCH_NOCREATE ${OUTPUT})
