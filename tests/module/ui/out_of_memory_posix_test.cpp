// What the feature control dialog reads when there is no memory for it.
#include "tests/module/sdk/loaded_api.h"
#include "tests/support/allocations/failing_allocations.h"
#include "ui/feature_reader.h"

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
        leaf.handle = scripted::CameraHandle();
        leaf.name = "It";
    }

    /// The lines of `operation`, whose first allocation is refused.
    template <class Operation>
    Texts LinesOf(const Operation& operation) {
        support::RefuseAllocationsAfter(0, support::Refusal::kOne);
        operation();
        EXPECT_TRUE(support::GrantAllocations());
        return sink.Take();
    }

    FeatureLeaf leaf;
    FeatureReader reader{api, &sink};
    const std::string tag = "0 CKVNPyxenFeatureCtrlDialog::";
    const std::string noEntries = tag + "GetEnumRange: Could not allocate memory for enum entries";
};

TEST_F(ReaderOutOfMemory, CannotListTheEntriesOfAnEnumeration) {
    EnumRange range;
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.GetEnumRange(leaf.handle, "It", true, range)); }),
              (Texts{noEntries}));
    EXPECT_EQ(range.count, 0u);
}

TEST_F(ReaderOutOfMemory, TreatsThatAsAFailedRead) {
    PxnFeatureInfo description{};
    description.featureDataType = PxnFeatureDataEnum;
    const std::string cannotEdit = tag + "AttrSelected: Could not query range of enum It";
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.EnumToEdit(leaf)); }),
              (Texts{noEntries, cannotEdit}));
    EXPECT_EQ(LinesOf([&] { EXPECT_EQ(reader.RangeText(leaf, description), ""); }),
              (Texts{noEntries, cannotEdit}));
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.EnumToRefresh(leaf)); }),
              (Texts{noEntries, tag + "RefreshCurrentForm: Could not query range of enum It"}));
}

TEST_F(ReaderOutOfMemory, CannotEditAText) {
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.StringToEdit(leaf)); }),
              (Texts{tag + "AttrSelected: Could not allocate memory for string It"}));
}

TEST_F(ReaderOutOfMemory, CannotRefreshAText) {
    EXPECT_EQ(LinesOf([&] { EXPECT_FALSE(reader.StringToRefresh(leaf)); }),
              (Texts{tag + "RefreshCurrentForm: Could get string It: Other error"}));
}

} // namespace
