// hand_over_scope.h - whether the calling thread hands over the image of a synchronous snap
#pragma once

namespace pyxen {

class Acquisition;

/// Marks the calling thread as handing over for an acquisition, for the scope's life.
class HandOverScope {
public:
    explicit HandOverScope(const Acquisition& handingOver);
    ~HandOverScope();
    HandOverScope(const HandOverScope&) = delete;
    HandOverScope& operator=(const HandOverScope&) = delete;

    /// True when the calling thread hands over for `acquisition`, directly or further out.
    static bool IsInside(const Acquisition& acquisition);

private:
    const Acquisition* const acquisition;
    const HandOverScope* const outer;
};

} // namespace pyxen
