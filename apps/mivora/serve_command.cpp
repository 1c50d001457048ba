// serve_command.cpp - a page for browsers and an interface for scripts
#include "apps/common/command_line.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/json_text.h"
#include "apps/common/whole_file.h"
#include "apps/doctor/ip_text.h"
#include "apps/mivora/commands.h"
#include "apps/serve/serve_app.h"
#include "platform/interrupt.h"
#include "platform/process.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kThisComputer = 0x7F000001;
constexpr std::uint32_t kLoopbackNet = 0x7F;
constexpr std::size_t kShortestToken = 16;

struct ServeOptions {
    std::uint32_t port = 0;
    std::string listen = "127.0.0.1";
    bool open = false;
    std::optional<std::string> tokenFile;
    std::string recordings = "recordings";
    std::vector<std::string> set;
    bool json = false;
};

std::string ListenProblem(const std::string& text) {
    return ParseIp(text) ? "" : "is no IPv4 address such as 127.0.0.1 or 0.0.0.0";
}

/// The first line of the file.
std::string ReadToken(const std::string& file) {
    std::string token = ReadWholeFile(file);
    token.erase(std::min(token.find_first_of("\r\n"), token.size()));
    const bool isPlain = std::all_of(token.begin(), token.end(), [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '-' || c == '_';
    });
    if (token.size() < kShortestToken || !isPlain) {
        throw CommandFailure("the first line of " + file +
                             " is no token: 16 or more letters, digits, - and _");
    }
    return token;
}

ServeSettings SettingsOf(const ServeOptions& options, const std::string& camera) {
    ServeSettings settings;
    settings.address = ParseIp(options.listen).value_or(kThisComputer);
    settings.port = static_cast<std::uint16_t>(options.port);
    if (options.tokenFile) {
        settings.token = ReadToken(*options.tokenFile);
    } else if (settings.address >> 24 != kLoopbackNet) {
        settings.token = NewToken();
    }
    settings.recordings = options.recordings;
    settings.camera = camera;
    settings.set = options.set;
    return settings;
}

/// By the program with which each system opens what it is given.
bool StartBrowser(platform::Process& process, const std::string& address) {
    platform::ProcessStart start;
    start.program = platform::FindProgram("xdg-open");
    start.arguments = {address};
    if (start.program.empty()) {
        start.program = platform::FindProgram("rundll32");
        start.arguments = {"url.dll,FileProtocolHandler", address};
    }
    return !start.program.empty() && process.Start(start);
}

constexpr const char* kServeFooter =
    "Prints one line, the address to open in a browser. It can be reached from this computer only,\n"
    "unless --listen names another address; then a token is needed, which is part of the line or\n"
    "comes from --token-file. With --camera the camera is opened and started. Ctrl-C ends it.\n"
    "The connection is not encrypted: across a network that is not yours use a tunnel.\n"
    "\n"
    "Examples:\n"
    "  mivora serve --open\n"
    "  mivora --camera 0 serve --port 8080\n"
    "  curl -o image.png http://127.0.0.1:8080/snap.png\n";

} // namespace

void AddServeCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand(
        "serve", "Show cameras in the browser and serve them to scripts over HTTP");
    const auto serve = std::make_shared<ServeOptions>();
    command.AddOption("--port", serve->port, "Port to listen at; 0 takes a free one")
        .Within(0u, 65535u)
        .ShowDefault();
    command.AddOption("--listen", serve->listen, "Address of this computer to listen at")
        .Check(ListenProblem)
        .ShowDefault()
        .TypeName("ADDRESS");
    command.AddFlag("--open", serve->open, "Open the page in the browser");
    command
        .AddOption("--token-file", serve->tokenFile,
                   "File whose first line is the token that requests have to bring")
        .TypeName("FILE");
    command
        .AddOption("--recordings", serve->recordings,
                   "Directory that recordings are made in and downloaded from")
        .ShowDefault()
        .TypeName("DIR");
    AddSetOption(command, serve->set);
    command.AddJson(serve->json);
    command.SetFooter(kServeFooter);
    command.OnRun([&options, maker, serve] {
        const ServeSettings settings = SettingsOf(*serve, options.Camera());
        platform::InstallInterruptHandler();
        ServeApp app(options, maker(), settings);
        if (serve->json) {
            PrintReport({{"address", app.Url()}});
        } else {
            std::printf("%s\n", app.Url().c_str());
        }
        std::fflush(stdout);
        platform::Process browser; // ends the one that passes the address on, not the browser
        if (serve->open && !StartBrowser(browser, app.Url())) {
            std::fputs("mivora: warning: no browser could be started\n", stderr);
        }
        app.Run();
    });
}
