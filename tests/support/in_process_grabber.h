// in_process_grabber.h - grabbers of the built module in the process of the test
#pragma once

#include "mivora/grabber.h"
#include "mivora/module_loader.h"
#include "platform/file_system.h"
#include "platform/shared_library.h"
#include "tests/support/environment_guard.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

namespace support {

/// Loads the module and the simulator as a host program does, and gives access to the simulator's
/// control interface. Install the log sink first.
class InProcess {
public:
    InProcess() : home("PYXEN_HOME", BuiltFile("simulator")) {
        std::string error;
        const std::string sdkPath = platform::JoinPath(
            BuiltFile("simulator"), platform::JoinPath("Bin", platform::LibraryFileName("PxnC")));
        EXPECT_TRUE(sdk.Load(sdkPath, true, &error)) << error;
        control = reinterpret_cast<ControlFunction>(sdk.FindSymbol("PxnControl"));
        const std::string module = BuiltFile(platform::LibraryFileName("MivoraKVNPyxen"));
        EXPECT_TRUE(loader.Load(module.c_str())) << loader.GetErrorText();
    }
    ~InProcess() { Control("clear"); }
    InProcess(const InProcess&) = delete;
    InProcess& operator=(const InProcess&) = delete;

    /// Runs a control command and returns the reply; the test fails when the command does.
    std::string Control(const std::string& command) {
        std::string reply(1 << 16, '\0');
        EXPECT_EQ(control(command.c_str(), reply.data(), 1 << 16), 0) << command << reply.c_str();
        return reply.c_str();
    }
    CMivoraGrabber* Create() { return loader.CreateGrabber(); }
    void Delete(CMivoraGrabber* grabber) { loader.DeleteGrabber(grabber); }

private:
    using ControlFunction = std::int32_t (*)(const char*, char*, std::uint32_t);

    EnvironmentGuard home;
    platform::SharedLibrary sdk;
    ControlFunction control = nullptr;
    CModuleLoader loader;
};

} // namespace support
