// doctor_posix_test.cpp - what the doctor changes in the system, on a copy of the kernel's files
#include "apps/common/app_options.h"
#include "apps/doctor/doctor.h"
#include "apps/pyxen-tool/linked_maker.h"
#include "tests/apps/doctor/findings.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

namespace {

class DoctorPosix : public testing::Test {
protected:
    DoctorPosix() {
        options.only = {"network"};
        options.fix = true;
        machine.limits = platform::HostLimits(directory.Path());
        machine.listInterfaces = [] {
            return std::vector<platform::NetworkInterface>{};
        };
        machine.searchMs = 0;
    }
    DoctorReport Run() {
        return Doctor(
                   options, app, [this]() -> IGrabberMaker& { return maker; }, machine)
            .Run();
    }

    const support::TemporaryDirectory directory;
    DoctorOptions options;
    AppOptions app;
    LinkedMaker maker;
    Machine machine;
};

TEST_F(DoctorPosix, RaisesTheReceiveBuffer) {
    directory.Write("proc/sys/net/core/rmem_max", "212992\n");
    const DoctorReport report = Run();
    ASSERT_EQ(report.fixes.size(), 1u);
    EXPECT_TRUE(report.fixes[0].isDone);
    EXPECT_EQ(report.fixes[0].text.find("212992 -> 67108864 bytes until"), 0u);
    EXPECT_EQ(WorstOf(report.findings, "receive-buffer"), "ok");
    EXPECT_EQ(directory.Read("proc/sys/net/core/rmem_max"), "67108864\n");
}

TEST_F(DoctorPosix, LeavesAReceiveBufferThatIsLargeEnough) {
    directory.Write("proc/sys/net/core/rmem_max", "4194304\n");
    EXPECT_TRUE(Run().fixes.empty());
    EXPECT_EQ(directory.Read("proc/sys/net/core/rmem_max"), "4194304\n");
}

} // namespace
