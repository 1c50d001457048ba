// param_command.cpp - acquisition parameters
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/json_text.h"
#include "apps/common/parse_number.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "mivora/grabber.h"

#include <algorithm>
#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

struct NamedParameter {
    std::uint32_t id;
    const char* name;
};

constexpr NamedParameter kParameters[] = {
    {MVGF_FRAME_BUFFER_COUNT, "frame buffers"},
    {MVGF_ACQUISITION_CAPABILITIES, "kinds of acquisition, a bit mask"},
    {MVGF_TIMER_MODE, "timer mode"},
    {MVGF_TIMER_VALUES, "exposure and frame interval"},
    {MVGF_TIMER_ENABLED, "timer enabled"},
    {MVGF_TRIGGER_DELAY, "trigger delay"},
    {MVGF_TRIGGER_POLARITY, "trigger polarity"},
    {MVGF_TIME_BASE, "time base"},
    {MVGF_GAIN, "gain"},
    {MVGF_OFFSET, "offset"},
    {MVGF_STROBE_VALUES, "strobe"},
    {MVGF_STROBE_POLARITY, "strobe polarity"},
    {MVGF_FRAMES_RECEIVED, "frames received"},
};

struct ParamOptions {
    std::uint32_t id = 0;
    std::string value1;
    std::string value2;
    bool json = false;
};

std::string ParameterText(std::uint32_t id) {
    return "parameter " + std::to_string(id);
}

/// Only the time base has negative values.
std::string ValueText(std::uint32_t id, std::uint64_t value) {
    return id == MVGF_TIME_BASE ? std::to_string(static_cast<std::int64_t>(value))
                                : std::to_string(value);
}

/// A negative number is converted to its two's complement.
std::optional<std::uint64_t> ReadValue(const std::string& text) {
    if (const auto number = ParseUnsigned(text)) {
        return number;
    }
    const auto number = ParseSigned(text);
    return number ? std::optional(static_cast<std::uint64_t>(*number)) : std::nullopt;
}

std::string ValueProblem(const std::string& text) {
    return ReadValue(text) ? "" : "\"" + text + "\" is no number";
}

JsonValue ValueJson(std::uint32_t id, std::uint64_t value) {
    return JsonValue::FromText(ValueText(id, value));
}

/// What a parameter is called; empty for one that is not known here.
const char* NameOf(std::uint32_t id) {
    const auto* const found =
        std::find_if(std::begin(kParameters), std::end(kParameters),
                     [id](const NamedParameter& one) { return one.id == id; });
    return found == std::end(kParameters) ? "" : found->name;
}

/// Prints values of a parameter, each with its name.
template <std::size_t count>
void PrintValues(const ParamOptions& options, const char* const (&names)[count],
                 const std::uint64_t (&values)[count]) {
    std::vector<JsonMember> members = {{"id", options.id}, {"name", NameOf(options.id)}};
    std::string line;
    for (std::size_t i = 0; i < count; ++i) {
        members.push_back({names[i], ValueJson(options.id, values[i])});
        line += (line.empty() ? "" : " ") + std::string(names[i]) + "=" +
                ValueText(options.id, values[i]);
    }
    if (options.json) {
        PrintReport(std::move(members));
    } else {
        std::printf("%s\n", line.c_str());
    }
}

constexpr const char* kLimits[] = {"min", "max", "min2", "max2"};

void Get(Session& session, const ParamOptions& options) {
    std::uint64_t values[2] = {};
    session.Check("GetGrabberParam",
                  session.Grabber().GetGrabberParam(options.id, &values[0], &values[1]),
                  ParameterText(options.id));
    PrintValues(options, {"value1", "value2"}, values);
}

void Limits(Session& session, const ParamOptions& options) {
    std::uint64_t limits[4] = {};
    session.Check("GetGrabberParamLimits",
                  session.Grabber().GetGrabberParamLimits(options.id, &limits[0], &limits[1],
                                                          &limits[2], &limits[3]),
                  ParameterText(options.id));
    PrintValues(options, kLimits, limits);
}

