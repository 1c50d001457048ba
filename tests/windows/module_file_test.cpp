// What the module's own file brings for its dialogs.
#include "res/resource.h"

#include <afxwin.h>

#include <gtest/gtest.h>

namespace {

class ModuleFile : public ::testing::Test {
protected:
    ~ModuleFile() override { FreeLibrary(module); }

    HMODULE module = LoadLibraryEx(L"MivoraKVNPyxen.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
};

TEST_F(ModuleFile, CarriesItsTemplates) {
    ASSERT_NE(module, nullptr);
    for (const int id : {7000, 7001, 7004, 7006, 7008, 7009, 7011, 7013, IDD_SERIAL_CONFIG}) {
        EXPECT_NE(FindResource(module, MAKEINTRESOURCE(id), RT_DIALOG), nullptr) << id;
    }
}

TEST_F(ModuleFile, CarriesItsIconsInTheSizesOfSmallIcons) {
    ASSERT_NE(module, nullptr);
    for (const int id : {7019, 7021, 7025, 7027, 7029, 7032}) {
        const HRSRC found = FindResource(module, MAKEINTRESOURCE(id), RT_GROUP_ICON);
        ASSERT_NE(found, nullptr) << id;
        // Three counts, then a record of 14 bytes a picture that starts with its width.
        const auto* const group =
            static_cast<const unsigned char*>(LockResource(LoadResource(module, found)));
        ASSERT_EQ(group[4], 4) << id;
        EXPECT_EQ(group[6], 16);
        EXPECT_EQ(group[6 + 14], 20);
        EXPECT_EQ(group[6 + 28], 24);
        EXPECT_EQ(group[6 + 42], 32);
    }
}

TEST_F(ModuleFile, AsksForTheControlsOfVersionSix) {
    ASSERT_NE(module, nullptr);
    EXPECT_NE(FindResource(module, MAKEINTRESOURCE(2), RT_MANIFEST), nullptr);
}

TEST(ModuleApp, IsTheBinarysOwn) {
    ASSERT_NE(AfxGetApp(), nullptr);
    EXPECT_EQ(AfxGetApp()->m_hInstance, GetModuleHandle(nullptr));
    EXPECT_EQ(AfxGetInstanceHandle(), GetModuleHandle(nullptr));
}

} // namespace
