// configuration.cpp - the chosen camera, remembered across runs
#include "grabber/configuration.h"

#include "grabber/camera_identity.h"
#include "mivora/grabber.h"

namespace {

constexpr const char* kUniqueIdKey = "UniqueId";
constexpr std::uint32_t kUniqueIdCapacity = 1024;

struct GrabberSection {
    explicit GrabberSection(std::int32_t number) { InitGrabberSectStr(name, sizeof name, number); }
    char name[64];
};

} // namespace

bool LoadChosenCamera(const CIniFile* ini, std::int32_t sectionNumber, CameraIdentity& identity) {
    char id[kUniqueIdCapacity] = "";
    if (ini) {
        ini->GetText(GrabberSection(sectionNumber).name, kUniqueIdKey, "", id, sizeof id);
    }
    return identity.Select(id);
}

void SaveChosenCamera(CIniFile* ini, std::int32_t sectionNumber, const char* id) {
    if (ini) {
        ini->WriteText(GrabberSection(sectionNumber).name, kUniqueIdKey, id ? id : "");
    }
}
