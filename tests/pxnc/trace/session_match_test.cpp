// session_match_test.cpp - which pointers of a session stand for which of its trace
#include "pxnc/trace/session_match.h"

#include "tests/pxnc/trace/trace_fixture.h"

namespace trace_tests {
namespace {

using sdktrace::Pointee;
using sdktrace::SessionMatch;
using sdktrace::ValuesOf;

template <typename... Arguments>
std::vector<sdktrace::Value> Values(Entry entry, Arguments... arguments) {
    return ValuesOf(entry, ToWords(arguments...));
}

TEST(SessionMatchTest, ComparesNumbersTextsAndPlaces) {
    const SessionMatch match;
    std::int64_t place = 0;
    const auto traced = Values(Entry::kPxnFeatureIntGet, PXN_SYSTEM_HANDLE, "Width", &place);
    std::int64_t other = 0;
    const auto matches = [&](const char* name, std::int64_t* value) {
        return match.Matches(Entry::kPxnFeatureIntGet, traced,
                             Values(Entry::kPxnFeatureIntGet, PXN_SYSTEM_HANDLE, name, value));
    };
    EXPECT_TRUE(matches("Width", &other));
    EXPECT_FALSE(matches("Height", &other));
    EXPECT_FALSE(matches(nullptr, &other));
    EXPECT_FALSE(matches("Width", nullptr));
}

TEST(SessionMatchTest, ComparesTheNamesOfFiles) {
    const SessionMatch match;
    const auto traced = Values(Entry::kPxnStartup, L"/home/a/PxnC.xml");
    const auto matches = [&](const wchar_t* path) {
        return match.Matches(Entry::kPxnStartup, traced, Values(Entry::kPxnStartup, path));
    };
    EXPECT_TRUE(matches(L"C:\\b\\PxnC.xml"));
    EXPECT_TRUE(matches(L"PxnC.xml"));
    EXPECT_FALSE(matches(L"/home/a/Other.xml"));
    EXPECT_FALSE(matches(nullptr));
}

TEST(SessionMatchTest, LearnsFramesAndHoldsOnToThem) {
    SessionMatch match;
    PxnFrame traced[2]{};
    PxnFrame now[2]{};
    for (int i = 0; i < 2; ++i) {
        traced[i].bufferSize = now[i].bufferSize = 100;
        const auto before = Values(Entry::kPxnFrameAnnounce, nullptr, &traced[i], 112u);
        const auto after = Values(Entry::kPxnFrameAnnounce, nullptr, &now[i], 112u);
        ASSERT_TRUE(match.Matches(Entry::kPxnFrameAnnounce, before, after));
        match.Learn(Entry::kPxnFrameAnnounce, before, after);
    }
    const auto isSame = [&](const PxnFrame* before, const PxnFrame* after) {
        return match.Matches(Entry::kPxnFrameRevoke,
                             Values(Entry::kPxnFrameRevoke, nullptr, before),
                             Values(Entry::kPxnFrameRevoke, nullptr, after));
    };
    EXPECT_TRUE(isSame(&traced[1], &now[1]));
    EXPECT_FALSE(isSame(&traced[1], &now[0]));
    EXPECT_FALSE(isSame(&traced[1], nullptr));
    EXPECT_EQ(match.Current(Pointee::kFrame, sdktrace::ToWord(&traced[0])),
              sdktrace::ToWord(&now[0]));
    EXPECT_EQ(match.Current(Pointee::kFrame, sdktrace::ToWord(&now[0])), std::nullopt);
    now[1].bufferSize = 99;
    EXPECT_FALSE(match.Matches(Entry::kPxnFrameAnnounce,
                               Values(Entry::kPxnFrameAnnounce, nullptr, &traced[1], 112u),
                               Values(Entry::kPxnFrameAnnounce, nullptr, &now[1], 112u)));
}

TEST(SessionMatchTest, ForgetsFramesThatWereTakenBack) {
    const auto handle = [](std::uintptr_t number) {
        return reinterpret_cast<PxnHandle>(number);
    };
    PxnFrame frames[4]{};
    SessionMatch match;
    const auto call = [&](Entry entry, auto... arguments) {
        const auto values = Values(entry, arguments...);
        match.Learn(entry, values, values);
        match.Forget(entry, values);
    };
    const auto known = [&] {
        std::string numbers;
        for (int number = 0; number < 4; ++number) {
            const bool isKnown =
                match.Current(Pointee::kFrame, sdktrace::ToWord(&frames[number])).has_value();
            numbers += isKnown ? std::to_string(number) : "";
        }
        return numbers;
    };
    call(Entry::kPxnStartup, L"a");
    call(Entry::kPxnStartup, L"a");
    for (int number = 0; number < 4; ++number) {
        call(Entry::kPxnFrameAnnounce, handle(number < 2 ? 1 : 2), &frames[number], 112u);
    }
    EXPECT_EQ(known(), "0123");
    call(Entry::kPxnFrameRevoke, handle(1), &frames[0]);
    EXPECT_EQ(known(), "123");
    call(Entry::kPxnFrameRevokeAll, handle(1));
    EXPECT_EQ(known(), "23");
    call(Entry::kPxnFrameAnnounce, handle(1), &frames[0], 112u);
    call(Entry::kPxnCameraClose, handle(2));
    EXPECT_EQ(known(), "0");
    call(Entry::kPxnShutdown);
    EXPECT_EQ(known(), "0");
    call(Entry::kPxnShutdown);
    EXPECT_EQ(known(), "");
}

TEST(SessionMatchTest, TakesNoPointerForOneOfAnotherKind) {
    SessionMatch match;
    const auto place = [](std::uintptr_t address) {
        return reinterpret_cast<void*>(address);
    };
    const auto learn = [&](Entry entry, auto... arguments) {
        const auto values = Values(entry, arguments...);
        match.Learn(entry, values, values);
    };
    learn(Entry::kPxnFrameAnnounce, PXN_SYSTEM_HANDLE, static_cast<PxnFrame*>(nullptr), 112u);
    learn(Entry::kPxnCaptureFrameQueue, PXN_SYSTEM_HANDLE, place(1), place(2));
    learn(Entry::kPxnFeatureInvalidationRegister, PXN_SYSTEM_HANDLE, "Width", place(3), place(4));
    learn(Entry::kPxnChunkDataAccess, place(5), place(6), place(7));
    learn(Entry::kPxnSettingsLoad, PXN_SYSTEM_HANDLE, L"file", place(0), 0u);
    const auto known = [&](Pointee pointee) {
        std::string words;
        for (std::uint64_t word = 0; word < 8; ++word) {
            words += match.Current(pointee, word) ? std::to_string(word) : "";
        }
        return words;
    };
    EXPECT_EQ(known(Pointee::kFrame), "015");
    EXPECT_EQ(known(Pointee::kFrameCallback), "2");
    EXPECT_EQ(known(Pointee::kInvalidationCallback), "3");
    EXPECT_EQ(known(Pointee::kInvalidationContext), "4");
    EXPECT_EQ(known(Pointee::kChunkCallback), "6");
    EXPECT_EQ(known(Pointee::kChunkContext), "7");
}

TEST(SessionMatchTest, RefusesWhatIsNotInTheTrace) {
    EXPECT_FALSE(SessionMatch().Matches(Entry::kPxnFeatureCommandRun, {},
                                        Values(Entry::kPxnFeatureCommandRun, nullptr, "A")));
}

} // namespace
} // namespace trace_tests
