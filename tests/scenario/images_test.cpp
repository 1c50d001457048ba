// images_test.cpp - single images and continuous acquisition
#include "tests/scenario/diagonal_ramp.h"
#include "tests/scenario/program_test.h"
#include "tests/support/tiff_pages.h"

#include <lodepng.h>

#include <cstring>

namespace scenario {
namespace {

class Images : public ProgramTest {
protected:
    std::size_t CountFiles(const std::string& name) const {
        std::size_t count = 0;
        char number[32];
        do {
            ++count;
            std::snprintf(number, sizeof number, "/frame-%06u.", static_cast<unsigned>(count));
        } while (platform::PathExists(PathOf(name + number + "png")) ||
                 platform::PathExists(PathOf(name + number + "pgm")) ||
                 platform::PathExists(PathOf(name + number + "raw")));
        return count - 1;
    }
    static void ExpectClosed(const Json& report) {
        const Json& account = report["account"];
        EXPECT_TRUE(account["closed"]) << report;
        EXPECT_EQ(account["completed"], account["delivered"]) << report;
        EXPECT_EQ(account["delivered"].get<int>(), account["taken"].get<int>() +
                                                       account["lost"].get<int>() +
                                                       account["flushed"].get<int>())
            << report;
        const Json& sdk = account["sdk"];
        EXPECT_GT(sdk["announced"], 0) << report;
        EXPECT_EQ(sdk["announced"], sdk["revoked"]) << report;
        EXPECT_EQ(sdk["queued"].get<int>(), sdk["completed"].get<int>() + sdk["flushed"].get<int>())
            << report;
        EXPECT_EQ(sdk["callbacks"].get<int>(),
                  account["completed"].get<int>() + account["incomplete"].get<int>())
            << report;
    }
};

TEST_F(Images, AreSnappedInEveryMode) {
    UseCamera();
    for (const char* mode : {"2", "3", "4", "5"}) {
        ExpectDone(Mivora({"snap", "--mode", mode, "-o", PathOf("image.raw")}));
        EXPECT_EQ(directory.Read("image.raw").size(), 64u * 48) << mode;
    }
}

TEST_F(Images, OfASizeThatTheCameraDoesNotSayAreNotSnapped) {
    UseCamera();
    // Known before the buffers are prepared, and no longer while they are.
    const std::string script = directory.Write("script", "fail PxnFeatureIntGet 5 -12\n");
    for (const char* const mode : {"2", "3"}) {
        ExpectFailure(
            Mivora({"--sdk-script", script, "snap", "--mode", mode, "-o", PathOf("image.raw")}), 1,
            {"PrepareFrameBuffers failed with 12", "cannot get width"});
    }
}

TEST_F(Images, ComeInTheFormatOfTheFilesEnding) {
    UseCamera(Format("Mono12"));
    ExpectDone(Mivora({"snap", "-o", PathOf("image.raw")}));
    EXPECT_EQ(directory.Read("image.raw").size(), 64u * 48 * 2);
    ExpectDone(Mivora({"snap", "-o", PathOf("image.pgm")}));
    const std::string header = "P5\n64 48\n4095\n";
    EXPECT_EQ(directory.Read("image.pgm").substr(0, header.size()), header);
    EXPECT_EQ(directory.Read("image.pgm").size(), header.size() + 64u * 48 * 2);
    ExpectDone(Mivora({"snap", "-o", PathOf("image.png")}));
    std::vector<unsigned char> pixels;
    unsigned width = 0;
    unsigned height = 0;
    EXPECT_EQ(lodepng::decode(pixels, width, height, PathOf("image.png"), LCT_GREY, 16), 0u);
    EXPECT_EQ(width, 64u);
    EXPECT_EQ(height, 48u);
}

TEST_F(Images, OfTiffFilesHaveTrueValuesAndTheDepthOfTheFormat) {
    UseCamera(Format("Mono12p"));
    ExpectDone(Mivora({"snap", "-o", PathOf("image.raw")}));
    const std::string raw = directory.Read("image.raw");
    std::vector<std::uint16_t> values(raw.size() / 2);
    std::memcpy(values.data(), raw.data(), raw.size());
    for (const bool deflate : {false, true}) {
        std::vector<std::string> arguments{"snap", "-o", PathOf("image.tif")};
        if (deflate) {
            arguments.push_back("--deflate");
        }
        ExpectDone(Mivora(arguments)); // the first frame of a camera is always the same picture
        const auto pages = support::ReadTiffPages(PathOf("image.tif"));
        ASSERT_EQ(pages.size(), 1u);
        EXPECT_EQ(pages[0].bits, 16);
        EXPECT_EQ(pages[0].channels, 1);
        EXPECT_EQ(pages[0].compression, deflate ? COMPRESSION_ADOBE_DEFLATE : COMPRESSION_NONE);
        EXPECT_EQ(pages[0].samples, values);
        EXPECT_EQ(pages[0].description, "{\"significantBits\":12,\"colorFilter\":null}");
    }
}

TEST_F(Images, OfPngFilesAreCompressedAsWanted) {
    UseCamera(Format("Mono8"));
    ExpectDone(Mivora({"snap", "-o", PathOf("plain.png"), "--png-level", "0"}));
    ExpectDone(Mivora({"snap", "-o", PathOf("best.png"), "--png-level", "9"}));
    EXPECT_GT(directory.Read("plain.png").size(), 64u * 48);
    EXPECT_LT(directory.Read("best.png").size(), 64u * 48 / 2);
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.png"), "--png-level", "10"}), 2,
                  {"--png-level", "no level from 0 to 9"});
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.tif"), "--png-level", "1"}), 2,
                  {"--png-level has no effect"});
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.png"), "--deflate"}), 2,
                  {"--deflate has no effect"});
}

