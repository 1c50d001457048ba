// serial_command.cpp - a terminal on a serial port
#include "apps/common/channel_settings.h"
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/hex_bytes.h"
#include "apps/common/input_lines.h"
#include "apps/common/json_text.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "mivora/grabber.h"
#include "platform/console.h"
#include "platform/interrupt.h"
#include "platform/mutex.h"
#include "platform/printable_text.h"
#include "platform/sleep.h"
#include "platform/text.h"
#include "platform/thread.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kHostChannelType = 0;
constexpr std::uint32_t kCameraChannelType = 1;
constexpr const char* kCameraPortPrefix = "PYXENSERIALPORT";
constexpr std::size_t kMostAtOnce = 1024;
constexpr std::uint32_t kLookAgainMs = 10;
constexpr int kBadInput = 2;

struct SerialOptions {
    ChannelSettings settings{"", "-", "-", "-", "-"};
    std::string lineEnd = "lf";
    std::uint32_t lingerMs = 500;
    bool hex = false;
    bool json = false;
};

std::string LineEnd(const std::string& name) {
    return name == "cr" ? "\r" : name == "lf" ? "\n" : name == "crlf" ? "\r\n" : "";
}

/// Transfers bytes between the standard streams and the active channel. A second thread prints what
/// arrives.
class Terminal {
public:
    Terminal(Session& openSession, const SerialOptions& serialOptions)
        : session(openSession),
          options(serialOptions),
          isInteractive(platform::IsTerminal(0)),
          lines([this] { return readResult == MV_OK && !std::ferror(stdout); }) {}

    void Run() {
        if (isInteractive) {
            std::fprintf(
                stderr, "%s, %s: every line is sent, Ctrl-C ends\n",
                platform::PrintableText(options.settings.port).c_str(),
                platform::PrintableText(session.Grabber().GetActCmdChannel()->GetConfigText())
                    .c_str());
        }
        const auto procedure = [](void* self) {
            auto& terminal = *static_cast<Terminal*>(self);
            try {
                terminal.PrintArrivals();
            } catch (const std::bad_alloc&) {
                terminal.isOutOfMemory = true;
            }
        };
        platform::Thread printer = platform::Thread::Start(procedure, this, 0);
        if (!printer.IsJoinable()) {
            throw CommandFailure("cannot start a thread for reading the port");
        }
        const MV_ERRCODE code = SendInput();
        printer.Join();
        if (isOutOfMemory) {
            throw std::bad_alloc();
        }
        session.Check("CMDWriteBuffer", code, options.settings.port);
        session.Check("CMDReadBuffer", readResult, options.settings.port);
    }
    /// True if a line from a pipe was reported instead of sent.
    bool HasBadInput() const { return hasBadInput; }

private:
    /// Sends the input to its end or to the first failure, which the printer gets to know.
    MV_ERRCODE SendInput() {
        struct EndOfInput {
            std::atomic<bool>& isThere;
            ~EndOfInput() { isThere = true; }
        };
        const EndOfInput end{inputEnded};
        MV_ERRCODE code = MV_OK;
        std::vector<std::uint8_t> bytes;
        while (code == MV_OK && ReadInput(bytes)) {
            code = Write(bytes);
        }
        return code;
    }

    /// Reads what to send next; false at the end of the input.
    bool ReadInput(std::vector<std::uint8_t>& bytes) {
        const bool byLines = isInteractive || options.hex;
        std::string text;
        if (!(byLines ? lines.Next(text) : lines.NextPiece(text))) {
            return false;
        }
        bytes = Translate(std::move(text));
        return true;
    }

    std::vector<std::uint8_t> Translate(std::string text) {
        if (!isInteractive && !options.hex) {
            return {text.begin(), text.end()};
        }
        if (text.ends_with('\r')) {
            text.pop_back();
        }
        if (options.hex) {
            auto bytes = ParseHex(text);
            if (!bytes) {
                hasBadInput = !isInteractive; // at a terminal the next line is the right one
                std::fprintf(stderr, "mivora: \"%s\" is no sequence of hexadecimal bytes\n",
                             platform::PrintableText(text).c_str());
            }
            return bytes.value_or(std::vector<std::uint8_t>());
        }
        text += LineEnd(options.lineEnd);
        return {text.begin(), text.end()};
    }

    MV_ERRCODE Write(const std::vector<std::uint8_t>& bytes) {
        for (std::size_t sent = 0; sent < bytes.size() && !platform::InterruptRequested();) {
            const std::size_t piece = std::min(bytes.size() - sent, kMostAtOnce);
            std::uint64_t count = 0;
            platform::MutexLock lock(channelMutex);
            const MV_ERRCODE code =
                session.Grabber().CMDWriteBuffer(bytes.data() + sent, piece, &count);
            if (code != MV_OK) {
                return code;
            }
            sent += piece;
            // Incoming data must be read meanwhile: a port buffers only a limited amount.
            TakeArrivals();
        }
        return MV_OK;
    }

    /// Reads everything that is pending at the port.
    void TakeArrivals() REQUIRES(channelMutex) {
        std::uint64_t count = 1;
        while (readResult == MV_OK && count != 0) {
            std::uint8_t bytes[kMostAtOnce];
            count = 0;
            readResult = session.Grabber().CMDReadBuffer(bytes, sizeof bytes, &count);
            arrived.insert(arrived.end(), bytes, bytes + count);
        }
    }

