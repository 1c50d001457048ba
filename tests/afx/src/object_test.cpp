// object_test.cpp - run-time class information
#include "tests/afx/src/window_fixture.h"

#include <memory>

namespace {

TEST(RuntimeClasses, AreFoundByName) {
    EXPECT_EQ(CRuntimeClass::FromName("RecordingWindow"), RUNTIME_CLASS(RecordingWindow));
    EXPECT_EQ(CRuntimeClass::FromName("Nothing"), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("Nothing"), nullptr);
    EXPECT_EQ(CRuntimeClass::CreateObject("OverridingWindow"), nullptr); // has no dynamic creation
    const std::unique_ptr<CObject> made(CRuntimeClass::CreateObject("RecordingWindow"));
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CWnd)));
    EXPECT_FALSE(made->IsKindOf(RUNTIME_CLASS(OverridingWindow)));
}

} // namespace