TEST_F(Images, OfPackedAndFullFormatsAreTheSame) {
    // The first frame of a camera is always the same picture.
    std::string whole;
    for (const char* format : {"Mono12", "Mono12p", "Mono12Packed"}) {
        UseCamera(Format(format));
        ExpectDone(Mivora({"snap", "-o", PathOf("image.raw")}));
        const std::string image = directory.Read("image.raw");
        whole = whole.empty() ? image : whole;
        EXPECT_EQ(image, whole) << format;
    }
    EXPECT_NE(whole, std::string(whole.size(), '\0'));
}

TEST_F(Images, OfColourFiltersAreWrittenInColour) {
    UseCamera(Format("BayerRG8"), "", "gige");
    ExpectDone(Mivora({"snap", "-o", PathOf("image.ppm")}));
    EXPECT_EQ(directory.Read("image.ppm").substr(0, 3), "P6\n");
    ExpectDone(Mivora({"snap", "-o", PathOf("image.pgm")}));
    EXPECT_EQ(directory.Read("image.pgm").substr(0, 3), "P5\n");
}

TEST_F(Images, AreGrabbedWithAClosedAccount) {
    for (const char* format : {"Mono8", "Mono10p", "BayerGB12Packed", "RGB8", "BGRa12", "YUV422"}) {
        UseCamera(Format(format));
        const auto result = Mivora({"grab", "--frames", "40", "--json"});
        ExpectDone(result);
        const Json report = Json::parse(result.output);
        EXPECT_EQ(report["frames"], 40) << format;
        EXPECT_EQ(report["errors"], 0) << format;
        EXPECT_EQ(report["account"]["written"], 0) << format;
        // However fast they came, the rate is between those of the longest and the shortest
        // interval.
        const Json& interval = report["intervalMicroseconds"];
        EXPECT_GE(interval["count"], 39) << format;
        EXPECT_GE(report["framesPerSecond"], 0.999e6 / interval["max"].get<double>()) << format;
        EXPECT_LE(report["framesPerSecond"], 1.001e6 / interval["min"].get<double>()) << format;
        EXPECT_EQ(report["handOverMicroseconds"]["count"], 40) << format;
        EXPECT_EQ(report["latencyMicroseconds"]["count"], report["account"]["delivered"]);
        EXPECT_GT(report["latencyMicroseconds"]["min"], 0) << format;
        EXPECT_FALSE(report["interrupted"]);
        EXPECT_FALSE(report["cameraLost"]);
        ExpectClosed(report);
    }
}

