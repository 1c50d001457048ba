// foreign_controller.cpp - another program that wants the fake camera
#include "tests/pxnc/genicam/foreign_controller.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace genicam_test {
namespace {

constexpr unsigned kControlRegister = 0x0A00;
constexpr unsigned kControl = 2;
constexpr unsigned short kControlPort = 3956;
// The fake camera refuses by not replying.
constexpr timeval kPatience = {2, 0};

} // namespace

ForeignController::ForeignController() {
    connection = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(kControlPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience), 0);
    granted = WriteControl(kControl);
}

ForeignController::~ForeignController() {
    if (granted) {
        WriteControl(0);
    }
    close(connection);
}

bool ForeignController::WriteControl(unsigned value) const {
    // Key, flag (reply wanted), command (write register), length, request number, then the
    // register's address and its new value.
    const unsigned char request[] = {0x42,
                                     0x01,
                                     0x00,
                                     0x82,
                                     0x00,
                                     0x08,
                                     0x00,
                                     0x01,
                                     0x00,
                                     0x00,
                                     kControlRegister >> 8,
                                     kControlRegister & 0xFF,
                                     0x00,
                                     0x00,
                                     0x00,
                                     static_cast<unsigned char>(value)};
    EXPECT_EQ(send(connection, request, sizeof request, 0), static_cast<ssize_t>(sizeof request));
    unsigned char reply[64] = {};
    const ssize_t received = recv(connection, reply, sizeof reply, 0);
    // The first two bytes are the status.
    return received >= 8 && reply[0] == 0 && reply[1] == 0;
}

} // namespace genicam_test
