// serial_devices.cpp - devices at the other end of the camera's serial ports
#include "pxnc/simulator/serial_devices.h"

#include "pxnc/skeleton/number_text.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <sstream>

namespace pxsim {
namespace {

class Loopback : public SerialDevice {
public:
    std::string Receive(const std::string& bytes) override { return bytes; }
};

class Silence : public SerialDevice {
public:
    std::string Receive(const std::string&) override { return {}; }
};

/// Commands and answers are lines; a command ends with CR, LF or both, an answer with CR LF.
/// "NAME?" queries a value, "NAME VALUE" sets it and is answered with "OK".
class LensController : public SerialDevice {
public:
    std::string Receive(const std::string& bytes) override {
        std::string answers;
        for (const char byte : bytes) {
            if (byte != '\r' && byte != '\n') {
                // A longer line can only be noise; the rest of it is dropped.
                if (line.size() < kLongestLine) {
                    line += byte;
                }
                continue;
            }
            if (!line.empty()) {
                answers += Answer(line) + "\r\n";
                line.clear();
            }
        }
        return answers;
    }

private:
    struct Axis {
        std::int64_t value;
        std::int64_t highest;
    };

    std::string Answer(const std::string& command) {
        std::istringstream words(command);
        std::string name;
        std::string argument;
        std::string more;
        words >> name >> argument >> more;
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        const bool asks = !name.empty() && name.back() == '?';
        if (asks) {
            name.pop_back();
        }
        if (name == "ID" && asks) {
            return "ID PYXEN LENS 1.0";
        }
        auto axis = axes.find(name);
        if (axis == axes.end()) {
            return "ERR UNKNOWN COMMAND";
        }
        if (asks) {
            return argument.empty() ? name + " " + std::to_string(axis->second.value)
                                    : "ERR TOO MANY ARGUMENTS";
        }
        return Set(axis->second, argument, more);
    }

    static std::string Set(Axis& axis, const std::string& argument, const std::string& more) {
        std::int64_t value = 0;
        if (!more.empty()) {
            return "ERR TOO MANY ARGUMENTS";
        }
        if (!skeleton::ParseInt(argument, value)) {
            return "ERR BAD VALUE";
        }
        if (value < 0 || value > axis.highest) {
            return "ERR OUT OF RANGE";
        }
        axis.value = value;
        return "OK";
    }

    static constexpr std::size_t kLongestLine = 80;
    std::string line;
    std::map<std::string, Axis> axes{
        {"FOCUS", {1200, 4095}}, {"IRIS", {56, 220}}, {"ZOOM", {100, 800}}};
};

} // namespace

std::unique_ptr<SerialDevice> MakeSerialDevice(const std::string& name) {
    if (name == "loopback") {
        return std::make_unique<Loopback>();
    }
    if (name == "lens") {
        return std::make_unique<LensController>();
    }
    if (name == "none") {
        return std::make_unique<Silence>();
    }
    return nullptr;
}

} // namespace pxsim