TEST_F(Images, AreAccountedForWhateverGoesWrongWithThem) {
    UseCamera();
    const auto grab = [this](const std::string& script) {
        const auto result = Mivora({"--sdk-script", directory.Write("script", script), "grab",
                                    "--frames", "40", "--buffers", "3", "--json"});
        ExpectDone(result);
        Json report = Json::parse(result.output);
        EXPECT_EQ(report["frames"], 40);
        ExpectClosed(report);
        return report;
    };
    EXPECT_GT(grab("frame-random 1 30 incomplete\n")["account"]["incomplete"], 0);
    EXPECT_GT(grab("frame-random 2 30 small\n")["account"]["incomplete"], 0);
    EXPECT_GT(grab("frame-random 3 30 drop\n")["account"]["sdk"]["dropped"], 0);
    grab("frame-random 4 30 duplicate\n");
    // Free-running, the camera sends although the clock is stopped; only late frames advance it.
    UseCamera("<feature name=\"SimulatorFreeRunning\" value=\"true\"/>\n");
    const Json late = grab("clock stop\nframe late 5,11\n");
    EXPECT_EQ(late["latencyMicroseconds"]["max"], 50000.0) << "late means after its timestamp";
    EXPECT_EQ(late["latencyMicroseconds"]["min"], 0.0);
}

TEST_F(Images, AreWrittenOneByOne) {
    // Fewer frames than buffers, so that none is overwritten before it has been copied.
    UseCamera("<feature name=\"AcquisitionMode\" value=\"MultiFrame\"/>\n"
              "<feature name=\"AcquisitionFrameCount\" value=\"48\"/>\n");
    for (const char* format : {"png", "pnm", "raw"}) {
        const std::string name = std::string("images-") + format;
        const auto result = Mivora({"grab", "--frames", "12", "--buffers", "50", "-o", PathOf(name),
                                    "--format", format, "--json"});
        ExpectDone(result);
        const Json report = Json::parse(result.output);
        EXPECT_EQ(report["account"]["written"], 12) << report;
        EXPECT_EQ(CountFiles(name), 12u) << format;
        ExpectClosed(report);
    }
    EXPECT_EQ(directory.Read("images-raw/frame-000012.raw").size(), 64u * 48);
    EXPECT_NE(directory.Read("images-raw/frame-000001.raw"),
              directory.Read("images-raw/frame-000002.raw"));
}

TEST_F(Images, AreThoseThatTheCameraSends) {
    constexpr DiagonalRamp kPicture{64, 48, 256};
    UseCamera("<feature name=\"AcquisitionFrameRate\" value=\"100\"/>\n");
    const auto result = Mivora({"grab", "--frames", "100", "--buffers", "100", "-o",
                                PathOf("images"), "--format", "raw", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 100);
    EXPECT_EQ(report["errors"], 0);
    kPicture.ExpectGrabbed(PathOf("images"), report);
}

TEST_F(Images, ThatAreIncompleteAreCountedAndNotHandedOver) {
    UseCamera("", Faults("frame incomplete 3,5,9"));
    const auto result = Mivora({"grab", "--frames", "20", "--json"});
    ExpectDone(result);
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["frames"], 20);
    EXPECT_EQ(report["errors"], 3);
    EXPECT_EQ(report["account"]["incomplete"], 3);
    ExpectClosed(report);
}

TEST_F(Images, EndWithAnErrorWhenTheCameraIsUnplugged) {
    UseCamera("", Faults("unplug-at 20 A"));
    const auto result = Mivora({"grab", "--frames", "1000", "--json"});
    ExpectFailure(result, 1, {"no more frames from camera 0 (Camera A"});
    const Json report = Json::parse(result.output);
    EXPECT_TRUE(report["cameraLost"]);
    // The program may be too slow for some of them, which the account tells.
    EXPECT_EQ(report["account"]["delivered"], 20);
    EXPECT_GT(report["frames"], 0);
    ExpectClosed(report);
}

TEST_F(Images, EndWithAnErrorWhenFramesStopComing) {
    UseCamera("<feature name=\"TriggerMode\" value=\"On\"/>\n");
    const std::string cause = "it waits for a trigger (TriggerMode is On for FrameStart, "
                              "TriggerSource is Software)";
    const auto result = Mivora({"grab", "--frames", "5", "--timeout", "300", "--json"});
    ExpectFailure(result, 1, {"no more frames", "after 0 frames: " + cause});
    EXPECT_FALSE(Json::parse(result.output)["cameraLost"]);
    ExpectFailure(Mivora({"snap", "--timeout", "300", "-o", PathOf("a.raw")}), 1,
                  {"Snap failed with 29", "no frame for 300 ms", cause});
}

