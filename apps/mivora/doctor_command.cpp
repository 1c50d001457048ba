// doctor_command.cpp - looks for what keeps a camera from working on this machine
#include "apps/common/command_line.h"
#include "apps/doctor/doctor.h"
#include "apps/doctor/ip_text.h"
#include "apps/mivora/commands.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

namespace {

std::string AddressProblem(const std::string& text) {
    return ParseIp(text) ? "" : "\"" + text + "\" is no IPv4 address";
}

std::string AreaProblem(const std::string& text) {
    return text == "sdk" || text == "network" || text == "usb" || text == "camera"
               ? ""
               : "\"" + text + "\" is none of sdk, network, usb, camera";
}

void PrintDoctorReport(const DoctorReport& report, bool json) {
    if (json) {
        std::printf("%s\n", DoctorJson(report.findings, report.fixes).Text().c_str());
        return;
    }
    for (const Finding& finding : report.findings) {
        std::fputs(FindingText(finding).c_str(), stdout);
    }
    for (const FixReport& fix : report.fixes) {
        std::fputs(FixText(fix).c_str(), stdout);
    }
}

constexpr const char* kDoctorFooter =
    "Each line is ok, a warning or a problem, with what to do about it. The status is 1 when\n"
    "there is a problem. Every camera is opened, and some frames are taken from it.\n"
    "\n"
    "--fix raises the system's receive buffer (as root), gives a camera of another subnet the\n"
    "address of --address, for good with --persistent, negotiates the packet size and looks for a\n"
    "packet delay with which frames are whole. Lines that begin with fixed or unfixed say what\n"
    "came of that, read back from system and camera; all others are what is so afterwards.\n"
    "\n"
    "Examples:\n"
    "  mivora doctor\n"
    "  mivora --sdk genicam doctor --interface eth1 --fix --address 192.168.1.20\n"
    "  mivora --camera 0 doctor --only camera --json\n";

struct DoctorArguments {
    DoctorOptions doctor;
    std::string address;
};

} // namespace

void AddDoctorCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command =
        program.AddCommand("doctor", "Find out what keeps a camera from working here");
    const auto arguments = std::make_shared<DoctorArguments>();
    DoctorOptions& doctor = arguments->doctor;
    const CommandOption fix =
        command.AddFlag("--fix", doctor.fix, "Correct what can be corrected from here");
    const CommandOption address =
        command
            .AddOption("--address", arguments->address,
                       "With --fix: the address for a camera that is in another subnet")
            .Check(AddressProblem)
            .TypeName("ADDRESS")
            .Needs(fix);
    command
        .AddFlag("--persistent", doctor.isPersistent,
                 "The camera keeps that address when its power is switched off")
        .Needs(address);
    command
        .AddOption("--interface", doctor.interfaces,
                   "Look at this network interface only, by name or address; may be repeated")
        .TypeName("NAME");
    command
        .AddOption("--only", doctor.only,
                   "Look at this only: sdk, network, usb or camera; may be repeated")
        .Check(AreaProblem)
        .TypeName("AREA");
    command.AddJson(doctor.json);
    command.SetFooter(kDoctorFooter);
    command.OnRun([&options, maker, arguments] {
        DoctorOptions& wanted = arguments->doctor;
        wanted.address = ParseIp(arguments->address);
        if (!wanted.only.empty() &&
            std::find(wanted.only.begin(), wanted.only.end(), "network") == wanted.only.end() &&
            (wanted.address || !wanted.interfaces.empty())) {
            throw BadUsage("--address and --interface have no effect without --only network");
        }
        const DoctorReport report = Doctor(wanted, options, maker).Run();
        PrintDoctorReport(report, wanted.json);
        if (HasProblem(report.findings)) {
            throw ExitStatus{1};
        }
    });
}
