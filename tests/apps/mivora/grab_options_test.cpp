// grab_options_test.cpp - tests of the options of the command "grab"
#include "apps/mivora/grab_options.h"

#include <gtest/gtest.h>

namespace {

TEST(GrabOptions, HaveAFormatForEachOutput) {
    GrabOptions options;
    EXPECT_FALSE(options.IsRecorded());
    options.output = "images";
    EXPECT_TRUE(options.IsRecorded());
    EXPECT_FALSE(options.IsStream());
    EXPECT_EQ(options.Format(), "png");
    options.output = "-";
    EXPECT_TRUE(options.IsStream());
    EXPECT_EQ(options.Format(), "raw");
    options.format = "pnm";
    EXPECT_EQ(options.Format(), "pnm");
    EXPECT_EQ(options.Problem(), "");
}

TEST(GrabOptions, ThatHaveNoEffectAreProblems) {
    GrabOptions options;
    options.output = "-";
    options.overwrite = true;
    EXPECT_EQ(options.Problem(), "--overwrite: standard output is no directory");
    options.overwrite = false;
    options.format = "stack";
    EXPECT_EQ(options.Problem(), "--format: on standard output frames are raw or pnm, not stack");
    options.output = "images";
    EXPECT_EQ(options.Problem(), "");
    options.pngLevel = "3";
    EXPECT_EQ(options.Problem(), "--png-level: the format is stack, not png");
    options.format.reset();
    EXPECT_EQ(options.Problem(), "");
    options.deflate = true;
    EXPECT_EQ(options.Problem(), "--deflate: the format is png, not tiff or multi-tiff");
    options.pngLevel.reset();
    for (const char* const format : {"tiff", "multi-tiff"}) {
        options.format = format;
        EXPECT_EQ(options.Problem(), "");
    }
}

TEST(GrabOptions, ThatDoNotFitTheNumberOfCamerasAreProblems) {
    GrabOptions options;
    options.start = kStartBySoftware;
    EXPECT_NE(options.Problem(1), "");
    EXPECT_EQ(options.Problem(2), "");
    options.start = kStartByTrigger;
    EXPECT_EQ(options.Problem(1), "");
    EXPECT_EQ(options.Problem(2), "");
    options.output = "-";
    EXPECT_EQ(options.Problem(1), "");
    EXPECT_EQ(options.Problem(2),
              "--output: standard output takes the frames of one camera, not of 2");
}

} // namespace
