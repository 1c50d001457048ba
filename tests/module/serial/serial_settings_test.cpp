// serial_settings_test.cpp - ports and line settings of a camera's serial ports
#include "serial/serial_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace pyxen;

namespace {

using Indices = std::vector<uint32_t>;

constexpr SerialField kFields[] = {SerialField::kBaud, SerialField::kParity, SerialField::kByteSize,
                                   SerialField::kStopBits};

TEST(SerialSettingsTest, KnowsFivePorts) {
    const struct {
        const char* iniName;
        const char* displayName;
        uint64_t base;
    } expected[] = {{"PYXENSERIALPORT0", "Serial port 0", 0x16000},
                    {"PYXENSERIALPORT1", "Serial port 1", 0x60000},
                    {"PYXENSERIALPORT2", "Serial port 2", 0x61000},
                    {"PYXENSERIALPORT3", "Serial port 3", 0x62000},
                    {"PYXENSERIALPORT4", "Serial port 4", 0x63000}};
    ASSERT_EQ(SerialPortTable().size(), std::size(expected));
    for (int32_t id = 0; id < 5; ++id) {
        const SerialPortRow* row = FindSerialPortById(id);
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(row->id, id);
        EXPECT_STREQ(row->iniName, expected[id].iniName);
        EXPECT_STREQ(row->displayName, expected[id].displayName);
        EXPECT_EQ(row->registerBase, expected[id].base);
        EXPECT_EQ(FindSerialPortByName(expected[id].iniName), row);
    }
    EXPECT_EQ(FindSerialPortByName("pyxenserialport3"), FindSerialPortById(3));
    EXPECT_EQ(FindSerialPortById(-1), nullptr);
    EXPECT_EQ(FindSerialPortById(5), nullptr);
    EXPECT_EQ(FindSerialPortByName(nullptr), nullptr);
    EXPECT_EQ(FindSerialPortByName(""), nullptr);
    EXPECT_EQ(FindSerialPortByName("PYXENSERIALPORT"), nullptr);
    EXPECT_EQ(FindSerialPortByName("PYXENSERIALPORT5"), nullptr);
}

TEST(SerialSettingsTest, EveryTextReadsBackAsItsIndex) {
    const std::vector<std::string> texts[] = {{"300", "600", "1200", "2400", "4800", "9600",
                                               "19200", "38400", "57600", "115200", "230400"},
                                              {"No", "Odd", "Even"},
                                              {"5", "6", "7", "8"},
                                              {"1", "1.5", "2"}};
    for (std::size_t field = 0; field < std::size(kFields); ++field) {
        ASSERT_EQ(SerialChoiceCount(kFields[field]), texts[field].size());
        for (uint32_t index = 0; index < texts[field].size(); ++index) {
            EXPECT_EQ(SerialText(kFields[field], index), texts[field][index]);
            EXPECT_EQ(SerialIndex(kFields[field], texts[field][index].c_str()), index);
        }
    }
}

TEST(SerialSettingsTest, UnknownTextsReadBackAsTheirDefault) {
    for (const char* text : {"", " 9600", "9600 ", "96", "115201", "Mark", "9", "3", "1,5"}) {
        EXPECT_EQ(SerialIndex(SerialField::kBaud, text), 0xFFFFFFFFu) << text;
        EXPECT_EQ(SerialIndex(SerialField::kParity, text), 0u) << text;
        EXPECT_EQ(SerialIndex(SerialField::kByteSize, text), 3u) << text;
        EXPECT_EQ(SerialIndex(SerialField::kStopBits, text), 0u) << text;
    }
    EXPECT_EQ(SerialIndex(SerialField::kParity, "oDD"), 1u);
    EXPECT_EQ(SerialIndex(SerialField::kParity, "EVEN"), 2u);
}

TEST(SerialSettingsTest, IndicesPastTheTableHaveAText) {
    for (const uint32_t index : {11u, 255u, 0xFFFFFFFFu}) {
        EXPECT_STREQ(SerialText(SerialField::kBaud, index), "0");
        EXPECT_STREQ(SerialText(SerialField::kParity, index), "No");
        EXPECT_STREQ(SerialText(SerialField::kByteSize, index), "8");
        EXPECT_STREQ(SerialText(SerialField::kStopBits, index), "1");
        for (const SerialField field : kFields) {
            EXPECT_EQ(SerialChoiceLabel(field, index), nullptr);
        }
    }
}

TEST(SerialSettingsTest, ChoicesHaveLabels) {
    const std::vector<std::string> labels[] = {
        {"300 Baud", "600 Baud", "1200 Baud", "2400 Baud", "4800 Baud", "9600 Baud", "19200 Baud",
         "38400 Baud", "57600 Baud", "115200 Baud", "230400 Baud"},
        {"No Parity", "Odd Parity", "Even Parity"},
        {"5 Bit", "6 Bit", "7 Bit", "8 Bit"},
        {"1 Stopbit", "1.5 Stopbits", "2 Stopbits"}};
    for (std::size_t field = 0; field < std::size(kFields); ++field) {
        for (uint32_t index = 0; index < labels[field].size(); ++index) {
            EXPECT_EQ(SerialChoiceLabel(kFields[field], index), labels[field][index]);
        }
    }
}

TEST(SerialSettingsTest, EachBitOfTheCapabilityWordAllowsOneChoice) {
    const struct {
        SerialField field;
        unsigned firstBit;
        uint32_t choices;
    } expected[] = {{SerialField::kBaud, 0, 11},
                    {SerialField::kParity, 16, 3},
                    {SerialField::kByteSize, 20, 4},
                    {SerialField::kStopBits, 24, 3}};
    for (unsigned bit = 0; bit < 32; ++bit) {
        for (const auto& row : expected) {
            Indices allowed;
            if (bit >= row.firstBit && bit < row.firstBit + row.choices) {
                allowed.push_back(bit - row.firstBit);
            }
            EXPECT_EQ(AllowedSerialChoices(row.field, 1u << bit), allowed) << bit;
        }
    }
}

TEST(SerialSettingsTest, APortOffersWhatItsCapabilityWordAllows) {
    const uint32_t capability = 1u << 5 | 1u << 9 | 0x5u << 16 | 0xCu << 20 | 0x1u << 24;
    EXPECT_EQ(AllowedSerialChoices(SerialField::kBaud, capability), (Indices{5, 9}));
    EXPECT_EQ(AllowedSerialChoices(SerialField::kParity, capability), (Indices{0, 2}));
    EXPECT_EQ(AllowedSerialChoices(SerialField::kByteSize, capability), (Indices{2, 3}));
    EXPECT_EQ(AllowedSerialChoices(SerialField::kStopBits, capability), Indices{0});
    for (const SerialField field : kFields) {
        EXPECT_TRUE(AllowedSerialChoices(field, 0).empty());
        EXPECT_EQ(AllowedSerialChoices(field, 0xFFFFFFFF).size(), SerialChoiceCount(field));
        EXPECT_FALSE(IsSerialChoiceAllowed(field, 0xFFFFFFFF, 0xFFFFFFFF));
        EXPECT_FALSE(IsSerialChoiceAllowed(field, SerialChoiceCount(field), 0xFFFFFFFF));
    }
}

TEST(SerialSettingsTest, TheModeWordHoldsEachIndexInItsField) {
    SerialSettings settings;
    EXPECT_EQ(SerialModeWord(settings), 0x0C09u);
    settings.baudIndex = 0xFFFFFFFF;
    EXPECT_EQ(SerialModeWord(settings), 0x0CFFu);
    settings = {};
    settings.baudIndex = 2;
    settings.parityIndex = 1;
    settings.byteSizeIndex = 2;
    settings.stopBitsIndex = 2;
    EXPECT_EQ(SerialModeWord(settings), 0x2902u);
    settings.baudIndex = 0x105;
    settings.parityIndex = 6;
    settings.byteSizeIndex = 5;
    settings.stopBitsIndex = 7;
    EXPECT_EQ(SerialModeWord(settings), 0x3605u);
}

} // namespace
