// gdi_test.cpp - owners of device contexts, fonts and bitmaps
#include "tests/windows/test_host.h"

namespace {

using DrawingObjects = TestHost;

TEST_F(DrawingObjects, AreDeletedWithTheirOwners) {
    HGDIOBJ font = nullptr;
    HGDIOBJ bitmap = nullptr;
    HDC memory = nullptr;
    {
        CClientDC dc(&Frame());
        CFont made;
        LOGFONT description = {};
        description.lfHeight = -12;
        ASSERT_TRUE(made.CreateFontIndirect(&description));
        font = made.GetSafeHandle();
        CBitmap picture;
        ASSERT_TRUE(picture.CreateCompatibleBitmap(&dc, 8, 8));
        bitmap = picture.GetSafeHandle();
        CDC copy;
        ASSERT_TRUE(copy.CreateCompatibleDC(&dc));
        memory = copy.m_hDC;
        CBitmap* const before = copy.SelectObject(&picture);
        copy.FillSolidRect(CRect(0, 0, 8, 8), RGB(1, 2, 3));
        EXPECT_EQ(copy.GetPixel(4, 4), RGB(1, 2, 3));
        copy.SelectObject(before);
    }
    EXPECT_EQ(GetObjectType(font), 0u);
    EXPECT_EQ(GetObjectType(bitmap), 0u);
    EXPECT_EQ(GetObjectType(memory), 0u);
}

} // namespace
