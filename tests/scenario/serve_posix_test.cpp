// serve_posix_test.cpp - a run of the command serve, ended by the user
#include "platform/process.h"
#include "platform/tcp_socket.h"
#include "tests/scenario/program_test.h"
#include "tests/support/wait_until.h"

#include <array>

namespace scenario {
namespace {

class ServeRun : public ProgramTest {
protected:
    /// Starts it and waits for its line.
    void Start(const Arguments& arguments) {
        std::string error;
        ASSERT_TRUE(process.Start(support::ProgramStart("mivora", WithConfig(arguments)), &error))
            << error;
        ASSERT_TRUE(support::WaitUntil([&] { return Contains(process.Output(), "\n"); }, 60000))
            << process.Errors();
        address = process.Output().substr(0, process.Output().find('\n'));
    }
    /// All of the answer to a request for this target.
    std::string Ask(const std::string& target) const {
        const std::size_t begin = std::string("http://").size();
        const std::string host = address.substr(begin, address.find('/', begin) - begin);
        const auto port = static_cast<std::uint16_t>(std::stoul(host.substr(host.find(':') + 1)));
        platform::TcpConnection connection(0x7F000001, port);
        const std::string request =
            "GET " + target + " HTTP/1.1\r\nHost: " + host + "\r\nConnection: close\r\n\r\n";
        EXPECT_EQ(connection.Send(request.data(), request.size(), 60000), request.size());
        std::string answer;
        std::array<char, 4096> part;
        while (const auto count = connection.Receive(part.data(), part.size(), 60000)) {
            if (*count == 0) {
                break;
            }
            answer.append(part.data(), *count);
        }
        return answer;
    }
    void ExpectEnd() {
        EXPECT_TRUE(process.Interrupt());
        int status = -1;
        ASSERT_TRUE(process.Wait(60000, status));
        EXPECT_EQ(status, 0);
        EXPECT_EQ(process.Errors(), "");
        EXPECT_EQ(process.Output(), address + "\n") << "one line";
    }

    platform::Process process;
    std::string address;
};

TEST_F(ServeRun, PrintsItsAddressAndEndsOrderly) {
    UseCamera();
    Start({"--sdk", "simulator", "--camera", "A", "serve", "--log", PathOf("log")});
    EXPECT_TRUE(address.starts_with("http://127.0.0.1:")) << address;
    EXPECT_TRUE(address.ends_with("/")) << address;
    EXPECT_TRUE(Contains(Ask("/api/state"), "\"grabbing\":true"));
    EXPECT_TRUE(Contains(Ask("/"), "<html"));
    ExpectEnd();
    EXPECT_TRUE(
        Contains(directory.Read("log"), "StopSnap: successfully executed PxnFrameRevokeAll"));
}

TEST_F(ServeRun, MakesATokenForOtherAddresses) {
    UseCamera();
    Start({"--sdk", "simulator", "serve", "--listen", "0.0.0.0"});
    const std::size_t token = address.find("/?token=");
    ASSERT_NE(token, std::string::npos) << address;
    EXPECT_TRUE(Ask("/api/state").starts_with("HTTP/1.1 401"));
    EXPECT_TRUE(Ask(address.substr(token)).starts_with("HTTP/1.1 303"));
    ExpectEnd();
}

TEST_F(ServeRun, TakesItsTokenFromAFile) {
    UseCamera();
    directory.Write("token", "0123456789abcdef-_\nmore\n");
    Start({"--sdk", "simulator", "serve", "--token-file", PathOf("token")});
    EXPECT_TRUE(address.ends_with("/?token=0123456789abcdef-_")) << address;
    ExpectEnd();
}

} // namespace
} // namespace scenario
