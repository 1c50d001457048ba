// out_of_memory_posix_test.cpp - what the feature control dialog reads when there is no memory
#include "tests/module/sdk/loaded_api.h"
#include "tests/support/allocations/failing_allocations.h"
#include "ui/feature_reader.h"

using namespace pyxen;

namespace {

class ReaderOutOfMemory : public LoadedApi {
protected:
    void SetUp() override {
        LoadedApi::SetUp();
        // Neither allocates, so that the first allocation is the reader's own.
        api.PxnFeatureEnumRangeQuery = [](PxnHandle, const char*, const char** entries,
                                          std::uint32_t, std::uint32_t* found) -> PxnError {
            *found = 3;
            return entries ? PxnErrInternalFault : PxnErrSuccess;
        };
        api.PxnFeatureStringGet = [](PxnHandle, const char*, char* buffer, std::uint32_t,
                                     std::uint32_t* filled) -> PxnError {
            *filled = 100;
            return buffer ? PxnErrInternalFault : PxnErrSuccess;
        };
    }

    /// The lines of `operation`, whose first allocation is refused.
    template <class Operation>
    Texts LinesOf(const Operation& operation) {
        support::RefuseAllocationsAfter(0, support::Refusal::kOne);
        operation();
        EXPECT_TRUE(support::GrantAllocations());
        return sink.Take();
    }

    Feature It(FeatureType type) { return {api, scripted::CameraHandle(), "It", type}; }

    FeatureReader reader{&sink};
    const std::string tag = "0 CKVNPyxenFeatureCtrlDialog::";
    const std::string noEntries = tag + "GetEnumRange: Could not allocate memory for enum entries";
};

TEST_F(ReaderOutOfMemory, CannotListTheEntriesOfAnEnumeration) {
    FeatureRange range;
    const Feature it = It(FeatureType::kEnumeration);
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.GetEnumRange(it, true, range)); }),
              (Texts{noEntries}));
    EXPECT_TRUE(range.entries.empty());
}

TEST_F(ReaderOutOfMemory, TreatsThatAsAFailedRead) {
    const Feature it = It(FeatureType::kEnumeration);
    const std::string cannotEdit = tag + "AttrSelected: Could not query range of enum It";
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.ToEdit(it)); }), (Texts{noEntries, cannotEdit}));
    EXPECT_EQ(LinesOf([&] { EXPECT_EQ(reader.RangeText(it, ""), ""); }),
              (Texts{noEntries, cannotEdit}));
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.ToRefresh(it)); }),
              (Texts{noEntries, tag + "RefreshCurrentForm: Could not query range of enum It"}));
}

TEST_F(ReaderOutOfMemory, CannotEditAText) {
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.ToEdit(It(FeatureType::kText))); }),
              (Texts{tag + "AttrSelected: Could not allocate memory for string It"}));
}

TEST_F(ReaderOutOfMemory, CannotRefreshAText) {
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.ToRefresh(It(FeatureType::kText))); }),
              (Texts{tag + "RefreshCurrentForm: Could get string It: Other error"}));
}

} // namespace
