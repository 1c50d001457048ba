// user_sets.h - saved states of a camera's features
#pragma once

#include "pxnc/simulator/module.h"

#include <any>
#include <cstddef>
#include <map>
#include <vector>

namespace pxsim {

/// The caller must hold the module's mutex.
class UserSets {
public:
    explicit UserSets(std::size_t count) : sets(count) {}

    void Save(const Module& module, std::size_t index);
    /// Restores what was saved; a set that was never saved holds the values at power-on.
    void Load(Module& module, std::size_t index);

private:
    using Saved = std::map<const Feature*, std::any>;
    std::vector<Saved> sets;
};

} // namespace pxsim