    void PrintArrivals() {
        std::uint32_t quietMs = 0;
        while (!platform::InterruptRequested() && (!inputEnded || quietMs < options.lingerMs)) {
            std::vector<std::uint8_t> bytes;
            {
                platform::MutexLock lock(channelMutex);
                TakeArrivals();
                bytes.swap(arrived);
            }
            if (!bytes.empty()) {
                quietMs = 0;
                Print(bytes); // without the mutex: the reader of the output may be slow
            } else if (readResult != MV_OK) {
                return;
            } else {
                quietMs += inputEnded ? kLookAgainMs : 0;
                platform::SleepMs(kLookAgainMs);
            }
        }
    }

    void Print(const std::vector<std::uint8_t>& bytes) const {
        if (options.json) {
            PrintReport(
                {{"received", std::string(bytes.begin(), bytes.end())}, {"hex", HexText(bytes)}});
        } else if (options.hex) {
            std::printf("%s\n", HexText(bytes).c_str());
        } else {
            std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        }
        std::fflush(stdout);
    }

    Session& session;
    const SerialOptions& options;
    const bool isInteractive;
    InputLines lines;
    platform::Mutex channelMutex; // serialises the two threads' access to the channel
    std::vector<std::uint8_t> arrived GUARDED_BY(channelMutex); // but not printed yet
    bool hasBadInput = false;
    std::atomic<bool> inputEnded{false};
    std::atomic<bool> isOutOfMemory{false}; // the printer, which has ended
    std::atomic<MV_ERRCODE> readResult{MV_OK};
};

void Serial(Session& session, SerialOptions& options) {
    std::string& port = options.settings.port;
    if (port.size() == 1 && port[0] >= '0' && port[0] <= '9') {
        port = kCameraPortPrefix + port;
    }
    const bool isCameraPort =
        platform::CompareNoCase(port.substr(0, std::strlen(kCameraPortPrefix)).c_str(),
                                kCameraPortPrefix) == 0;
    if (isCameraPort) {
        session.OpenCamera();
    } else {
        session.Init();
    }
    CMivoraGrabber& grabber = session.Grabber();
    const std::string object = isCameraPort ? port + " of " + session.ActCameraText() : port;
    CCmdChannel* const channel =
        grabber.CreateCmdChannel(isCameraPort ? kCameraChannelType : kHostChannelType);
    if (!channel) {
        throw CommandFailure("the grabber module has no channel for " + port);
    }
    session.Check("AddCmdChannel", grabber.AddCmdChannel(channel), port);
    session.Check("GetConfig", ApplySettings(*channel, options.settings), object);
    session.Check("CMDOpen", grabber.CMDOpen(), object);
    platform::InstallInterruptHandler();
    Terminal terminal(session, options);
    terminal.Run();
    session.Check("CMDClose", grabber.CMDClose(), port);
    if (terminal.HasBadInput()) {
        throw ExitStatus{kBadInput};
    }
}

constexpr const char* kSerialFooter =
    "PORT is the number of one of the camera's serial ports (0 to 4, or its name such as\n"
    "PYXENSERIALPORT0), or a port of this computer (COM1, ttyS0).\n"
    "At a terminal a line can be edited until Enter sends it, with the line end of --eol; Ctrl-C\n"
    "ends. What comes through a pipe is sent as it is, and after the end of the input the command\n"
    "waits until nothing has arrived for the time of --linger. With --hex lines are hexadecimal\n"
    "bytes in both directions; a line that is none is not sent, and the status is 2 at the end.\n"
    "\n"
    "Examples:\n"
    "  mivora --camera 2 serial 0\n"
    "  mivora --camera 2 serial 0 --baud 9600 --parity Even\n"
    "  printf 'FF00A5\\n' | mivora --camera 2 serial 0 --hex\n";

} // namespace

void AddSerialCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("serial", "A terminal on a serial port");
    const auto serial = std::make_shared<SerialOptions>();
    ChannelSettings& settings = serial->settings;
    command.AddOption("PORT", settings.port, "Number or name of the port").Required();
    command.AddOption("--baud", settings.baud, "Bits per second")
        .OneOf({"300", "600", "1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200",
                "230400"});
    command.AddOption("--parity", settings.parity, "Parity")
        .OneOfIgnoringCase({"No", "Odd", "Even"});
    command.AddOption("--bytesize", settings.byteSize, "Bits per byte").OneOf({"5", "6", "7", "8"});
    command.AddOption("--stopbits", settings.stopBits, "Stop bits").OneOf({"1", "1.5", "2"});
    command.AddOption("--eol", serial->lineEnd, "Line end sent for a line typed at a terminal")
        .OneOf({"lf", "cr", "crlf", "none"})
        .ShowDefault();
    command.AddOption("--linger", serial->lingerMs, "Milliseconds of silence that end it")
        .Check(CountProblem)
        .ShowDefault()
        .TypeName("MS");
    command.AddJson(serial->json);
    command.AddFlag("--hex", serial->hex, "Hexadecimal bytes instead of text");
    command.SetFooter(kSerialFooter);
    command.OnRun([&options, maker, serial] {
        Session session(options, maker());
        Serial(session, *serial);
    });
}
