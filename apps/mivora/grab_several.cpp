// grab_several.cpp - the command "grab" with several cameras
#include "apps/mivora/grab_several.h"

#include "apps/common/command_failure.h"
#include "apps/common/session_share.h"
#include "apps/mivora/grab_camera.h"
#include "apps/mivora/grab_console.h"
#include "apps/mivora/recording_facts.h"
#include "apps/mivora/several_report.h"
#include "apps/mivora/start_gate.h"
#include "apps/recording/host_clock.h"
#include "apps/recording/recording_directory.h"
#include "apps/recording/recording_set.h"
#include "mivora/grabber.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/interrupt.h"
#include "platform/thread.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace {

/// The cameras of one command. Each run has a thread; all else is done on the thread that made
/// this object.
class SeveralGrab {
public:
    SeveralGrab(const AppOptions& appOptions, const GrabOptions& grabOptions, IGrabberMaker& maker)
        : options(grabOptions),
          share(appOptions),
          console(grabOptions.progress, appOptions.cameras.size()),
          gate(appOptions.cameras.size()) {
        Open(appOptions, maker);
        PrepareOutput();
    }

    /// Returns when all runs have ended.
    void Run() {
        const std::optional<SdkCounts> before = share.Sdk().Counts();
        for (const std::unique_ptr<Part>& part : parts) {
            part->thread = platform::Thread::Start(&RunPart, part.get(), 0);
            if (!part->thread.IsJoinable()) {
                gate.GiveUp();
                part->failure = std::make_exception_ptr(
                    CommandFailure("cannot start the thread that takes its frames"));
            }
        }
        for (const std::unique_ptr<Part>& part : parts) {
            part->thread.Join();
        }
        const std::optional<SdkCounts> after = share.Sdk().Counts();
        if (before && after) {
            report.sdk = *after - *before;
        }
        report.interrupted = platform::InterruptRequested();
        for (const std::unique_ptr<Part>& part : parts) {
            NoteOutcome(*part);
        }
        WriteSet();
    }

    /// Throws unless all that was wanted has been done.
    void ThrowOutcome() const {
        const std::vector<std::string> problems = report.Problems();
        if (problems.empty()) {
            return;
        }
        const std::string text = std::to_string(problems.size()) + " of " +
                                 std::to_string(parts.size()) +
                                 " cameras did not deliver all that was wanted";
        if (report.IsFailed()) {
            throw CommandFailure(text, problems);
        }
        throw FramesMissing(text, problems);
    }

    const SeveralReport& Report() const { return report; }

private:
    struct Part {
        SeveralGrab* owner = nullptr;
        CameraReport* result = nullptr; // not of the run's thread
        std::unique_ptr<GrabCamera> camera;
        std::exception_ptr failure; // of the run's thread until that has ended
        platform::Thread thread;
    };

    void Open(const AppOptions& appOptions, IGrabberMaker& maker) {
        report.startedBy = options.IsTriggered() ? kStartByTrigger : kStartBySoftware;
        report.cameras.resize(appOptions.cameras.size());
        for (std::size_t i = 0; i < appOptions.cameras.size(); ++i) {
            AppOptions one = appOptions;
            one.cameras = {appOptions.cameras[i]};
            GrabOptions own = options;
            own.queueMegabytes =
                std::max<std::uint64_t>(options.queueMegabytes / appOptions.cameras.size(), 1);
            parts.push_back(std::make_unique<Part>());
            Part& part = *parts.back();
            part.owner = this;
            part.camera = std::make_unique<GrabCamera>(one, own, maker, &share);
            part.result = &report.cameras[i];
            Session& session = part.camera->OpenSession();
            part.result->name = session.ActCameraText();
            part.result->index = session.Grabber().GetActCameraIndex();
            part.result->uniqueId = session.Grabber().GetActCamera()->GetCameraUniqueID();
            part.result->identity = DescribeCamera(session);
        }
    }

    void PrepareOutput() {
        const GrabShare grabShare{console, gate, UnixMinusHostNanoseconds()};
        if (options.IsRecorded()) {
            PrepareRecordingDirectory(options.output, options.overwrite);
            report.output = options.output;
            start = TimeText(platform::MonotonicNanoseconds() + grabShare.unixMinusHostNs);
            NameFolders();
            WriteSet();
        }
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const std::string& folder = report.cameras[i].folder;
            parts[i]->camera->Prepare(
                folder.empty() ? "" : platform::JoinPath(options.output, folder), grabShare, i);
        }
    }

    void NameFolders() {
        std::vector<FolderCamera> cameras;
        for (const CameraReport& camera : report.cameras) {
            cameras.push_back({camera.identity.serial.value_or(""), camera.uniqueId});
        }
        const std::vector<std::string> folders = CameraFolders(cameras);
        for (std::size_t i = 0; i < folders.size(); ++i) {
            report.cameras[i].folder = folders[i];
            report.cameras[i].problem = "the recording has not ended";
        }
    }

    static void RunPart(void* context) {
        Part& part = *static_cast<Part*>(context);
        try {
            part.camera->Run();
        } catch (...) {
            part.failure = std::current_exception();
            part.owner->gate.GiveUp();
        }
    }

    static void NoteOutcome(Part& part) {
        CameraReport& result = *part.result;
        result.problem.clear();
        result.grab = part.camera->Report();
        try {
            if (part.failure) {
                std::rethrow_exception(part.failure);
            }
            part.camera->ThrowOutcome();
        } catch (const FramesMissing& missing) {
            result.problem = missing.Message();
        } catch (const CommandFailure& failure) {
            result.isFailed = true;
            result.problem = failure.Message();
            for (const std::string& detail : failure.Details()) {
                result.problem += "; " + detail;
            }
        }
    }

    /// Describes the recordings, as they are now.
    void WriteSet() {
        if (!options.IsRecorded()) {
            return;
        }
        RecordingSet set;
        set.program = "mivora";
        set.start = start;
        set.startedBy = report.startedBy;
        set.firstFramesNs = report.FirstFramesNs();
        for (const CameraReport& camera : report.cameras) {
            RecordingOfSet recording;
            recording.folder = camera.folder;
            recording.camera = camera.identity;
            if (options.frames != 0) {
                recording.frames.wanted = options.frames;
            }
            if (camera.grab.recording) {
                recording.frames.recorded = camera.grab.recording->counts.recorded;
                recording.frames.missing = camera.grab.recording->counts.Missing();
            }
            recording.complete = camera.problem.empty();
            recording.reason = camera.problem;
            set.recordings.push_back(recording);
        }
        WriteRecordingDescription(options.output, set.Json());
    }

    const GrabOptions& options;
    SessionShare share;
    GrabConsole console;
    StartGate gate;
    std::string start;
    SeveralReport report;
    std::vector<std::unique_ptr<Part>> parts; // last: they use all other members
};

} // namespace

void GrabFromSeveral(const AppOptions& app, const GrabOptions& options, IGrabberMaker& maker) {
    SeveralGrab grab(app, options, maker);
    grab.Run();
    PrintGrabReport(options, grab.Report().Json(), grab.Report().Text());
    grab.ThrowOutcome();
}
