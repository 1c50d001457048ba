// description_file_test.cpp - the file in a camera that describes its features
#include "services/description_file.h"

#include "tests/module/services/services_fixture.h"

using namespace pyxen;

namespace {

class DescriptionFileServices : public ServicesFixture {
protected:
    MV_SERVICE_RESULT ReadFile() {
        name.clear();
        content.clear();
        ReceiverOf<const char*, const void*, uint64_t> receiver{
            [&](const char* file, const void* data, uint64_t bytes) {
                name = file;
                content.assign(static_cast<const char*>(data), static_cast<std::size_t>(bytes));
            }};
        return Services().ReadDescriptionFile(receiver.Receive, &receiver, &reason);
    }
    void Put(uint64_t address, const std::string& bytes) {
        for (const char byte : bytes) {
            Camera().registers[address++] = static_cast<uint8_t>(byte);
        }
    }
    void PutUrl(std::string url) {
        url.resize(512, '\0');
        Put(0x200, url);
    }
    void PutNumber(uint64_t address, uint64_t number, unsigned bytes) {
        for (unsigned index = 0; index < bytes; ++index) {
            Camera().registers[address + index] = static_cast<uint8_t>(number >> (8 * index));
        }
    }
    void PutManifest(uint64_t count) {
        sdk.Data().interfaces[0].type = PxnTransportLayerU3V;
        PutNumber(0x1D0, 0x10000, 8);
        PutNumber(0x10000, count, 8);
    }
    void PutEntry(unsigned index, uint32_t version, uint32_t kind, uint64_t address,
                  uint64_t bytes) {
        const uint64_t entry = 0x10008 + index * 64u;
        PutNumber(entry, version, 4);
        PutNumber(entry + 4, kind, 4);
        PutNumber(entry + 8, address, 8);
        PutNumber(entry + 16, bytes, 8);
    }
    std::string Refusal() {
        EXPECT_EQ(ReadFile(), MV_SERVICE_NOT_SUPPORTED);
        EXPECT_EQ(name, "");
        const std::string text = Reason();
        const std::string common = "the camera names no description file: ";
        EXPECT_TRUE(text.starts_with(common)) << text;
        return text.substr(std::min(common.size(), text.size()));
    }

