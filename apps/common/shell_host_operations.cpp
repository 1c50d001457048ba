// shell_host_operations.cpp - operations of the shell itself
#include "apps/common/command_failure.h"
#include "apps/common/event_recorder.h"
#include "apps/common/sdk_control.h"
#include "apps/common/shell_context.h"
#include "apps/common/shell_operation.h"
#include "mivora/grabber.h"

namespace {

constexpr std::uint64_t kDefaultWaitMs = 5000;

void AddWaiting(ShellOperations& operations, CMivoraGrabber& grabber, EventRecorder& events) {
    operations.Add("WaitFrames", "N [MS]",
                   [&](std::uint64_t count, std::optional<std::uint64_t> timeoutMs) {
                       const bool isThere = events.WaitFor([&] { return events.Frames() >= count; },
                                                           timeoutMs.value_or(kDefaultWaitMs));
                       return ShellAnswer::Number(static_cast<std::int64_t>(events.Frames()))
                           .FailedIf(!isThere);
                   });
    operations.Add("WaitIdle", "[MS]", [&](std::optional<std::uint64_t> timeoutMs) {
        const bool isIdle = events.WaitFor([&] { return grabber.GetAcquisitionState() == 0; },
                                           timeoutMs.value_or(kDefaultWaitMs));
        return ShellAnswer::Number(grabber.GetAcquisitionState()).FailedIf(!isIdle);
    });
    operations.Add("Sleep", "MS", [&](std::uint64_t timeMs) {
        events.WaitFor([] { return false; }, timeMs);
        return ShellAnswer::Ok();
    });
}

} // namespace

void AddHostOperations(ShellOperations& operations, const ShellContext& context) {
    AddWaiting(operations, context.grabber, context.events);
    operations.Add("Events", "", [&events = context.events] {
        const GrabberEvents taken = events.Take();
        return ShellAnswer::Ok()
            .With("postProcess", taken.postProcess)
            .WithSigned("lastBuffer", taken.lastBuffer)
            .With("camCfgChange", taken.camCfgChange)
            .WithList("camCntrl", taken.camCntrl)
            .WithList("dialogs", taken.dialogs);
    });
    operations.Add("Log", "TEXT", [&log = context.log](const RestOfLine& rest) {
        const ShellLine quoted("Log " + rest.text);
        const bool isOneText = quoted.Error().empty() && quoted.Arguments().size() == 1;
        log.Write(kMvLogInformation, "%s",
                  isOneText ? quoted.Arguments().front().c_str() : rest.text.c_str());
        return ShellAnswer::Ok();
    });
    operations.Add(
        "SdkControl", "COMMAND...", [&control = context.sdkControl](const RestOfLine& rest) {
            try {
                std::string answer;
                const std::int32_t result = control.Run(rest.text, answer);
                return ShellAnswer::Number(result).WithText("answer", answer).FailedIf(result != 0);
            } catch (const CommandFailure& failure) {
                throw ShellRefusal(failure.what());
            }
        });
}
