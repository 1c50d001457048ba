// serve_test.cpp - how the command serve is refused
#include "platform/tcp_socket.h"
#include "tests/scenario/program_test.h"

namespace scenario {
namespace {

class Serve : public ProgramTest {};

TEST_F(Serve, WantsAnAddressAPortAndAToken) {
    UseCamera();
    EXPECT_EQ(Mivora({"serve", "--listen", "everywhere"}).status, 2);
    EXPECT_EQ(Mivora({"serve", "--port", "65536"}).status, 2);
    ExpectFailure(Mivora({"serve", "--token-file", PathOf("missing")}), 1, {"missing"});
    directory.Write("short", "secret\n");
    ExpectFailure(Mivora({"serve", "--token-file", PathOf("short")}), 1,
                  {"is no token: 16 or more letters, digits, - and _"});
}

TEST_F(Serve, EndsWhenItCannotListenOrOpenTheCamera) {
    UseCamera();
    std::string error;
    const platform::TcpHandle handle = platform::ListenTcp(0x7F000001, 0, error);
    const platform::TcpConnection closing(handle);
    const std::string port = std::to_string(platform::TcpPort(handle));
    ExpectFailure(Mivora({"--sdk", "simulator", "serve", "--port", port}), 1,
                  {"cannot listen at port " + port});
    ExpectFailure(Mivora({"--sdk", "simulator", "--camera", "B", "serve"}), 1, {"\"B\""});
}

} // namespace
} // namespace scenario
