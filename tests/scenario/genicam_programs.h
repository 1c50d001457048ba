// genicam_programs.h - the programs with a GigE Vision camera on the loopback interface
#pragma once

#include "platform/process.h"
#include "tests/scenario/diagonal_ramp.h"
#include "tests/scenario/program_test.h"
#include "tests/support/posix/fake_camera.h"
#include "tests/support/wait_until.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace scenario {

/// mivora with a camera's real protocol: the fake GigE Vision camera on the loopback interface.
class GenicamPrograms : public ProgramTest {
protected:
    static constexpr std::uint32_t kLimitMs = 60000;
    static constexpr DiagonalRamp kPicture{512, 512, 255};

    void SetUp() override { ASSERT_TRUE(WaitUntilListed()); }

    Json ListCameras() const {
        const auto result = Mivora({"--sdk", "genicam", "cameras", "--json"});
        EXPECT_EQ(result.status, 0) << result.errors;
        return Json::parse(result.output, nullptr, false);
    }
    bool WaitUntilListed() const {
        return support::WaitUntil([this] { return ListCameras().size() == 1; }, kLimitMs);
    }
    /// The camera's name in messages: "camera 0 (Fake_1, 0x12345678)".
    std::string NameOfFirst() const {
        const Json first = ListCameras().at(0);
        char id[16];
        std::snprintf(id, sizeof id, "0x%08X", first["uniqueId"].get<std::uint32_t>());
        return "camera 0 (" + first["name"].get<std::string>() + ", " + id + ")";
    }
    /// `grab` with these options, its images as raw files in "images" in place of earlier ones, and
    /// its report as JSON.
    Arguments GrabArguments(const Arguments& options) const {
        Arguments all{"--sdk",    "genicam", "grab",        "-o",    PathOf("images"),
                      "--format", "raw",     "--overwrite", "--json"};
        all.insert(all.end(), options.begin(), options.end());
        return WithConfig(all);
    }
    void Start(platform::Process& process, const Arguments& arguments) const {
        std::string error;
        ASSERT_TRUE(process.Start(support::ProgramStart("mivora", arguments), &error)) << error;
    }
    bool WaitForImage(unsigned number) const {
        char name[40];
        std::snprintf(name, sizeof name, "images/frame-%06u.raw", number);
        return support::WaitUntil([&] { return platform::PathExists(PathOf(name)); }, kLimitMs);
    }
    static support::ProgramResult End(platform::Process& process) {
        support::ProgramResult result;
        result.ended = process.Wait(kLimitMs, result.status);
        EXPECT_TRUE(result.ended);
        result.output = process.Output();
        result.errors = process.Errors();
        return result;
    }

    support::FakeCamera camera;
};

} // namespace scenario
