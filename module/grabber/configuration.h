// configuration.h - the chosen camera, remembered across runs
#pragma once

#include "mivora/types.h"

#include <cstdint>

class CIniFile;

namespace pyxen {

class CameraIdentity;

/// Reads the chosen camera from the grabber's section; none is chosen where the key is absent or
/// `ini` is null. At most 1023 bytes. False when out of memory.
bool LoadChosenCamera(const CIniFile* ini, std::int32_t sectionNumber, CameraIdentity& identity);
/// Writes an identifier (null: none) to the grabber's section, in double quotes and with escapes
/// (\r \n \" \\) where a line could not hold it otherwise. Does nothing if `ini` is null. False
/// when it is not written.
bool SaveChosenCamera(CIniFile* ini, std::int32_t sectionNumber, const char* id);

} // namespace pyxen
