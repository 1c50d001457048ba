#include "ui/feature_tree.h"

#include "sync/feature_cache.h"
#include "tests/module/sdk/loaded_api.h"
#include "ui/feature_value_text.h"

using namespace pyxen;

namespace {

class FeatureTreeRows : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        Camera().features.clear();
    }

    scripted::Module& Camera() { return sdk.Data().cameras[0]; }
    void Put(scripted::Feature feature, const std::string& category) {
        feature.category = category;
        Camera().features.push_back(std::move(feature));
    }
    void Fill() {
        ASSERT_TRUE(cache.Init("Camera", &api, scripted::CameraHandle(), &sink));
        tree.AddModule(cache);
    }
    /// Each row as its text below its parents', without the values.
    Texts Paths() {
        Texts paths;
        for (const FeatureTree::Row& row : tree.GetRows()) {
            const std::string name = row.text.substr(0, row.text.find('\t'));
            paths.push_back(row.parent == FeatureTree::kNone ? name
                                                             : paths[row.parent] + ">" + name);
        }
        return paths;
    }

    FeatureCache cache;
    FeatureTree tree;
};

TEST_F(FeatureTreeRows, StandInTheOrderOfTheCache) {
    Put(scripted::IntFeature("Width", 640, 0, 1000), "/Image/Size");
    Put(scripted::IntFeature("Gain", 1, 0, 10), "/Analog");
    Put(scripted::IntFeature("Height", 480, 0, 1000), "/Image/Size");
    Fill();
    EXPECT_EQ(Paths(),
              (Texts{"Camera", "Camera>Image", "Camera>Image>Size", "Camera>Image>Size>Width",
                     "Camera>Analog", "Camera>Analog>Gain", "Camera>Image>Size>Height"}));
    EXPECT_EQ(tree.GetRows()[3].text, "Width\t640");
    EXPECT_EQ(tree.GetRows()[3].leaf, 0u);
    EXPECT_EQ(tree.GetRows()[2].leaf, FeatureTree::kNone);
    ASSERT_EQ(tree.GetLeaves().size(), 3u);
    EXPECT_EQ(tree.GetLeaves()[2].name, "Height");
    EXPECT_EQ(tree.GetLeaves()[2].path, "/Camera/Image/Size/Height");
    EXPECT_EQ(tree.GetLeaves()[2].path, cache.GetFeaturePath("Height"));
    EXPECT_EQ(tree.GetLeaves()[2].moduleName, "Camera");
    EXPECT_EQ(tree.GetLeaves()[2].handle, scripted::CameraHandle());
}

TEST_F(FeatureTreeRows, SkipEmptyPiecesOfTheCategory) {
    Put(scripted::IntFeature("A", 1, 0, 10), "//Deep///Deeper/");
    Put(scripted::IntFeature("B", 1, 0, 10), "/");
    Put(scripted::IntFeature("C", 1, 0, 10), "");
    Fill();
    EXPECT_EQ(Paths(), (Texts{"Camera", "Camera>Deep", "Camera>Deep>Deeper", "Camera>Deep>Deeper>A",
                              "Camera>B", "Camera>C"}));
}

TEST_F(FeatureTreeRows, TellCategoriesApartByCase) {
    Put(scripted::IntFeature("A", 1, 0, 10), "/Deep/Deeper");
    Put(scripted::IntFeature("B", 1, 0, 10), "/deep/Deeper");
    Put(scripted::IntFeature("C", 1, 0, 10), "/Deep/DEEPER");
    Put(scripted::IntFeature("D", 1, 0, 10), "/Deep/Deeper");
    Fill();
    EXPECT_EQ(Paths(),
              (Texts{"Camera", "Camera>Deep", "Camera>Deep>Deeper", "Camera>Deep>Deeper>A",
                     "Camera>deep", "Camera>deep>Deeper", "Camera>deep>Deeper>B",
                     "Camera>Deep>DEEPER", "Camera>Deep>DEEPER>C", "Camera>Deep>Deeper>D"}));
}

TEST_F(FeatureTreeRows, LoseTheFirstCharacterOfACategoryWithoutSlash) {
    Put(scripted::IntFeature("A", 1, 0, 10), "Image/Size");
    Fill();
    EXPECT_EQ(Paths(), (Texts{"Camera", "Camera>mage", "Camera>mage>Size", "Camera>mage>Size>A"}));
}

