// fuzz_shell.cpp - lines of pyxen-tool shell, with cameras of the simulator
#include "apps/common/event_recorder.h"
#include "apps/common/sdk_control.h"
#include "apps/common/shell.h"
#include "apps/common/shell_context.h"
#include "apps/pyxen-tool/commands.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "mivora/log_sink.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/sleep.h"
#include "serial/cmd_kvn_pyxen.h"

#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr unsigned kMostLines = 40;
constexpr const char* kCameras = R"(<PxnC>
<camera id="A" kind="serial" sensorWidth="64" sensorHeight="64" freeRunning="true"/>
<camera id="B" kind="usb" sensorWidth="64" sensorHeight="64" freeRunning="true">
  <feature name="PixelFormat" value="BayerRG12p"/>
</camera>
</PxnC>
)";

/// Formats every line, and forgets it.
class FormattingSink final : public ILogSink {
public:
    void Write(int, const char* format, ...) override {
        char text[512];
        std::va_list arguments;
        va_start(arguments, format);
        MivoraFormatLogText(text, sizeof text, format, arguments);
        va_end(arguments);
    }
    void WriteError(const char*) override {}
};

/// What all inputs share: the simulator, a directory that is the current one, no settling pauses.
class Surroundings {
public:
    Surroundings() {
        const std::string programs = platform::DirectoryOf(platform::ExecutablePath());
        if (!platform::SetEnvironment("PYXEN_HOME", platform::JoinPath(programs, "simulator")) ||
            chdir(directory.c_str()) != 0 || !platform::ReplaceWholeFile("PxnC.xml", kCameras)) {
            std::abort();
        }
        platform::SetSleepFunction([](std::uint32_t) {});
        MivoraInstallLogSink(&sink);
        Control("clear"); // from now on the library stays loaded
    }
    ~Surroundings() { platform::RemoveDirectoryTree(directory); }

    std::string Control(const char* command) {
        std::string answer;
        if (control.Run(command, answer) != 0) {
            std::abort();
        }
        return answer;
    }
    FormattingSink sink;

private:
    const std::string directory = platform::CreateTemporaryDirectory("fuzz-shell");
    SdkControl control;
};

/// Replaces an operation by itself, for lines that `isHarmless` accepts.
void Guard(ShellOperations& operations, const char* name,
           const std::function<bool(const ShellLine& line)>& isHarmless) {
    const ShellOperations::Entry real = operations.All().at(name);
    operations.Add(name, real.usage.c_str(), [=](const RestOfLine& rest) {
        const ShellLine line(std::string(name) + " " + rest.text);
        if (!isHarmless(line)) {
            throw ShellRefusal("not here");
        }
        return real.run(line);
    });
}

/// Files stay in the current directory.
bool NamesNoDirectory(const ShellLine& line) {
    return line.Rest().find('/') == std::string::npos;
}

/// Faults that make the module wait for as long as they last are left out.
bool IsQuickCommand(const ShellLine& line) {
    static constexpr const char* kQuick[] = {"status", "leaks", "help",      "plug",
                                             "unplug", "fail",  "unplug-at", "access",
                                             "clear",  "drain", "plug-at",   "interface-event"};
    return !line.Arguments().empty() && std::find(std::begin(kQuick), std::end(kQuick),
                                                  line.Arguments().front()) != std::end(kQuick);
}

/// Operations that wait read their arguments as ever, and do not wait.
void AddImpatientOperations(ShellOperations& operations) {
    operations.Add("Sleep", "MS", [](std::uint64_t) { return ShellAnswer::Ok(); });
    operations.Add("WaitFrames", "N [MS]",
                   [](std::uint64_t, std::optional<std::uint64_t>) { return ShellAnswer::Ok(); });
    operations.Add("WaitIdle", "[MS]",
                   [](std::optional<std::uint64_t>) { return ShellAnswer::Ok(); });
}

void CheckAnswer(const std::string& answer, std::string_view text) {
    const ShellLine line(text);
    if (line.IsEmpty() != answer.empty()) {
        std::abort(); // each line that is not empty has an answer
    }
    const auto isControl = [](char byte) {
        return static_cast<unsigned char>(byte) < 0x20;
    };
    if (std::any_of(answer.begin(), answer.end(), isControl)) {
        std::abort(); // one line, which leaves the terminal alone
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Surroundings surroundings;
    {
        CMivoraKVNPyxenClass grabber(nullptr);
        EventRecorder events(grabber);
        SdkControl control;
        std::remove("host.ini");
        grabber.SetGrabberIni("host.ini", 0);
        const ShellContext context{grabber, events, surroundings.sink, control};
        ShellOperations operations;
        AddAllOperations(operations, context);
        AddModuleOperations(operations, grabber);
        AddImpatientOperations(operations);
        Guard(operations, "SdkControl", IsQuickCommand);
        for (const char* const name : {"SetGrabberIni", "SetCameraIni", "SaveBuffer"}) {
            Guard(operations, name, NamesNoDirectory);
        }
        Guard(operations, "CMDOpen", [&grabber](const ShellLine&) {
            CCmdChannel* const channel = grabber.GetActCmdChannel();
            return !channel || dynamic_cast<CCmdKVNPyxen*>(channel); // no port of this machine
        });
        Shell shell(operations);
        std::string_view text(reinterpret_cast<const char*>(data), size);
        for (unsigned count = 0; count < kMostLines && !text.empty(); ++count) {
            const std::string_view line = text.substr(0, text.find('\n'));
            text.remove_prefix(std::min(line.size() + 1, text.size()));
            CheckAnswer(shell.Answer(line), line);
        }
        surroundings.Control("clear");
        grabber.StopSnap();
        grabber.DeInit();
    }
    if (!surroundings.Control("leaks").empty()) {
        std::abort(); // whatever was called, the SDK gets everything back
    }
    return 0;
}
