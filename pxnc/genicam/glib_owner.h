// glib_owner.h - owning types for what GLib and Aravis hand out
#pragma once

#include <arv.h>

#include <memory>
#include <utility>

namespace genicam {

struct ObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};

struct MemoryRelease {
    void operator()(gpointer block) const { g_free(block); }
};

/// One reference to a GObject.
template <typename T>
using ObjectOwner = std::unique_ptr<T, ObjectRelease>;

/// A block of g_malloc.
template <typename T>
using MemoryOwner = std::unique_ptr<T, MemoryRelease>;

/// The error of one GLib call; freed with its owner.
class ErrorOwner {
public:
    ErrorOwner() = default;
    ~ErrorOwner() { g_clear_error(&error); }
    ErrorOwner(const ErrorOwner&) = delete;
    ErrorOwner& operator=(const ErrorOwner&) = delete;

    /// Where the next call reports; forgets what an earlier one reported.
    GError** Receive() {
        g_clear_error(&error);
        return &error;
    }
    const GError* Get() const { return error; }
    explicit operator bool() const { return error; }

private:
    GError* error = nullptr;
};

} // namespace genicam