TEST_F(FeatureTreeRows, TakeAFeatureOfThatNameForACategory) {
    Put(scripted::IntFeature("Size", 1, 0, 10), "/Image");
    Put(scripted::IntFeature("Width", 1, 0, 10), "/Image/Size");
    Fill();
    EXPECT_EQ(Paths(),
              (Texts{"Camera", "Camera>Image", "Camera>Image>Size", "Camera>Image>Size>Width"}));
}

TEST_F(FeatureTreeRows, AreNoneForAModuleWithoutFeatures) {
    Fill();
    EXPECT_TRUE(tree.GetRows().empty());
    FeatureCache empty;
    tree.AddModule(empty);
    EXPECT_TRUE(tree.GetRows().empty());
}

TEST_F(FeatureTreeRows, AreFoundByHandleAndName) {
    Put(scripted::IntFeature("Width", 1, 0, 10), "/Image");
    Put(scripted::IntFeature("Width", 2, 0, 10), "/Other");
    Fill();
    EXPECT_EQ(tree.FindLeaf(scripted::CameraHandle(), "Width"), 0u);
    EXPECT_EQ(tree.FindLeaf(scripted::CameraHandle(), "width"), std::nullopt);
    EXPECT_EQ(tree.FindLeaf(scripted::InterfaceHandle(), "Width"), std::nullopt);
    tree.Clear();
    EXPECT_EQ(tree.FindLeaf(scripted::CameraHandle(), "Width"), std::nullopt);
    EXPECT_TRUE(tree.GetLeaves().empty());
}

TEST_F(FeatureTreeRows, OutliveTheCache) {
    Put(scripted::IntFeature("Width", 1, 0, 10), "/ImageFormatControl");
    Fill();
    cache.Clear();
    EXPECT_EQ(tree.GetLeaves()[0].path, "/Camera/ImageFormatControl/Width");
    EXPECT_TRUE(tree.GetLeaves()[0].triggersRestart);
}

class ValueTexts : public FeatureTreeRows {
protected:
    std::string ValueOf(scripted::Feature feature) {
        Camera().features = {feature};
        return FormatFeatureValue({api, scripted::CameraHandle(), feature.name.c_str(),
                                   static_cast<FeatureType>(feature.type)});
    }
};

TEST_F(ValueTexts, FollowTheType) {
    EXPECT_EQ(ValueOf(scripted::IntFeature("It", -9000000000, INT64_MIN, INT64_MAX)),
              "-9000000000");
    EXPECT_EQ(ValueOf(scripted::FloatFeature("It", 1.23456789, 0, 2)), "1.234568");
    EXPECT_EQ(ValueOf(scripted::EnumFeature("It", "One", {{.name = "One"}})), "One");
    EXPECT_EQ(ValueOf(scripted::StringFeature("It", "a text")), "a text");
    EXPECT_EQ(ValueOf(scripted::StringFeature("It", "")), "");
    EXPECT_EQ(ValueOf(scripted::BoolFeature("It", true)), "True");
    EXPECT_EQ(ValueOf(scripted::BoolFeature("It", false)), "False");
    EXPECT_EQ(ValueOf(scripted::CommandFeature("It")), "<Press button below to execute>");
    EXPECT_EQ(ValueOf(scripted::RawFeature("It", {'x'})), "<unsupported>");
    scripted::Feature other = scripted::IntFeature("It", 1, 0, 2);
    other.type = PxnFeatureDataUnknown;
    EXPECT_EQ(ValueOf(other), "<unavailable>");
    other.type = PxnFeatureDataNone;
    EXPECT_EQ(ValueOf(other), "");
    other.type = 77;
    EXPECT_EQ(ValueOf(other), "");
}

TEST_F(ValueTexts, SayThatAValueCannotBeRead) {
    for (scripted::Feature feature :
         {scripted::IntFeature("It", 1, 0, 2), scripted::FloatFeature("It", 1, 0, 2),
          scripted::EnumFeature("It", "One", {{.name = "One"}}), scripted::StringFeature("It", "x"),
          scripted::BoolFeature("It", true)}) {
        feature.readable = false;
        EXPECT_EQ(ValueOf(feature), "<unavailable>") << feature.type;
    }
}

TEST_F(ValueTexts, AreEmptyWithoutAName) {
    EXPECT_EQ(FormatFeatureValue({api, scripted::CameraHandle(), nullptr, FeatureType::kInteger}),
              "");
    EXPECT_EQ(Texts{}, sdk.Calls());
}

} // namespace
