// upper_halves.h - what one measurement leaves behind in the processor
#pragma once

/// A copy by 64 bytes at a time may leave the upper halves of the vector registers in use, which
/// slows down code that knows only their lower 16 bytes. Whoever is measured starts without.
void ClearUpperHalves();
