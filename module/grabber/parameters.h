// parameters.h - exposure, frame interval and the other numbered parameters
#pragma once

#include "mivora/types.h"
#include "sdk/feature.h"

#include <cstdint>
#include <optional>

namespace pyxen {

class ICameraFeatures;

/// What the parameters need of the grabber: its state, and the timing values that the host keeps in
/// units of the time base. Any thread.
class IParameterHost {
public:
    /// MV_OK while the timer's parameters are served, else the reason why they are not.
    virtual MV_ERRCODE CheckTimerState() const = 0;
    virtual std::uint64_t GetFramesReceived() const = 0;
    virtual std::uint32_t GetTimerMode() const = 0;
    virtual std::uint32_t GetTimerEnabled() const = 0;

    virtual std::uint32_t GetExposure() const = 0;
    virtual std::uint32_t GetInterval() const = 0;
    virtual std::int32_t GetTimeBase() const = 0;
    virtual void SetExposure(std::uint32_t value) = 0;
    virtual void SetInterval(std::uint32_t value) = 0;
    virtual void SetTimeBase(std::int32_t exponent) = 0;
    // The copies that the host saves.
    virtual std::uint32_t GetSavedExposure() const = 0;
    virtual std::uint32_t GetSavedInterval() const = 0;
    virtual void SetSavedExposure(std::uint32_t value) = 0;
    virtual void SetSavedInterval(std::uint32_t value) = 0;
    virtual void SetSavedTimeBase(std::int32_t exponent) = 0;

protected:
    ~IParameterHost() = default;
};

/// Lowest and highest values of a parameter.
struct ParameterLimits {
    std::uint64_t min1 = 0;
    std::uint64_t max1 = 0;
    std::uint64_t min2 = 0;
    std::uint64_t max2 = 0;
};

/// The parameters that the camera serves, and the conversion between the host's time base and the
/// camera's microseconds.
///
/// No state of its own, no lock. What reads or writes the camera runs on one thread at a time with
/// opening and closing; the rest on any thread.
class Parameters {
public:
    /// Both must outlive the object.
    Parameters(ICameraFeatures& cameraToAsk, IParameterHost& parameterHost);

    // By MV_GRABBERFEATURE; no value for a parameter that the host's base class serves. Output
    // pointers may be null.
    std::optional<MV_ERRCODE> GetLimits(std::uint32_t id, std::uint64_t* min1, std::uint64_t* max1,
                                        std::uint64_t* min2, std::uint64_t* max2);
    std::optional<MV_ERRCODE> Get(std::uint32_t id, std::uint64_t* value1, std::uint64_t* value2);
    /// `limits` are those of the parameter.
    std::optional<MV_ERRCODE> Set(std::uint32_t id, const ParameterLimits& limits,
                                  std::uint64_t value1, std::uint64_t value2);
    /// What is left of the host's acquisition capabilities with this module's cameras.
    static std::uint64_t GetCapabilities(std::uint64_t hostCapabilities);

    /// Read from the camera, in units of the time base; false when that fails: the value is left
    /// unchanged then.
    bool ReadExposure(std::uint32_t* value);
    bool ReadInterval(std::uint32_t* value);
    /// Reads the camera's timing into the copies that the host saves; keeps what cannot be read.
    void KeepForSaving();
    /// Stores a timing feature that was reported as changed; true if its value is a new one.
    bool StoreIfChanged(const char* featureName);

    /// The stored timing in microseconds.
    void GetMicroseconds(std::uint64_t* exposure, std::uint64_t* interval) const;
    /// Microseconds in units of the time base; stores them as the copies that the host saves.
    /// False, with nothing stored, unless the exposure is shorter than the interval.
    bool SaveMicroseconds(std::uint64_t exposureTime, std::uint64_t intervalTime,
                          std::uint32_t& exposure, std::uint32_t& interval);

private:
    Feature CameraFeature(const char* name, FeatureType type) const;
    Feature ExposureTime() const;
    Feature FixedInterval() const; // not every camera has it
    Feature FrameRate() const;
    bool CanAsk() const;
    bool ReadLimits(ParameterLimits& limits);
    MV_ERRCODE Write(std::uint64_t exposure, std::uint64_t interval);
    void ChangeTimeBase(std::int32_t exponent);

    ICameraFeatures& features;
    IParameterHost& host;
};

} // namespace pyxen
