// peers.h - YUV 4:2:2 to RGB by other libraries
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

/// Converts images of one size from U, Y0, V, Y1 to R, G, B on one thread.
class Peer {
public:
    virtual ~Peer() = default;
    virtual const char* Name() const = 0;
    virtual void Convert(const std::uint8_t* source, std::uint8_t* destination) = 0;
};

/// Creates all converters for images of this size in pixels.
std::vector<std::unique_ptr<Peer>> MakePeers(int width, int height);
