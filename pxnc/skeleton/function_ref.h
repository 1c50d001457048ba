// function_ref.h - a reference to something callable
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace skeleton {

template <typename Signature>
class FunctionRef;

/// Refers to a callable for the length of a call: it owns nothing and never allocates memory.
template <typename Result, typename... Arguments>
class FunctionRef<Result(Arguments...)> {
public:
    /// `callable` must live as long as the reference.
    template <typename Callable>
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef>)
        FunctionRef(Callable&& callable) // NOLINT(bugprone-forwarding-reference-overload)
        : object(const_cast<void*>(static_cast<const void*>(std::addressof(callable)))),
          call([](void* target, Arguments... arguments) -> Result {
              return (*static_cast<std::remove_reference_t<Callable>*>(target))(
                  std::forward<Arguments>(arguments)...);
          }) {}

    /// Calls it.
    Result operator()(Arguments... arguments) const {
        return call(object, std::forward<Arguments>(arguments)...);
    }

private:
    void* object;
    Result (*call)(void*, Arguments...);
};

} // namespace skeleton
