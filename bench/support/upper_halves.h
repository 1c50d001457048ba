// upper_halves.h - clearing the upper halves of the vector registers
#pragma once

/// Clears the vector registers beyond their lower 16 bytes. A measurement that copies 64 bytes at a
/// time may leave them in use, and that would slow down SSE code measured after it.
void ClearUpperHalves();