/// Lists the parameters that the grabber serves with this camera: a module need not have all.
void List(Session& session, bool json) {
    CMivoraGrabber& grabber = session.Grabber();
    std::vector<JsonValue> list;
    for (const auto& [id, name] : kParameters) {
        std::uint64_t values[2] = {};
        std::uint64_t limits[4] = {};
        const MV_ERRCODE code = grabber.GetGrabberParam(id, &values[0], &values[1]);
        if (code == MV_NOT_SERVED) {
            continue;
        }
        session.Check("GetGrabberParam", code, ParameterText(id));
        const bool hasLimits = grabber.GetGrabberParamLimits(id, &limits[0], &limits[1], &limits[2],
                                                             &limits[3]) == MV_OK;
        std::vector<JsonMember> members = {{"id", id},
                                           {"name", name},
                                           {"value1", ValueJson(id, values[0])},
                                           {"value2", ValueJson(id, values[1])}};
        std::string line = name;
        line.resize(std::max<std::size_t>(line.size(), 32), ' ');
        line += " value1=" + ValueText(id, values[0]) + " value2=" + ValueText(id, values[1]);
        for (std::size_t i = 0; hasLimits && i < std::size(limits); ++i) {
            members.push_back({kLimits[i], ValueJson(id, limits[i])});
            line += std::string(" ") + kLimits[i] + "=" + ValueText(id, limits[i]);
        }
        if (json) {
            list.push_back(JsonObject(members));
        } else {
            std::printf("%4" PRIu32 "  %s\n", id, line.c_str());
        }
    }
    if (json) {
        PrintReport({{"parameters", JsonArray(list)}});
    }
}

/// What the parameter takes at present, for the message about a value that it does not take.
std::vector<std::string> LimitsText(CMivoraGrabber& grabber, std::uint32_t id) {
    std::uint64_t limits[4] = {};
    if (grabber.GetGrabberParamLimits(id, &limits[0], &limits[1], &limits[2], &limits[3]) !=
        MV_OK) {
        return {};
    }
    std::string text = ParameterText(id) + " takes " + ValueText(id, limits[0]) + " to " +
                       ValueText(id, limits[1]);
    if (limits[2] != 0 || limits[3] != 0) {
        text += ", and " + ValueText(id, limits[2]) + " to " + ValueText(id, limits[3]) +
                " as its second value";
    }
    return {text};
}

void Set(Session& session, const ParamOptions& options) {
    CMivoraGrabber& grabber = session.Grabber();
    std::uint64_t second = 0;
    if (!options.value2.empty()) {
        second = ReadValue(options.value2).value();
    } else if (options.id == MVGF_TIMER_VALUES) {
        // A single value is the exposure; the interval stays unchanged.
        session.Check("GetGrabberParam", grabber.GetGrabberParam(options.id, nullptr, &second),
                      ParameterText(options.id));
    }
    const MV_ERRCODE code =
        grabber.SetGrabberParam(options.id, ReadValue(options.value1).value(), second);
    session.Check("SetGrabberParam", code, ParameterText(options.id),
                  code == MV_BAD_VALUE ? LimitsText(grabber, options.id)
                                       : std::vector<std::string>());
    Get(session, options);
}

constexpr const char* kParamFooter =
    "Ids: 1 frame buffers, 128 kinds of acquisition, 256 timer mode, 257 exposure and frame\n"
    "interval in units of the time base, 258 timer enabled, 261 time base (-6 microseconds to 0\n"
    "seconds), 4096 frames received. \"list\" says what the module and the camera serve.\n"
    "\n"
    "257 is read from the camera and written to it. Exposure and Interval of the configuration\n"
    "file are not: they are what 257 was when the camera was closed, for hosts to ask for, and\n"
    "opening a camera leaves its own values as they are.\n"
    "\n"
    "Examples:\n"
    "  mivora param list\n"
    "  mivora param get 257\n"
    "  mivora param limits 257\n"
    "  mivora param set 257 10000 40000\n"
    "  mivora param set 261 -3\n";

} // namespace

void AddParamCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("param", "Read and set acquisition parameters");
    command.RequireCommand();
    command.SetFooter(kParamFooter);
    Command list = command.AddCommand("list", "List the parameters that there are");
    const auto json = std::make_shared<bool>(false);
    list.AddJson(*json);
    list.OnRun([&options, maker, json] {
        Session session(options, maker());
        session.OpenCamera();
        List(session, *json);
    });
    const auto param = std::make_shared<ParamOptions>();
    const auto add = [&](const char* name, const char* text,
                         void (*run)(Session&, const ParamOptions&)) {
        Command action = command.AddCommand(name, text);
        action.AddOption("ID", param->id, "Number of the parameter").Required();
        action.AddJson(param->json);
        action.OnRun([&options, maker, param, run] {
            Session session(options, maker());
            session.OpenCamera();
            run(session, *param);
        });
        return action;
    };
    add("get", "Print both values of a parameter", Get);
    add("limits", "Print the limits of a parameter", Limits);
    Command set = add("set", "Set a parameter and print what it is then", Set);
    set.AddOption("V1", param->value1, "First value").Required().Check(ValueProblem);
    set.AddOption("V2", param->value2, "Second value; without it 0, for 257 as it is")
        .Check(ValueProblem);
}
