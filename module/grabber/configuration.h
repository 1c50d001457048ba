// configuration.h - what the module keeps in the grabber's section
#pragma once

#include "mivora/types.h"

#include <cstdint>

class CIniFile;

namespace pyxen {

class CameraIdentity;

/// Reads the chosen camera from the grabber's section; none is chosen where the key is absent or
/// `ini` is null. At most 1023 bytes. False when out of memory.
bool LoadChosenCamera(const CIniFile* ini, std::int32_t sectionNumber, CameraIdentity& identity);
/// The number of threads that convert a large image, as the grabber's section has it: 1 to
/// ConversionHelpers::kMostThreads, 1 where the key is absent or `ini` is null.
std::uint32_t LoadConversionThreads(const CIniFile* ini, std::int32_t sectionNumber);
/// Writes an identifier (null: none) to the grabber's section, in double quotes and with escapes
/// (\r \n \" \\) where a line could not hold it otherwise. Does nothing if `ini` is null. False
/// when it is not written.
bool SaveChosenCamera(CIniFile* ini, std::int32_t sectionNumber, const char* id);

} // namespace pyxen
