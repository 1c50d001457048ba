// feature.h - one feature of a module, as an implementation provides it
#pragma once

#include "pxnc.h"

#include <cstdint>
#include <string>
#include <vector>

namespace skeleton {

/// One feature of any module. The skeleton has checked that the feature has the type of the
/// operation, so the operations of other types stay as they are here (PxnErrWrongType).
///
/// All operations are called with the module's feature lock held. Those that read or write check
/// the access themselves (PxnErrInvalidAccess), and those that write check the value against the
/// present limits (PxnErrInvalidValue).
class Feature {
public:
    virtual ~Feature() = default;

    /// PxnFeatureInfo::featureDataType.
    virtual std::uint32_t DataType() const = 0;
    /// Its description, with texts of the pool.
    virtual PxnFeatureInfo Info() const = 0;
    /// Whether the feature can be read and written now, apart from the rights of the handle.
    virtual PxnError GetAccess(bool& readable, bool& writable) = 0;
    /// The names of the features that this one selects.
    virtual std::vector<std::string> Selected() { return {}; }

    ///@{
    /// Integers: the value, and the present limits, both included.
    virtual PxnError GetInt(std::int64_t&) { return PxnErrWrongType; }
    virtual PxnError SetInt(std::int64_t) { return PxnErrWrongType; }
    virtual PxnError GetIntRange(std::int64_t&, std::int64_t&) { return PxnErrWrongType; }
    ///@}
    /// The distance of valid values from the minimum on, at least 1.
    virtual PxnError GetIntIncrement(std::int64_t&) { return PxnErrWrongType; }
    /// The only values allowed, in ascending order; PxnErrValidValueSetNotPresent when the range
    /// alone decides.
    virtual PxnError GetIntValueSet(std::vector<std::int64_t>&) {
        return PxnErrValidValueSetNotPresent;
    }

    ///@{
    /// Floats: the value in the unit of the description, and the present limits, both included.
    virtual PxnError GetFloat(double&) { return PxnErrWrongType; }
    virtual PxnError SetFloat(double) { return PxnErrWrongType; }
    virtual PxnError GetFloatRange(double&, double&) { return PxnErrWrongType; }
    ///@}

    /// The current entry's name, a text of the pool.
    virtual PxnError GetEnum(const char*&) { return PxnErrWrongType; }
    /// Selects an entry; PxnErrInvalidValue when it does not exist or is not available.
    virtual PxnError SetEnum(const char*) { return PxnErrWrongType; }
    /// The names of all entries, available or not; texts of the pool.
    virtual PxnError GetEnumEntries(std::vector<const char*>&) { return PxnErrWrongType; }
    /// PxnErrNotFound when there is no such entry.
    virtual PxnError IsEnumEntryAvailable(const char*, bool&) { return PxnErrWrongType; }
    /// Describes an entry, with texts of the pool; PxnErrNotFound when there is no such entry.
    virtual PxnError GetEnumEntry(const char*, PxnFeatureEnumEntry&) { return PxnErrWrongType; }

    ///@{
    /// Strings: the value, and the greatest length in bytes without the terminator.
    virtual PxnError GetString(std::string&) { return PxnErrWrongType; }
    virtual PxnError SetString(const char*) { return PxnErrWrongType; }
    virtual PxnError GetStringMaxLength(std::uint32_t&) { return PxnErrWrongType; }
    ///@}

    ///@{
    /// Booleans.
    virtual PxnError GetBool(bool&) { return PxnErrWrongType; }
    virtual PxnError SetBool(bool) { return PxnErrWrongType; }
    ///@}

    /// Starts a command.
    virtual PxnError Run() { return PxnErrWrongType; }
    /// A command that starts or stops the acquisition.
    virtual bool IsStartOrStop() const { return false; }
    /// False while the command is carried out; true before its first run, too.
    virtual PxnError IsDone(bool&) { return PxnErrWrongType; }

    ///@{
    /// Bytes, and how many there are. Another number is refused with PxnErrInvalidValue.
    virtual PxnError GetRaw(std::vector<char>&) { return PxnErrWrongType; }
    virtual PxnError SetRaw(const char*, std::uint32_t) { return PxnErrWrongType; }
    virtual PxnError GetRawLength(std::uint32_t&) { return PxnErrWrongType; }
    ///@}
};

} // namespace skeleton