TEST_F(Images, ThatDoNotComeAreExplained) {
    const Arguments grab{"grab", "--frames", "5", "--timeout", "300", "--json"};
    UseCamera("", Faults("frame-random 7 100 incomplete"));
    auto result = Mivora(grab);
    ExpectFailure(result, 1,
                  {"after 0 frames: ", " frames came and none was complete, ",
                   " packets are missing; the network"});
    const Json packets = Json::parse(result.output)["packets"];
    EXPECT_GT(packets["received"], 0) << packets;
    EXPECT_GT(packets["missing"], 0) << packets;
    EXPECT_EQ(packets["resent"], 0) << packets;
    UseCamera("", Faults("frame-random 7 100 drop"));
    result = Mivora(grab);
    ExpectFailure(result, 1, {" frames were lost on the way; a firewall may ", "(GVSPPacketSize)"});
    EXPECT_GT(Json::parse(result.output)["packets"]["lostFrames"], 0);
    UseCamera("", Faults("unplug-at 3 A"));
    ExpectFailure(Mivora(grab), 1, {"it is gone"});
    UseCamera();
    result = Mivora(
        {"grab", "--frames", "5", "--timeout", "300", "--set", "Camera/AcquisitionFrameRate=1"});
    ExpectFailure(result, 1, {"it is slower (AcquisitionFrameRate is 1 Hz, a frame each 1000 ms)"});
}

