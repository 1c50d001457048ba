// grab_options.cpp - the options of the command "grab"
#include "apps/mivora/grab_options.h"

std::string GrabOptions::Problem() const {
    const std::string kind = Format();
    if (IsStream() && kind != "raw" && kind != "pnm") {
        return "--format: on standard output frames are raw or pnm, not " + kind;
    }
    if (IsStream() && overwrite) {
        return "--overwrite: standard output is no directory";
    }
    if (pngLevel && kind != "png") {
        return "--png-level: the format is " + kind + ", not png";
    }
    if (deflate && kind != "tiff" && kind != "multi-tiff") {
        return "--deflate: the format is " + kind + ", not tiff or multi-tiff";
    }
    return {};
}
