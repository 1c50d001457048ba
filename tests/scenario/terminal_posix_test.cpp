// terminal_posix_test.cpp - the programs on a terminal
#include "platform/environment.h"
#include "tests/scenario/program_test.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace scenario {
namespace {

/// A program that runs on its own pseudo-terminal.
class TerminalProgram {
public:
    TerminalProgram(const std::string& program, const Arguments& arguments) {
        const std::string path = support::BuiltProgram(program);
        std::vector<char*> words{const_cast<char*>(path.c_str())};
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        child = forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            unsetenv("PYXEN_HOME");
            execv(path.c_str(), words.data());
            _exit(127);
        }
    }
    ~TerminalProgram() { close(terminal); }
    TerminalProgram(const TerminalProgram&) = delete;
    TerminalProgram& operator=(const TerminalProgram&) = delete;

    void Type(const std::string& keys) const {
        EXPECT_EQ(write(terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    /// The terminal's output up to and including `text`.
    std::string ShownUntil(const std::string& text) {
        while (shown.find(text) == std::string::npos && ReadMore()) {
        }
        const std::size_t at = shown.find(text);
        EXPECT_NE(at, std::string::npos) << text << " is missing in\n" << shown;
        const std::string part = shown.substr(0, at == std::string::npos ? at : at + text.size());
        shown.erase(0, part.size());
        return part;
    }
    /// The remaining output; `status` receives the exit status.
    std::string End(int& status) {
        while (ReadMore()) {
        }
        int ending = 0;
        EXPECT_EQ(waitpid(child, &ending, 0), child);
        EXPECT_TRUE(WIFEXITED(ending));
        status = WEXITSTATUS(ending);
        return shown;
    }

private:
    bool ReadMore() {
        char buffer[1024];
        const ssize_t count = read(terminal, buffer, sizeof buffer);
        shown.append(buffer, static_cast<std::size_t>(count > 0 ? count : 0));
        return count > 0;
    }

    int terminal = -1;
    pid_t child = -1;
    std::string shown;
};

class AtATerminal : public ProgramTest {};

TEST_F(AtATerminal, SerialEditsLinesAndSendsThemOneByOne) {
    UseCamera("<port number=\"1\" device=\"lens\"/>", "", "serial");
    TerminalProgram mivora("mivora", WithConfig({"--sdk", "simulator", "serial", "1"}));
    EXPECT_EQ(mivora.ShownUntil("\n"),
              "PYXENSERIALPORT1, 115200 Baud, Parity = No, Bytesize = 8, Stopbits = 1: every line "
              "is sent, Ctrl-C ends\r\n");
    mivora.Type("FOCUX\x7FS?\n"); // with a key that deletes the X
    mivora.ShownUntil("FOCUS 1200\r");
    mivora.Type("nonsense\x15"
                "FOCUS 77\n"); // with a key that deletes the line
    mivora.ShownUntil("OK\r");
    mivora.Type("FOCUS?\n");
    mivora.ShownUntil("FOCUS 77\r");
    mivora.Type("\x04");
    int status = -1;
    EXPECT_FALSE(Contains(mivora.End(status), "ERR"));
    EXPECT_EQ(status, 0);
}

TEST_F(AtATerminal, SerialShowsWhatArrivesByItself) {
    UseCamera("<port number=\"0\" device=\"loopback\"/>", "", "serial");
    TerminalProgram mivora(
        "mivora", WithConfig({"--sdk", "simulator", "serial", "0", "--hex", "--eol", "cr"}));
    mivora.ShownUntil("Ctrl-C ends\r\n");
    mivora.Type("00 ff\n");
    mivora.ShownUntil("00 ff\r\n00FF\r\n");
    mivora.Type("0g\n");
    mivora.ShownUntil("\"0g\" is no sequence of hexadecimal bytes\r\n");
    mivora.Type("\x03");
    int status = -1;
    mivora.End(status);
    EXPECT_EQ(status, 0);
}

TEST_F(AtATerminal, FailuresAreMarkedWithAColourUnlessNobodyWantsIt) {
    const std::string terminal = platform::GetEnvironment("TERM");
    const std::string noColour = platform::GetEnvironment("NO_COLOR");
    const auto shown = [](const char* term, const char* no) {
        platform::SetEnvironment("TERM", term);
        platform::SetEnvironment("NO_COLOR", no);
        TerminalProgram mivora("mivora", {"settings", "show", "/none"});
        int status = -1;
        const std::string text = mivora.End(status);
        EXPECT_EQ(status, 1);
        return text;
    };
    const std::string coloured = shown("xterm", "");
    const std::string plain = shown("xterm", "1");
    EXPECT_EQ(coloured.find("\x1B[1;31mmivora:\x1B[0m cannot read /none: "), 0u) << coloured;
    EXPECT_EQ(plain.find("mivora: cannot read /none: "), 0u) << plain;
    EXPECT_EQ(shown("dumb", ""), plain);
    EXPECT_EQ(Mivora({"settings", "show", "/none"}).errors.find("mivora: cannot"), 0u);
    platform::SetEnvironment("TERM", terminal);
    platform::SetEnvironment("NO_COLOR", noColour);
}

} // namespace
} // namespace scenario
