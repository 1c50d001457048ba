// shell_parameter_operations.cpp - operations on acquisition parameters and the timer
#include "apps/common/shell_context.h"
#include "apps/common/shell_operation.h"
#include "mivora/grabber.h"

namespace {

/// Only the time base has negative values.
ShellAnswer& WithValue(ShellAnswer& answer, std::uint32_t id, const char* key,
                       std::uint64_t value) {
    return id == MVGF_TIME_BASE ? answer.WithSigned(key, static_cast<std::int64_t>(value))
                                : answer.With(key, value);
}

void AddParameters(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("GetGrabberParam", "ID", [&](std::uint32_t id) {
        std::uint64_t values[2] = {};
        auto answer = ShellAnswer::Code(grabber.GetGrabberParam(id, &values[0], &values[1]));
        WithValue(answer, id, "value1", values[0]);
        return WithValue(answer, id, "value2", values[1]);
    });
    operations.Add("GetGrabberParamLimits", "ID", [&](std::uint32_t id) {
        std::uint64_t limits[4] = {};
        auto answer = ShellAnswer::Code(
            grabber.GetGrabberParamLimits(id, &limits[0], &limits[1], &limits[2], &limits[3]));
        WithValue(answer, id, "min", limits[0]);
        WithValue(answer, id, "max", limits[1]);
        WithValue(answer, id, "min2", limits[2]);
        return WithValue(answer, id, "max2", limits[3]);
    });
    operations.Add("SetGrabberParam", "ID V1 V2",
                   [&](std::uint32_t id, ParameterValue value1, ParameterValue value2) {
                       return ShellAnswer::Code(
                           grabber.SetGrabberParam(id, value1.bits, value2.bits));
                   });
}

void AddTimer(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("GetTimerMicroseconds", "", [&] {
        std::uint64_t exposure = 0;
        std::uint64_t interval = 0;
        grabber.GetTimerMicroseconds(&exposure, &interval);
        return ShellAnswer::Ok().With("exposure", exposure).With("interval", interval);
    });
    operations.Add("SetTimerMicroseconds", "EXPOSURE INTERVAL",
                   [&](std::uint64_t exposure, std::uint64_t interval) {
                       grabber.SetTimerMicroseconds(exposure, interval);
                       return ShellAnswer::Ok();
                   });
    operations.Add("ChangeTimerTB", "EXPOSURE INTERVAL ENABLED",
                   [&](std::uint32_t exposure, std::uint32_t interval, std::uint32_t enabled) {
                       return ShellAnswer::Code(grabber.ChangeTimerTB(exposure, interval, enabled));
                   });
    operations.Add("StartTimer", "", [&] { return ShellAnswer::Code(grabber.StartTimer()); });
    operations.Add("StopTimer", "", [&] { return ShellAnswer::Code(grabber.StopTimer()); });
    operations.Add("SetDefaultIodTimerConfigToGrabber", "",
                   [&] { return ShellAnswer::Code(grabber.SetDefaultIodTimerConfigToGrabber()); });
    operations.Add("GetDefaultIodTimerConfigFromGrabber", "", [&] {
        return ShellAnswer::Code(grabber.GetDefaultIodTimerConfigFromGrabber());
    });
}

} // namespace

void AddParameterOperations(ShellOperations& operations, const ShellContext& context) {
    AddParameters(operations, context.grabber);
    AddTimer(operations, context.grabber);
}