TEST_F(Images, AreWaitedForWithoutReopeningACameraThatWaitsForATrigger) {
    // Two seconds after the acquisition has been started; the first command run is another one.
    UseCamera("<feature name=\"TriggerSource\" value=\"Line1\"/>\n"
              "<feature name=\"TriggerMode\" value=\"On\"/>\n",
              Faults("at-call PxnFeatureCommandRun 2 after 2000 trigger A"));
    const auto result =
        Mivora({"grab", "--frames", "1", "--timeout", "200", "--reconnect", "--json"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_PRED2(Contains, result.errors,
                 "it waits for a trigger (TriggerMode is On for "
                 "FrameStart, TriggerSource is Line1); going on\n");
    EXPECT_EQ(result.errors.find("going on"), result.errors.rfind("going on")) << "once";
    const Json report = Json::parse(result.output);
    EXPECT_EQ(report["reconnects"], 0);
    EXPECT_EQ(report["account"]["sdk"]["announced"], 8) << "once only";
}

TEST_F(Images, AreRefusedWhereTheyWouldBeBlack) {
    for (const char* format : {"Mono12p", "Mono10Packed", "YUV422_8", "RGB12p"}) {
        UseCamera(Format(format));
        for (const char* mode : {"3", "4", "5"}) {
            ExpectFailure(
                Mivora({"snap", "--mode", mode, "-o", PathOf("black.png")}), 1,
                {std::string("mode ") + mode + " does not convert " + format, "--mode 2", "--raw"});
        }
        EXPECT_FALSE(platform::PathExists(PathOf("black.png")));
    }
    UseCamera(Format("Mono12"));
    ExpectDone(Mivora({"snap", "--mode", "3", "-o", PathOf("grey.png")}));
}

TEST_F(Images, AreWrittenAsTheCameraHasSentThem) {
    UseCamera(Format("Mono12"));
    ExpectDone(Mivora({"snap", "-o", PathOf("host.raw")}));
    ExpectDone(Mivora({"snap", "--raw", "-o", PathOf("same.raw")}));
    EXPECT_EQ(directory.Read("same.raw"), directory.Read("host.raw")) << "nothing to convert";
    UseCamera(Format("Mono12p"));
    for (const char* mode : {"2", "3", "4", "5"}) {
        // The first frame of a camera is always the same picture.
        const auto result =
            Mivora({"snap", "--raw", "--mode", mode, "--json", "-o", PathOf("sent.raw")});
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(Json::parse(result.output)["pixelFormat"], "Mono12p");
        EXPECT_EQ(directory.Read("sent.raw").size(), 64u * 48 * 3 / 2) << mode;
        EXPECT_EQ(directory.Read("sent.raw.json"),
                  "{\"schema\":1,\"sent\":{\"pixelFormat\":\"Mono12p\",\"width\":64,"
                  "\"height\":48,\"bytes\":4608}}\n");
        ExpectDone(Tool({"convert", "--format", "Mono12p", "--width", "64", "--height", "48",
                         PathOf("sent.raw"), PathOf("converted.raw")}));
        EXPECT_EQ(directory.Read("converted.raw"), directory.Read("host.raw")) << mode;
    }
    const auto stream = Mivora({"snap", "--raw", "-o", "-"});
    EXPECT_EQ(stream.status, 0) << stream.errors;
    EXPECT_EQ(stream.output, directory.Read("sent.raw"));
    UseCamera(Format("RGB12p"));
    const auto wrong = Mivora({"snap", "--raw", "-o", PathOf("a.raw")});
    EXPECT_EQ(wrong.status, 0);
    EXPECT_EQ(wrong.errors, "") << "nothing is converted in part";
    ExpectFailure(Mivora({"snap", "--raw", "-o", PathOf("a.png")}), 2, {"--raw", "is no .raw"});
    ExpectFailure(Mivora({"snap", "--raw", "-o", "-", "--format", "png"}), 2, {"is no .raw"});
}

TEST_F(Images, ThatLookWrongComeWithAWarning) {
    UseCamera(Format("RGB12p"));
    const std::string warning = "mivora: warning: images in RGB12p look wrong: ";
    const auto snapped = Mivora({"snap", "-o", PathOf("a.ppm")});
    EXPECT_EQ(snapped.status, 0);
    EXPECT_EQ(snapped.errors.find(warning), 0u) << snapped.errors;
    const auto grabbed = Mivora({"grab", "--frames", "2"});
    EXPECT_EQ(grabbed.status, 0);
    EXPECT_EQ(grabbed.errors.find(warning), 0u) << grabbed.errors;
}

TEST_F(Images, CannotBeTakenFromAnEmptySensorOrAnUnknownFormat) {
    directory.Write("PxnC.xml", "<PxnC><camera id=\"A\"><omit name=\"Height\"/></camera></PxnC>");
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.png")}), 1, {"empty images of 640 x 0 pixels"});
    ExpectFailure(Mivora({"grab", "--frames", "1"}), 1, {"empty images of 640 x 0 pixels"});
    directory.Write("PxnC.xml",
                    "<PxnC><camera id=\"A\"><omit name=\"PixelFormat\"/></camera></PxnC>");
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.png")}), 1,
                  {"pixel format is unknown", "cannot get pixelformat"});
}

TEST_F(Images, AreRefusedForBadOptions) {
    UseCamera();
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.jpg")}), 2, {"-o"});
    ExpectFailure(Mivora({"snap", "-o", PathOf("none/a.png")}), 1,
                  {"cannot write", PathOf("none/a.png")});
    ExpectFailure(Mivora({"snap", "--mode", "1", "-o", PathOf("a.png")}), 2, {"--mode"});
    ExpectFailure(Mivora({"snap"}), 2, {"--output"});
    ExpectFailure(Mivora({"grab"}), 2, {"--frames"});
    ExpectFailure(Mivora({"grab", "--frames", "-1"}), 2, {"--frames: \"-1\" is no number"});
    ExpectFailure(Mivora({"grab", "--frames", "5", "--buffers", "0"}), 2,
                  {"--buffers: \"0\" is no number from 1 on"});
    ExpectFailure(Mivora({"grab", "--frames", "5", "--timeout", "-5"}), 2, {"--timeout: \"-5\""});
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.png"), "--timeout", "-5"}), 2, {"--timeout"});
    ExpectFailure(Mivora({"snap", "-o", PathOf("a.png"), "--mode", "3", "--timeout", "500"}), 2,
                  {"--timeout has an effect on mode 2 only"});
    ExpectFailure(Mivora({"grab", "--frames", "5", "--format", "gif"}), 2, {"--format"});
    ExpectFailure(Mivora({"grab", "--frames", "5", "--buffers", "101"}), 1,
                  {"PrepareFrameBuffers failed with 4", "Requested 101 buffers"});
    const std::string file = directory.Write("file", "");
    ExpectFailure(Mivora({"grab", "--frames", "5", "-o", file + "/below"}), 1,
                  {"cannot make the directory", file});
}

} // namespace
} // namespace scenario
