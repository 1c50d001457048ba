// station.h - a grabber that a run uses, and its operations
#pragma once

#include "grabber/mivora_kvn_pyxen_class.h"
#include "serial/cmd_kvn_pyxen.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/allocations/failing_allocations.h"
#include "tests/support/recording_sink.h"
#include "tests/sweep/transcript.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace sweep {

/// The numbers that an operation returns. No memory is allocated for them.
class Answer {
public:
    template <typename... Numbers>
    requires(!std::is_same_v<Numbers, Answer> && ...) explicit Answer(Numbers... numbers)
        : values{static_cast<std::int64_t>(numbers)...}, count(sizeof...(numbers)) {}

    std::string Text() const;

private:
    std::array<std::int64_t, 6> values{};
    std::size_t count = 0;
};

class Station;

struct Operation {
    std::string text;
    std::function<Answer(Station&)> run;
};

using Operations = std::vector<Operation>;

/// Records lines. Its memory does not count among that of the module.
class SweepSink final : public support::RecordingSink {
public:
    void Write(int level, const char* format, ...) override;
    void WriteError(const char* text) override;
};

/// A grabber with its sink, its serial channel and the number of the camera that it uses.
class Station {
public:
    /// `directory` has the grabber's ini file.
    Station(const std::string& directory, const std::string& ini, std::size_t cameraToUse);
    ~Station();
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    CMivoraKVNPyxenClass& Grabber() { return *grabber; }
    CCmdKVNPyxen& Channel() { return *channel; }
    scripted::Sdk& Sdk() { return sdk; }
    std::size_t Camera() const { return camera; }

    /// Runs them and notes what they returned and logged.
    void Perform(const Operations& operations, Transcript& transcript);

    /// The camera delivers a frame; true when it had one of that index.
    bool Deliver(std::uint64_t frame);
    std::uint64_t TakeHandedOver() { return handedOver.exchange(0); }
    /// The host's use of all buffers that are filled; the number of them.
    unsigned TakeFilledBuffers();

private:
    static void Receive(std::uint64_t index, std::uint32_t fromCallback, void* context);
    std::string Normal(std::string line) const;

    scripted::Sdk& sdk = scripted::GetSdk();
    SweepSink sink;
    const std::string directory;
    const std::size_t camera;
    std::atomic<std::uint64_t> handedOver{0};
    std::unique_ptr<CMivoraKVNPyxenClass> grabber;
    std::unique_ptr<CCmdKVNPyxen> channel;
};

} // namespace sweep
