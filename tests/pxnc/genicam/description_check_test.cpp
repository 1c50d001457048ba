// description_check_test.cpp - descriptions that could not be evaluated are recognised
#include "pxnc/genicam/description_check.h"

#include "platform/file_system.h"
#include "tests/pxnc/genicam/memory_device.h"

#include <gtest/gtest.h>

#include <string>

namespace genicam_test {
namespace {

PxnError CheckText(const std::string& text) {
    const auto device = MakeMemoryDevice(text);
    ArvGc* const description = arv_device_get_genicam(device.get());
    EXPECT_TRUE(description) << text;
    return description ? genicam::CheckDescription(description, text) : PxnError{PxnErrSuccess};
}

/// A description with these nodes.
PxnError CheckNodes(const std::string& nodes) {
    return CheckText("<RegisterDescription ModelName=\"M\" VendorName=\"V\">" + nodes +
                     "</RegisterDescription>");
}

std::string Integer(const std::string& name, const std::string& value) {
    return "<Integer Name=\"" + name + "\">" + value + "</Integer>";
}

/// Integers N1 to N`count`, each of which takes its value from the next one.
std::string Chain(unsigned count) {
    std::string nodes;
    for (unsigned at = 1; at < count; ++at) {
        nodes +=
            Integer("N" + std::to_string(at), "<pValue>N" + std::to_string(at + 1) + "</pValue>");
    }
    return nodes + Integer("N" + std::to_string(count), "<Value>1</Value>");
}

/// Numbers that each use the next one twice.
std::string Doubling(unsigned count) {
    std::string nodes;
    for (unsigned at = 0; at < count; ++at) {
        const std::string next = "D" + std::to_string(at + 1);
        nodes += "<IntSwissKnife Name=\"D" + std::to_string(at) + "\"><pVariable Name=\"A\">" +
                 next + "</pVariable><pVariable Name=\"B\">" + next +
                 "</pVariable><Formula>A + B</Formula></IntSwissKnife>";
    }
    return nodes + Integer("D" + std::to_string(count), "<Value>1</Value>");
}

TEST(DescriptionCheck, TakesADescriptionWithNodesOfEveryKind) {
    std::string text;
    ASSERT_TRUE(
        platform::ReadWholeFile(MIVORA_SOURCE_DIR "/tests/pxnc/genicam/test_camera.xml", text));
    EXPECT_EQ(CheckText(text), PxnErrSuccess);
}

TEST(DescriptionCheck, TakesReferencesToNothing) {
    EXPECT_EQ(CheckNodes(Integer("A", "<pValue>Nothing</pValue>")), PxnErrSuccess);
}

TEST(DescriptionCheck, RefusesValuesThatDependOnThemselves) {
    const std::string circles[] = {
        Integer("A", "<pValue>A</pValue>"),
        Integer("A", "<pValue>B</pValue>") + Integer("B", "<pValue>A</pValue>"),
        Integer("A", "<pIndex>B</pIndex><ValueIndexed Index=\"0\">1</ValueIndexed>") +
            Integer("B", "<pValue>A</pValue>"),
        "<IntSwissKnife Name=\"A\"><pVariable Name=\"V\">B</pVariable><Formula>V</Formula>"
        "</IntSwissKnife>" +
            Integer("B", "<pValue>A</pValue>"),
        "<IntReg Name=\"A\"><pAddress>B</pAddress><Length>4</Length></IntReg>" +
            Integer("B", "<pValue>A</pValue>"),
        "<IntReg Name=\"A\"><Address>0</Address><pLength>A</pLength></IntReg>",
        "<IntReg Name=\"A\"><Address>0</Address><pIndex pOffset=\"A\">B</pIndex></IntReg>" +
            Integer("B", "<Value>1</Value>"),
        "<Enumeration Name=\"A\"><EnumEntry Name=\"E\"><pValue>A</pValue></EnumEntry>"
        "<Value>1</Value></Enumeration>",
        "<StructReg><pAddress>A</pAddress><Length>4</Length><StructEntry Name=\"A\"><Bit>1</Bit>"
        "</StructEntry></StructReg>",
        "<IntReg Name=\"A\"><IntSwissKnife Name=\"K\"><pVariable Name=\"V\">A</pVariable>"
        "<Formula>V</Formula></IntSwissKnife><Length>4</Length></IntReg>",
        "<Group Comment=\"G\">" + Integer("A", "<pValue>A</pValue>") + "</Group>",
    };
    for (const std::string& nodes : circles) {
        EXPECT_EQ(CheckNodes(nodes), PxnErrXml) << nodes;
    }
}

TEST(DescriptionCheck, TellsTheOffsetsOfIndicesApart) {
    const std::string port = "<Port Name=\"Device\"/>";
    const auto indexed = [](const std::string& name, const std::string& index) {
        return "<IntReg Name=\"" + name + "\"><Address>0</Address><Length>4</Length>" + index +
               "<pPort>Device</pPort></IntReg>";
    };
    const std::string nodes = Integer("I", "<Value>1</Value>") +
                              indexed("A", "<pIndex pOffset=\"B\">I</pIndex>") +
                              indexed("B", "<!-- <pIndex/> --><pIndex Offset=\"4\">I</pIndex>");
    EXPECT_EQ(CheckNodes(nodes + port), PxnErrSuccess);
    // Aravis takes what stands before a fault.
    EXPECT_EQ(CheckText("<RegisterDescription>" + nodes + port + "<"), PxnErrXml);
    // Letters of another encoding are no reason.
    EXPECT_EQ(
        CheckText(
            "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><RegisterDescription><!-- \xB5s -->" +
            nodes + port + "</RegisterDescription>"),
        PxnErrSuccess);
}

TEST(DescriptionCheck, RefusesRegistersThatNoMemoryHolds) {
    const auto check = [](const std::string& length) {
        return CheckNodes("<StringReg Name=\"A\"><Address>0</Address><Length>" + length +
                          "</Length></StringReg>");
    };
    EXPECT_EQ(check("0"), PxnErrSuccess);
    EXPECT_EQ(check("0x1000000"), PxnErrSuccess);
    EXPECT_EQ(check("0x1000001"), PxnErrXml);
    EXPECT_EQ(check("0x7FFFFFFFFFFFFFFF"), PxnErrXml);
    EXPECT_EQ(check("-1"), PxnErrXml);
}

TEST(DescriptionCheck, TakesLimitsThatDependOnEachOthersValues) {
    const auto side = [](const std::string& name, const std::string& other) {
        return Integer(name, "<Value>1</Value><pMax>" + name + "Max</pMax><pIsLocked>" + other +
                                 "</pIsLocked>") +
               "<IntSwissKnife Name=\"" + name + "Max\"><pVariable Name=\"V\">" + other +
               "</pVariable><Formula>100 - V</Formula></IntSwissKnife>";
    };
    EXPECT_EQ(CheckNodes(side("Width", "OffsetX") + side("OffsetX", "Width")), PxnErrSuccess);
}

TEST(DescriptionCheck, RefusesAChainOfMoreThan200Values) {
    EXPECT_EQ(CheckNodes(Chain(200)), PxnErrSuccess);
    EXPECT_EQ(CheckNodes(Chain(201)), PxnErrXml);
    EXPECT_EQ(CheckNodes(Chain(100000)), PxnErrXml);
}

TEST(DescriptionCheck, RefusesAChainWhoseEndStandsBeforeItsBeginning) {
    std::string nodes;
    for (unsigned at = 0; at < 250; ++at) {
        nodes += Integer("N" + std::to_string(at),
                         at == 0 ? "<Value>1</Value>"
                                 : "<pValue>N" + std::to_string(at - 1) + "</pValue>");
    }
    EXPECT_EQ(CheckNodes(nodes), PxnErrXml);
}

TEST(DescriptionCheck, RefusesAValueOfMoreThanAMillionEvaluations) {
    EXPECT_EQ(CheckNodes(Doubling(18)), PxnErrSuccess);
    EXPECT_EQ(CheckNodes(Doubling(19)), PxnErrXml);
    EXPECT_EQ(CheckNodes(Doubling(64)), PxnErrXml);
}

} // namespace
} // namespace genicam_test
