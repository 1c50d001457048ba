// configuration.h - the chosen camera, remembered across runs
#pragma once

#include "mivora/types.h"

#include <cstdint>

class CameraIdentity;
class CIniFile;

/// Reads the chosen camera from the grabber's section; none is chosen where the key is absent or
/// `ini` is null. False when out of memory.
bool LoadChosenCamera(const CIniFile* ini, std::int32_t sectionNumber, CameraIdentity& identity);
/// Writes an identifier (null: none) to the grabber's section. Does nothing if `ini` is null.
void SaveChosenCamera(CIniFile* ini, std::int32_t sectionNumber, const char* id);
