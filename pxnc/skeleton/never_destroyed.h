// never_destroyed.h - a process-wide object that outlives everything
#pragma once

#include <cstddef>
#include <new>

namespace skeleton {

/// Holds a T that is built at first use and never torn down. A host that ends without a shutdown
/// leaves threads behind, which must not find their mutexes gone; and waiting for threads while
/// a library is being unloaded would hang the process.
template <typename T>
class NeverDestroyed {
public:
    NeverDestroyed() { new (storage) T(); }
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;

    /// The object.
    T& Get() { return *std::launder(reinterpret_cast<T*>(storage)); }

private:
    alignas(T) std::byte storage[sizeof(T)];
};

} // namespace skeleton
