// host_limits_posix_test.cpp - tests of the system's limits, on a copy of the kernel's files
#include "platform/host_limits.h"

#include "tests/support/posix/failing_calls.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace platform {
namespace {

class HostLimitsPosix : public testing::Test {
protected:
    void Write(const std::string& path, const std::string& content) const {
        directory.Write(path.substr(1), content);
    }
    void PlugIn(const std::string& device, const char* interfaceClass, const char* number) {
        const std::string devices = "/sys/bus/usb/devices/";
        Write(devices + device + "/busnum", "2\n");
        Write(devices + device + "/devnum", std::string(number) + "\n");
        Write(devices + device + "/product", "camera " + device + "\n");
        Write(devices + device + ":1.0/bInterfaceClass", std::string(interfaceClass) + "\n");
        Write(devices + device + ":1.0/bInterfaceSubClass", "05\n");
        Write(devices + device + ":1.0/bInterfaceProtocol", "00\n");
    }

    support::TemporaryDirectory directory;
    HostLimits limits{directory.Path()};
};

TEST_F(HostLimitsPosix, AreUnknownWhereTheKernelHasNoSuchFiles) {
    EXPECT_EQ(limits.ReceiveBuffer(), std::nullopt);
    EXPECT_EQ(limits.ReversePathFilter("eth0"), std::nullopt);
    EXPECT_EQ(limits.UsbMegabytes(), std::nullopt);
    EXPECT_TRUE(limits.ListUsbCameras().empty());
    std::string error;
    EXPECT_FALSE(limits.SetReceiveBuffer(1, &error));
    EXPECT_NE(error, "");
}

TEST_F(HostLimitsPosix, AreReadFromTheKernelsFiles) {
    Write("/proc/sys/net/core/rmem_max", "212992\n");
    Write("/sys/module/usbcore/parameters/usbfs_memory_mb", "16\n");
    EXPECT_EQ(limits.ReceiveBuffer(), 212992u);
    EXPECT_EQ(limits.UsbMegabytes(), 16u);
    Write("/sys/module/usbcore/parameters/usbfs_memory_mb", "much\n");
    EXPECT_EQ(limits.UsbMegabytes(), std::nullopt);
}

TEST_F(HostLimitsPosix, TheReceiveBufferIsSetInPlaceAndReadBack) {
    Write("/proc/sys/net/core/rmem_max", "212992\n");
    EXPECT_TRUE(limits.SetReceiveBuffer(67108864));
    EXPECT_EQ(limits.ReceiveBuffer(), 67108864u);
    // What the kernel does not keep was not set.
    const std::string file = directory.PathOf("proc/sys/net/core/rmem_max");
    std::filesystem::remove(file);
    std::filesystem::create_symlink("/dev/null", file);
    std::string error;
    EXPECT_FALSE(limits.SetReceiveBuffer(1, &error));
    EXPECT_EQ(error, "the system keeps another value");
}

TEST_F(HostLimitsPosix, AReceiveBufferThatIsNotTakenIsReported) {
    Write("/proc/sys/net/core/rmem_max", "212992\n");
    std::string error;
    {
        const support::FailingCalls failing("write", EINVAL);
        EXPECT_FALSE(limits.SetReceiveBuffer(1, &error));
        EXPECT_EQ(failing.Failed(), 1);
    }
    EXPECT_EQ(error, std::strerror(EINVAL));
    const support::FailingCalls failing("write", EINVAL);
    EXPECT_FALSE(limits.SetReceiveBuffer(1)) << "nobody wants the reason";
}

TEST_F(HostLimitsPosix, TheGreaterFilterOfInterfaceAndAllCounts) {
    Write("/proc/sys/net/ipv4/conf/all/rp_filter", "2\n");
    EXPECT_EQ(limits.ReversePathFilter("eth0"), 2u);
    Write("/proc/sys/net/ipv4/conf/eth0/rp_filter", "1\n");
    EXPECT_EQ(limits.ReversePathFilter("eth0"), 2u);
    Write("/proc/sys/net/ipv4/conf/all/rp_filter", "0\n");
    EXPECT_EQ(limits.ReversePathFilter("eth0"), 1u);
}

TEST_F(HostLimitsPosix, UsbCamerasAreTheDevicesWithTheInterfaceOfSuch) {
    PlugIn("2-1", "ef", "5");
    PlugIn("2-2", "03", "6");
    PlugIn("2-3", "ef", "4");
    PlugIn("2-4", "ef", "7");
    Write("/sys/bus/usb/devices/2-4:1.0/bInterfaceSubClass", "02\n");
    PlugIn("2-5", "ef", "8"); // its stream
    Write("/sys/bus/usb/devices/2-5:1.0/bInterfaceProtocol", "02\n");
    PlugIn("2-6", "ef", "none");
    PlugIn("2-7", "ef", "9"); // just unplugged
    std::filesystem::remove(directory.PathOf("sys/bus/usb/devices/2-7/busnum"));
    Write("/dev/bus/usb/002/005", "");
    const std::vector<UsbCamera> cameras = limits.ListUsbCameras();
    ASSERT_EQ(cameras.size(), 2u);
    EXPECT_EQ(cameras[0].node, "/dev/bus/usb/002/004");
    EXPECT_EQ(cameras[0].product, "camera 2-3");
    EXPECT_FALSE(cameras[0].isAccessible) << "there is no such file";
    EXPECT_EQ(cameras[1].node, "/dev/bus/usb/002/005");
    EXPECT_TRUE(cameras[1].isAccessible);
}

} // namespace
} // namespace platform