    std::string name;
    std::string content;
};

TEST_F(DescriptionFileServices, FollowTheUrlOfAGigEVisionCamera) {
    Init();
    EXPECT_EQ(ReadFile(), MV_SERVICE_NO_CAMERA);
    PutUrl("Local:model.zip;2000;5?SchemaVersion=1.1.0");
    Put(0x2000, "PK\x03\x04!");
    ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
    Forget();
    ASSERT_EQ(ReadFile(), MV_SERVICE_OK);
    EXPECT_EQ(name, "model.zip");
    EXPECT_EQ(content, "PK\x03\x04!");
    EXPECT_EQ(sdk.TakeCalls({"PxnMemoryRead"}).size(), 2u);
    PutUrl("LOCAL:///model.xml;0x2000;2");
    ASSERT_EQ(ReadFile(), MV_SERVICE_OK);
    EXPECT_EQ(name, "model.xml");
    EXPECT_EQ(content, "PK");
}

TEST_F(DescriptionFileServices, TakeHexadecimalNumbersOfBothSpellings) {
    PutUrl("Local:model.xml;0X2000;0x3?SchemaVersion=1.0.0");
    Put(0x2000, "xml");
    Open();
    ASSERT_EQ(ReadFile(), MV_SERVICE_OK);
    EXPECT_EQ(content, "xml");
}

TEST_F(DescriptionFileServices, ReadLargeFilesInParts) {
    PutUrl("Local:model.xml;100000;12345");
    Put(0x100000 + 0x12344, "z");
    Open();
    ASSERT_EQ(ReadFile(), MV_SERVICE_OK);
    EXPECT_EQ(content.size(), 0x12345u);
    EXPECT_EQ(content.back(), 'z');
    EXPECT_EQ(sdk.TakeCalls({"PxnMemoryRead"}).size(), 3u);
}

TEST_F(DescriptionFileServices, SayThatThereIsNone) {
    Open();
    EXPECT_EQ(Refusal(), "its URL is empty");
    for (const char* const url :
         {"File:model.zip", "http://example.org/model.zip", "Local:model.zip", "Local:model.zip;20",
          "Local:model.zip;2x;5", "Local:model.zip;20;", "Local:model.zip;;5",
          "Local:model.zip;x;5", "Loc"}) {
        PutUrl(url);
        EXPECT_EQ(Refusal(), std::string("its URL is \"") + url + "\"");
    }
    PutUrl("Local:model.zip;20;0");
    EXPECT_EQ(Refusal(), "it has 0 bytes");
    PutUrl("Local:model.zip;20;FFFFFFFF");
    EXPECT_EQ(Refusal(), "it has 4294967295 bytes");
    for (const PxnError code : {PxnErrInvalidAddress, PxnErrNotSupported, PxnErrNotImplemented}) {
        sdk.Fail("PxnMemoryRead", code);
        EXPECT_EQ(Refusal(), "it has no such registers");
    }
    sdk.Fail("PxnInterfacesList", PxnErrIO);
    EXPECT_EQ(Refusal(), "it is neither a GigE Vision nor a USB3 Vision camera");
    sdk.Data().interfaces[0].type = PxnTransportLayerCL;
    EXPECT_EQ(Refusal(), "it is neither a GigE Vision nor a USB3 Vision camera");
}

TEST_F(DescriptionFileServices, ReportAReadThatFails) {
    PutUrl("Local:model.zip;2000;8");
    Open();
    sdk.Fail("PxnMemoryRead", PxnErrBadHandle);
    EXPECT_EQ(ReadFile(), MV_SERVICE_NO_CAMERA);
    EXPECT_EQ(Reason(), "the description file: the camera has gone");
    sdk.Fail("PxnMemoryRead", PxnErrTimeout, 2);
    EXPECT_EQ(ReadFile(), MV_SERVICE_SDK_FAILED);
    EXPECT_TRUE(Reason().ends_with(" (-12)"));
    Camera().transferLimit = 4;
    EXPECT_EQ(ReadFile(), MV_SERVICE_SDK_FAILED);
    EXPECT_TRUE(Reason().ends_with(" (-19)"));
}

TEST_F(DescriptionFileServices, FollowTheManifestOfAUsb3VisionCamera) {
    PutManifest(4);
    PutEntry(0, 0x01000000, 0, 0x20000, 3);
    PutEntry(1, 0x01020000, 1u << 10, 0x30000, 6);
    PutEntry(2, 0x01010000, 0, 0x20000, 3);
    PutEntry(3, 0x09000000, 1, 0x20000, 3); // no file of features
    Put(0x20000, "xml");
    Put(0x30000, "zipped");
    Open();
    ASSERT_EQ(ReadFile(), MV_SERVICE_OK);
    EXPECT_EQ(name, "description.zip");
    EXPECT_EQ(content, "zipped");
    PutNumber(0x10000, 1, 8);
    ASSERT_EQ(ReadFile(), MV_SERVICE_OK);
    EXPECT_EQ(name, "description.xml");
    EXPECT_EQ(content, "xml");
}

TEST_F(DescriptionFileServices, RefuseAManifestWithoutAFile) {
    PutManifest(0);
    Open();
    EXPECT_EQ(Refusal(), "its table has none");
    PutManifest(1025);
    EXPECT_EQ(Refusal(), "its table has 1025 entries");
    PutManifest(1);
    for (unsigned nth = 1; nth <= 4; ++nth) {
        PutEntry(0, 1, 0, 0x20000, 3);
        sdk.Fail("PxnMemoryRead", PxnErrInvalidAddress, nth);
        EXPECT_EQ(Refusal(), "it has no such registers");
    }
}

} // namespace
