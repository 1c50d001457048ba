// serial_dialog_logic_test.cpp - what the serial configuration dialog decides without its window
#include "ui/serial_dialog_logic.h"

#include <gtest/gtest.h>

using namespace pyxen;

namespace {

using Choices = std::vector<std::uint32_t>;

constexpr SerialField kDialogFields[] = {SerialField::kBaud, SerialField::kParity,
                                         SerialField::kByteSize, SerialField::kStopBits};

SerialDialogData TwoPorts() {
    SerialDialogData data;
    data.ports = {{0, "PYXENSERIALPORT0", "Serial port 0", 1u << 5 | 1u << 9},
                  {3, "PYXENSERIALPORT3", "Serial port 3", 0xFFFFFFFF}};
    return data;
}

TEST(SerialDialogLogic, OffersNothingWithoutAPort) {
    SerialDialogData data = TwoPorts();
    for (const std::int32_t index : {-1, 2, INT32_MIN, INT32_MAX}) {
        data.portIndex = index;
        EXPECT_EQ(SelectedSerialPort(data), nullptr) << index;
        for (const SerialField field : kDialogFields) {
            EXPECT_EQ(OfferedSerialChoices(data, field), Choices{}) << index;
        }
    }
    EXPECT_EQ(SelectedSerialPort({}), nullptr);
}

TEST(SerialDialogLogic, OffersWhatTheSelectedPortAllows) {
    SerialDialogData data = TwoPorts();
    data.portIndex = 0;
    EXPECT_EQ(SelectedSerialPort(data), &data.ports[0]);
    EXPECT_EQ(OfferedSerialChoices(data, SerialField::kBaud), (Choices{5, 9}));
    EXPECT_EQ(OfferedSerialChoices(data, SerialField::kParity), Choices{});
    data.portIndex = 1;
    for (const SerialField field : kDialogFields) {
        EXPECT_EQ(OfferedSerialChoices(data, field).size(), SerialChoiceCount(field));
    }
}

TEST(SerialDialogLogic, KeepsEachFieldApart) {
    SerialSettings settings;
    std::uint32_t value = 100;
    for (const SerialField field : kDialogFields) {
        SerialSettingOf(settings, field) = value++;
    }
    EXPECT_EQ(settings.baudIndex, 100u);
    EXPECT_EQ(settings.parityIndex, 101u);
    EXPECT_EQ(settings.byteSizeIndex, 102u);
    EXPECT_EQ(settings.stopBitsIndex, 103u);
}

TEST(SerialDialogLogic, ReadsADelayAsANumber) {
    EXPECT_EQ(ParseDelay("250"), 250u);
    EXPECT_EQ(ParseDelay("0"), 0u);
    EXPECT_EQ(ParseDelay("007"), 7u);
    EXPECT_EQ(ParseDelay(" \t\n12"), 12u);
    EXPECT_EQ(ParseDelay("+3"), 3u);
    EXPECT_EQ(ParseDelay("4294967295"), 4294967295u);
}

TEST(SerialDialogLogic, LeavesAloneWhatFollowsTheDelay) {
    EXPECT_EQ(ParseDelay("250 ms"), 250u);
    EXPECT_EQ(ParseDelay("12abc"), 12u);
    EXPECT_EQ(ParseDelay("1.9"), 1u);
    EXPECT_EQ(ParseDelay("0x10"), 0u);
}

TEST(SerialDialogLogic, WrapsADelayThatDoesNotFit) {
    EXPECT_EQ(ParseDelay("4294967296"), 0u);
    EXPECT_EQ(ParseDelay("-1"), 4294967295u);
    EXPECT_EQ(ParseDelay("-0"), 0u);
}

TEST(SerialDialogLogic, RefusesADelayThatIsNoNumber) {
    for (const char* text : {"", " ", "ms", "abc12", "-", "+", "+-1", "--1", "- 1", ".5", "\xE2"}) {
        EXPECT_EQ(ParseDelay(text), std::nullopt) << text;
    }
}

TEST(SerialDialogLogic, ShowsADelayAsUnsigned) {
    EXPECT_EQ(FormatDelay(0), "0");
    EXPECT_EQ(FormatDelay(4294967295u), "4294967295");
}

} // namespace
