// sdk_library.cpp - the built GenICam library, loaded as a host loads it
#include "tests/pxnc/genicam/sdk_library.h"

#include "platform/file_system.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

namespace genicam_test {
namespace {

void* Resolve(const platform::SharedLibrary& library, const char* name) {
    void* entry = library.FindSymbol(name);
    if (!entry) {
        std::fprintf(stderr, "the library lacks %s\n", name);
        std::exit(1);
    }
    return entry;
}

} // namespace

const SdkLibrary& SdkLibrary::Instance() {
    static const SdkLibrary instance;
    return instance;
}

SdkLibrary::SdkLibrary() {
    const std::string path = platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()),
                                                "genicam/Bin/libPxnC.so");
    std::string error;
    if (!library.Load(path, true, &error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        std::exit(1);
    }
#define GENICAM_TEST_RESOLVE(name)                                                                 \
    name = reinterpret_cast<decltype(name)>(Resolve(library, "Pxn" #name));
    GENICAM_TEST_ENTRIES(GENICAM_TEST_RESOLVE)
#undef GENICAM_TEST_RESOLVE
}

std::vector<PxnCameraInfo> ListCameras() {
    std::uint32_t found = 0;
    EXPECT_EQ(SdkLibrary::Instance().CamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)),
              PxnErrSuccess);
    // Cameras may appear between the two calls; the second one's count holds.
    std::vector<PxnCameraInfo> cameras(found + 8);
    EXPECT_EQ(SdkLibrary::Instance().CamerasList(cameras.data(),
                                                 static_cast<std::uint32_t>(cameras.size()), &found,
                                                 sizeof(PxnCameraInfo)),
              PxnErrSuccess);
    cameras.resize(found);
    return cameras;
}

std::vector<PxnFeatureInfo> ListFeatures(PxnHandle handle) {
    std::uint32_t found = 0;
    EXPECT_EQ(
        SdkLibrary::Instance().FeaturesList(handle, nullptr, 0, &found, sizeof(PxnFeatureInfo)),
        PxnErrSuccess);
    std::vector<PxnFeatureInfo> features(found);
    EXPECT_EQ(SdkLibrary::Instance().FeaturesList(handle, features.data(), found, &found,
                                                  sizeof(PxnFeatureInfo)),
              PxnErrSuccess);
    return features;
}

std::vector<std::string> EnumEntries(PxnHandle handle, const char* name) {
    std::uint32_t found = 0;
    EXPECT_EQ(SdkLibrary::Instance().FeatureEnumRangeQuery(handle, name, nullptr, 0, &found),
              PxnErrSuccess);
    std::vector<const char*> entries(found);
    EXPECT_EQ(
        SdkLibrary::Instance().FeatureEnumRangeQuery(handle, name, entries.data(), found, &found),
        PxnErrSuccess);
    return {entries.begin(), entries.end()};
}

std::string GetString(PxnHandle handle, const char* name) {
    std::uint32_t size = 0;
    EXPECT_EQ(SdkLibrary::Instance().FeatureStringGet(handle, name, nullptr, 0, &size),
              PxnErrSuccess)
        << name;
    std::string text(size, '\0');
    EXPECT_EQ(SdkLibrary::Instance().FeatureStringGet(handle, name, text.data(), size, &size),
              PxnErrSuccess)
        << name;
    return text.c_str();
}

PxnFeatureInfo FindFeature(PxnHandle handle, const char* name) {
    PxnFeatureInfo info = {};
    SdkLibrary::Instance().FeatureInfoQuery(handle, name, &info, sizeof info);
    return info;
}

} // namespace genicam_test
