// base_calls.h - the calls that the grabber makes of its base class
#pragma once

#include "mivora/grabber.h"

#include <cstdint>
#include <functional>
#include <optional>

/// While it exists, shows calls of base class operations that have no effect a test could see. The
/// linker redirects the program's calls of them (--wrap). One at a time.
class BaseCalls {
public:
    BaseCalls();
    ~BaseCalls();
    BaseCalls(const BaseCalls&) = delete;
    BaseCalls& operator=(const BaseCalls&) = delete;

    // Run before the operation, if set.
    std::function<void()> onInit;
    std::function<void(MV_WINDOW parent)> onCamCntrlDialog;
    std::function<void(std::uint64_t count)> onPrepareFrameBuffers;
    /// Returned in place of running the operation, if set.
    std::optional<MV_ERRCODE> loadResult;
};
