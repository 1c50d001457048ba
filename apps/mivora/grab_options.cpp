// grab_options.cpp - the options of the command "grab"
#include "apps/mivora/grab_options.h"

std::string GrabOptions::Problem(std::size_t cameras) const {
    if (cameras > 1 && IsStream()) {
        return "--output: standard output takes the frames of one camera, not of " +
               std::to_string(cameras);
    }
    if (cameras <= 1 && start == kStartBySoftware) {
        return "--start: with one camera there is nothing to wait for but a trigger";
    }
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
