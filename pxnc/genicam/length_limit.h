// length_limit.h - registers whose length another node names
#pragma once

#include <arv.h>

namespace genicam {

/// Makes every register of the description whose length another node names (pLength) take a length
/// that is negative or above kLongestRegister for 0, whenever it is asked for: Aravis allocates
/// whatever the camera says there. Evaluates nothing. To be called before anything is evaluated,
/// and before CheckDescription, which finds circles.
void LimitRegisterLengths(ArvGc* description);

} // namespace genicam
