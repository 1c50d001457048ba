// mivora_gfx_mode_kvn_pyxen_test.cpp - the graphics mode that asks the camera
#include "grabber/mivora_gfx_mode_kvn_pyxen.h"

#include "tests/module/grabber_fixture.h"

using namespace pyxen;

namespace {

const std::string kFormatTag = "0 CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: ";

class GfxMode : public GrabberFixture {
protected:
    CMivoraGfxModeKVNPyxen& Mode() {
        return static_cast<CMivoraGfxModeKVNPyxen&>(*Grabber().GetActCamera()->GetActGfxMode());
    }
    void SetFormat(const std::string& name, std::int64_t code) {
        scripted::EnumEntry entry;
        entry.name = name;
        entry.intValue = code;
        Camera().Put(scripted::EnumFeature("PixelFormat", name, {entry}));
    }
    void SetSize(std::int64_t width, std::int64_t height) {
        Camera()["Width"].intValue = width;
        Camera()["Height"].intValue = height;
    }
    // What the getters of the layout answer, in slot order.
    std::vector<unsigned> Layout() {
        return {Mode().GetNumComponents(),
                Mode().GetAllocatedBitPerComponent(),
                Mode().GetBitStartComponent(),
                Mode().GetBitPerComponent(),
                static_cast<unsigned>(Mode().GetColorCoding()),
                Mode().GetCFAxOffset(),
                Mode().GetCFAyOffset()};
    }
};

TEST_F(GfxMode, WithoutGrabberAnswersNothingSilently) {
    support::RecordingSink none;
    MivoraInstallLogSink(&none);
    CMivoraGfxModeKVNPyxen mode(nullptr);
    MivoraInstallLogSink(nullptr);
    EXPECT_EQ(mode.GetxRes(), 0u);
    EXPECT_EQ(mode.GetyRes(), 0u);
    EXPECT_EQ(mode.GetNumComponents(), 0u);
    EXPECT_EQ(mode.GetAllocatedBitPerComponent(), 0u);
    EXPECT_EQ(mode.GetBitStartComponent(), 0u);
    EXPECT_EQ(mode.GetBitPerComponent(), 0u);
    EXPECT_EQ(mode.GetColorCoding(), MVCC_MONO);
    EXPECT_EQ(mode.GetCFAxOffset(), 0u);
    EXPECT_EQ(mode.GetCFAyOffset(), 0u);
    EXPECT_EQ(mode.GetNumPixels(), 0u);
    EXPECT_EQ(mode.GetImageSize(), 0u);
    EXPECT_EQ(mode.GetFormatPropertiesByPixelFormat(), nullptr);
    EXPECT_EQ(mode.GetIntermediateBufferSize(), 0u);
    EXPECT_EQ(none.Lines(), Texts{});
    EXPECT_EQ(Calls(), Texts{});
}

TEST_F(GfxMode, WithoutOpenCameraSaysWhatItCannotTell) {
    Init();
    EXPECT_EQ(Mode().GetxRes(), 0u);
    EXPECT_EQ(Mode().GetyRes(), 0u);
    EXPECT_EQ(Mode().GetFormatPropertiesByPixelFormat(), nullptr);
    EXPECT_EQ(Mode().GetIntermediateBufferSize(), 0u);
    EXPECT_EQ(
        Log(),
        (Texts{
            "0 CMivoraGfxModeKVNPyxen::GetxRes: camera handle is nullptr -> cannot get width",
            "0 CMivoraGfxModeKVNPyxen::GetyRes: camera handle is nullptr -> cannot get height",
            kFormatTag + "camera handle is NULL -> cannot get pixelformat",
            "0 CMivoraGfxModeKVNPyxen::GetIntermediateBufferSize: camera handle is nullptr -> cannot get intermediate buffer size"}));
    EXPECT_EQ(Calls(), Texts{});
    EXPECT_EQ(Layout(), std::vector<unsigned>(7, 0u));
    EXPECT_EQ(Mode().GetNumPixels(), 0u);
    EXPECT_EQ(Mode().GetImageSize(), 0u);
}

TEST_F(GfxMode, AsksTheCameraAnewEveryTime) {
    Open();
    EXPECT_EQ(Mode().GetxRes(), 640u);
    EXPECT_EQ(Mode().GetyRes(), 480u);
    SetSize(1000, 3);
    EXPECT_EQ(Mode().GetxRes(), 1000u);
    EXPECT_EQ(Mode().GetyRes(), 3u);
    EXPECT_EQ(Mode().GetNumPixels(), 3000u);
    EXPECT_EQ(
        Calls(),
        (Texts{"PxnFeatureIntGet(camera0, \"Width\")", "PxnFeatureIntGet(camera0, \"Height\")",
               "PxnFeatureIntGet(camera0, \"Width\")", "PxnFeatureIntGet(camera0, \"Height\")",
               "PxnFeatureIntGet(camera0, \"Width\")", "PxnFeatureIntGet(camera0, \"Height\")"}));
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(GfxMode, AnswersNoSizeWhenItCannotBeRead) {
    Open();
    sdk.FailAlways("PxnFeatureIntGet", PxnErrIO);
    EXPECT_EQ(Mode().GetxRes(), 0u);
    EXPECT_EQ(Mode().GetyRes(), 0u);
    EXPECT_EQ(
        Log(),
        (Texts{
            "0 CMivoraGfxModeKVNPyxen::GetxRes: PxnFeatureIntGet reports error -> cannot get width",
            "0 CMivoraGfxModeKVNPyxen::GetyRes: PxnFeatureIntGet reports error -> cannot get height"}));
}

TEST_F(GfxMode, SizesAreTheLow32BitsOfTheFeatures) {
    Open();
    SetSize(-1, 0x100000002);
    EXPECT_EQ(Mode().GetxRes(), 0xFFFFFFFFu);
    EXPECT_EQ(Mode().GetyRes(), 2u);
    EXPECT_EQ(Mode().GetNumPixels(), 0x1FFFFFFFEu);
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(GfxMode, FindsTheFormatByItsCode) {
    Open();
    SetFormat("AnyName", 0x010C0047);
    SetSize(100, 10);
    EXPECT_STREQ(Mode().GetFormatPropertiesByPixelFormat()->name, "Mono12p");
    EXPECT_EQ(Calls(), (Texts{"PxnFeatureEnumGet(camera0, \"PixelFormat\")",
                              "PxnFeatureEnumAsInt(camera0, \"PixelFormat\", \"AnyName\")"}));
    EXPECT_EQ(Layout(), (std::vector<unsigned>{1, 16, 0, 12, 0, 0, 0}));
    EXPECT_EQ(Mode().GetImageSize(), 2000u);
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(GfxMode, AnswersTheFirstFormatOfASharedCode) {
    Open();
    SetFormat("RGB8", 0x02180014);
    EXPECT_STREQ(Mode().GetFormatPropertiesByPixelFormat()->name, "Rgb8Packed");
}

TEST_F(GfxMode, FindsByNameWhatHasNoCode) {
    Open();
    SetFormat("ARGB8packed", 0);
    EXPECT_STREQ(Mode().GetFormatPropertiesByPixelFormat()->name, "Argb8Packed");
    EXPECT_EQ(
        Log(),
        Texts{
            kFormatTag +
            "Pixelformat 0x00000000 alias ARGB8packed is unknown. Trying to look up pixelformat properties by its name."});
    EXPECT_EQ(Layout(), (std::vector<unsigned>{4, 8, 0, 8, 4, 0, 0}));
}

TEST_F(GfxMode, FindsByNameWhenTheCodeCannotBeRead) {
    Open();
    sdk.FailAlways("PxnFeatureEnumAsInt", PxnErrNotImplemented);
    SetFormat("Mono8", 0x01080001);
    EXPECT_STREQ(Mode().GetFormatPropertiesByPixelFormat()->name, "Mono8");
    EXPECT_EQ(
        Log(),
        Texts{
            kFormatTag +
            "m_pfPxnFeatureEnumAsInt failed for Mono8. Trying to look up pixelformat properties by its name."});
}

TEST_F(GfxMode, AnUnknownFormatIsNamedTwiceAndGivesNothing) {
    Open();
    SetFormat("Coord3D_C16", 0x011000B8);
    EXPECT_EQ(Mode().GetFormatPropertiesByPixelFormat(), nullptr);
    const Texts lines = {
        kFormatTag +
            "Pixelformat 0x011000B8 alias Coord3D_C16 is unknown. Trying to look up pixelformat properties by its name.",
        kFormatTag + "PxnFeatureEnumGet reports pixelformat Coord3D_C16 which is not supported!"};
    EXPECT_EQ(Log(), lines);
    EXPECT_EQ(Mode().GetImageSize(), 0u);
    EXPECT_EQ(Log(), lines);
    EXPECT_EQ(Layout(), std::vector<unsigned>(7, 0u));
}

TEST_F(GfxMode, AnUnknownNameWithoutCodeIsNamedTwice) {
    Open();
    sdk.FailAlways("PxnFeatureEnumAsInt", PxnErrNotImplemented);
    SetFormat("Odd", 1);
    EXPECT_EQ(Mode().GetFormatPropertiesByPixelFormat(), nullptr);
    EXPECT_EQ(
        Log(),
        (Texts{
            kFormatTag +
                "m_pfPxnFeatureEnumAsInt failed for Odd. Trying to look up pixelformat properties by its name.",
            kFormatTag + "PxnFeatureEnumGet reports pixelformat Odd which is not supported!"}));
}

TEST_F(GfxMode, AFormatThatCannotBeReadGivesNothing) {
    Open();
    sdk.FailAlways("PxnFeatureEnumGet", PxnErrIO);
    EXPECT_EQ(Mode().GetFormatPropertiesByPixelFormat(), nullptr);
    EXPECT_EQ(Log(),
              Texts{kFormatTag + "PxnFeatureEnumGet reports error -> cannot get pixelformat"});
    EXPECT_EQ(Layout(), std::vector<unsigned>(7, 0u));
}

TEST_F(GfxMode, AnswersTheColourFilterOffsets) {
    Open();
    SetFormat("BayerGR8", 0x01080008);
    EXPECT_EQ(Layout(), (std::vector<unsigned>{1, 8, 0, 8, 1, 0, 0}));
    SetFormat("BayerRG8", 0x01080009);
    EXPECT_EQ(Layout(), (std::vector<unsigned>{1, 8, 0, 8, 1, 1, 0}));
    SetFormat("BayerGB8", 0x0108000A);
    EXPECT_EQ(Layout(), (std::vector<unsigned>{1, 8, 0, 8, 1, 1, 1}));
    SetFormat("BayerBG8", 0x0108000B);
    EXPECT_EQ(Layout(), (std::vector<unsigned>{1, 8, 0, 8, 1, 0, 1}));
}

TEST_F(GfxMode, AnswersEveryFormatOfTheTable) {
    Open();
    SetSize(3, 5);
    for (const PixelFormat& format : PixelFormatTable()) {
        SetFormat(format.name, format.code);
        EXPECT_EQ(Layout(),
                  (std::vector<unsigned>{format.components, format.allocatedBits, 0u, format.bits,
                                         static_cast<unsigned>(format.colorCoding), format.cfaX,
                                         format.cfaY}))
            << format.name;
        EXPECT_EQ(Mode().GetImageSize(), 15u * format.components * format.allocatedBits / 8)
            << format.name;
    }
}

TEST_F(GfxMode, ImagesMayBeLargerThanFourGigabytes) {
    Open();
    SetFormat("RGBa12", 0x02400061);
    SetSize(100000, 100000);
    EXPECT_EQ(Mode().GetNumPixels(), 10000000000u);
    EXPECT_EQ(Mode().GetImageSize(), 80000000000u);
}

TEST_F(GfxMode, IntermediateSizeIsTheImageSizeFeature) {
    Open();
    Camera().Put(scripted::IntFeature("ImageSize", 0x123456789, 0, 0));
    EXPECT_EQ(Mode().GetIntermediateBufferSize(), 0x123456789u);
    EXPECT_EQ(Calls(), Texts{"PxnFeatureIntGet(camera0, \"ImageSize\")"});
}

TEST_F(GfxMode, IntermediateSizeIsElseThePayloadSizeFeature) {
    Open();
    EXPECT_EQ(Mode().GetIntermediateBufferSize(), 640u * 480u);
    EXPECT_EQ(Calls(), (Texts{"PxnFeatureIntGet(camera0, \"ImageSize\")",
                              "PxnFeatureIntGet(camera0, \"PayloadSize\")"}));
    EXPECT_EQ(Log(), Texts{});
}

TEST_F(GfxMode, WithoutBothThereIsNoIntermediateSize) {
    Open();
    sdk.FailAlways("PxnFeatureIntGet", PxnErrIO);
    EXPECT_EQ(Mode().GetIntermediateBufferSize(), 0u);
    EXPECT_EQ(
        Log(),
        Texts{
            "0 CMivoraGfxModeKVNPyxen::GetIntermediateBufferSize: PxnFeatureIntGet reports error -> cannot get ImageSize nor PayloadSize feature"});
}

TEST_F(GfxMode, WorksWithoutSink) {
    WithoutSink();
    Open();
    SetFormat("Odd", 1);
    EXPECT_EQ(Mode().GetImageSize(), 0u);
    sdk.FailAlways("PxnFeatureIntGet", PxnErrIO);
    EXPECT_EQ(Mode().GetxRes(), 0u);
    EXPECT_EQ(Mode().GetIntermediateBufferSize(), 0u);
}

TEST_F(GfxMode, ImageSizesAreComputedWithoutOverflow) {
    Open();
    constexpr std::uint64_t kMost = 0xFFFFFFFFFFFFFFFFu;
    SetFormat("Mono8", 0x01080001);
    SetSize(2147483648, 2147483648);
    EXPECT_EQ(Mode().GetImageSize(), std::uint64_t{1} << 62);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_REFUSED);
    EXPECT_EQ(Grabber().GetFrameBuffer(0), nullptr);
    SetSize(2411136128, 956330496);
    EXPECT_EQ(Mode().GetImageSize(), std::uint64_t{2411136128} * 956330496);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_REFUSED);
    SetSize(2147483648, 2147483648);
    SetFormat("RGBa12", 0x02400061);
    EXPECT_EQ(Mode().GetImageSize(), kMost);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_REFUSED);
    SetSize(2411136128, 956330496);
    EXPECT_EQ(Mode().GetImageSize(), kMost);
    EXPECT_EQ(Grabber().PrepareFrameBuffers(1), MV_REFUSED);
    SetSize(3, 5);
    EXPECT_EQ(Mode().GetImageSize(), 120u);
}

TEST_F(GfxMode, APixelFormatWithoutNameIsUnknown) {
    Open();
    Grabber().Api().PxnFeatureEnumGet = [](PxnHandle, const char*, const char** value) -> PxnError {
        *value = nullptr;
        return PxnErrSuccess;
    };
    EXPECT_EQ(Mode().GetFormatPropertiesByPixelFormat(), nullptr);
    EXPECT_EQ(
        Log().back(),
        "0 CMivoraGfxModeKVNPyxen::GetFormatPropertiesByPixelFormat: PxnFeatureEnumGet reports pixelformat  which is not supported!");
}

} // namespace
