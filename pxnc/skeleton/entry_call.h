// entry_call.h - one call of an SDK function, as the implementation sees it
#pragma once

#include "pxnc.h"

#include <cstdint>
#include <initializer_list>

namespace skeleton {

/// One value that the host hands in. Places that are only filled are absent or only known to be
/// null or not.
class Argument {
public:
    /// What a value is.
    enum class Kind {
        kHandle,   ///< of a module
        kFeature,  ///< a feature's name
        kText,     ///< any other text
        kPath,     ///< of a file
        kFrame,    ///< a frame's record
        kInteger,  ///< an integer or a size
        kReal,     ///< a floating-point number
        kCallback, ///< given or null
        kPlace,    ///< an array or a buffer to fill: given or null
        kBytes,    ///< bytes and their number
    };

    ///@{
    /// A value of one kind.
    static Argument Handle(PxnHandle handle) { return {Kind::kHandle, handle}; }
    static Argument Feature(const char* name) { return {Kind::kFeature, name}; }
    static Argument Text(const char* text) { return {Kind::kText, text}; }
    static Argument Path(const wchar_t* path) { return {Kind::kPath, path}; }
    static Argument Frame(const PxnFrame* frame) { return {Kind::kFrame, frame}; }
    static Argument Integer(std::int64_t value) { return {Kind::kInteger, nullptr, value}; }
    static Argument Size(std::uint64_t value) { return Integer(static_cast<std::int64_t>(value)); }
    static Argument Real(double value) { return {Kind::kReal, nullptr, 0, value}; }
    template <typename Function>
    static Argument Callback(Function* function) {
        return {Kind::kCallback, nullptr, function ? 1 : 0};
    }
    static Argument Place(const void* place) { return {Kind::kPlace, place}; }
    static Argument Bytes(const char* bytes, std::uint32_t size) {
        return {Kind::kBytes, bytes, size};
    }

    ///@}

    /// Decides which of the others may be asked.
    Kind GetKind() const { return kind; }
    ///@{
    /// The value; null when the host passed null.
    PxnHandle AsHandle() const { return const_cast<PxnHandle>(pointer); }
    const char* AsText() const { return static_cast<const char*>(pointer); }
    const wchar_t* AsPath() const { return static_cast<const wchar_t*>(pointer); }
    const PxnFrame* AsFrame() const { return static_cast<const PxnFrame*>(pointer); }
    ///@}
    /// The integer, or the number of bytes.
    std::int64_t AsInteger() const { return integer; }
    /// The floating-point number.
    double AsReal() const { return real; }
    /// False for a null pointer.
    bool IsGiven() const { return pointer || integer != 0; }

private:
    Argument(Kind newKind, const void* newPointer, std::int64_t newInteger = 0, double newReal = 0)
        : kind(newKind), pointer(newPointer), integer(newInteger), real(newReal) {}

    Kind kind;
    const void* pointer;
    std::int64_t integer;
    double real;
};

/// A call of an SDK function; used while the function begins, never kept.
struct EntryCall {
    const char* entry;                              ///< its name
    std::initializer_list<Argument> arguments = {}; ///< in the order of the function
};

} // namespace skeleton
