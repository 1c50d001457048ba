// power_loss_posix_test.cpp - saves that a power failure or a kill interrupts
#include "platform/file_system.h"
#include "tests/host/test_grabber.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// What ends an operation early.
enum class Interruption {
    /// A power failure before a system call that changes a file in the directory. Files with data
    /// not yet flushed to disk lose half of their content.
    kPowerLoss,
    /// The end of the process before any system call.
    kKill,
};

/// Runs an operation in a separate process and interrupts it at one of its steps.
class Interrupted {
public:
    Interrupted(std::string watchedDirectory, Interruption kind)
        : directory(std::move(watchedDirectory)), interruption(kind) {}

    /// Returns true if the operation was interrupted at step `failAt` (from 1), false if it ended
    /// earlier, which must then have returned true.
    bool Run(unsigned failAt, const std::function<bool()>& operation) {
        unflushed.clear();
        steps = 0;
        renames = 0;
        child = fork();
        if (child == 0) {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            raise(SIGSTOP);
            _exit(operation() ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSTOPPED(status));
        ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        for (bool isEntry = true;; isEntry = !isEntry) {
            ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
            EXPECT_EQ(waitpid(child, &status, 0), child);
            if (WIFEXITED(status)) {
                EXPECT_EQ(WEXITSTATUS(status), 0) << "the operation itself failed";
                return false;
            }
            if (!WIFSTOPPED(status) || WSTOPSIG(status) != (SIGTRAP | 0x80)) {
                ADD_FAILURE() << "the operation's process ended with status " << status;
                return false;
            }
            user_regs_struct call{};
            ptrace(PTRACE_GETREGS, child, nullptr, &call);
            const bool isStep = interruption == Interruption::kKill || IsStep(call);
            if (isEntry && isStep && ++steps == failAt) {
                kill(child, SIGKILL);
                waitpid(child, &status, 0);
                if (interruption == Interruption::kPowerLoss) {
                    LoseUnflushedData();
                }
                return true;
            }
            if (!isEntry) {
                Follow(call);
            }
        }
    }

    unsigned Steps() const { return steps; }
    unsigned Renames() const { return renames; }

private:
    /// The inode of a descriptor of the child if it is a file in the directory; otherwise 0.
    ino_t FileOf(unsigned long long descriptor) const {
        const std::string link =
            "/proc/" + std::to_string(child) + "/fd/" + std::to_string(descriptor);
        std::error_code failure;
        const std::string path = fs::read_symlink(link, failure).string();
        struct stat file {};
        return !failure && path.compare(0, directory.size() + 1, directory + "/") == 0 &&
                       stat(link.c_str(), &file) == 0
                   ? file.st_ino
                   : 0;
    }

    bool IsStep(const user_regs_struct& call) const {
        switch (call.orig_rax) {
        case SYS_write:
        case SYS_writev:
        case SYS_pwrite64:
        case SYS_ftruncate:
        case SYS_fchmod:
        case SYS_fchown:
        case SYS_fsync:
        case SYS_fdatasync:
            return FileOf(call.rdi) != 0;
        case SYS_open:
            return (call.rsi & (O_CREAT | O_TRUNC)) != 0;
        case SYS_openat:
            return (call.rdx & (O_CREAT | O_TRUNC)) != 0;
        case SYS_rename:
        case SYS_renameat:
        case SYS_renameat2:
        case SYS_unlink:
        case SYS_unlinkat:
            return true;
        default:
            return false;
        }
    }

    /// Records the effect of a completed system call on the disk.
    void Follow(const user_regs_struct& call) {
        switch (call.orig_rax) {
        case SYS_write:
        case SYS_writev:
        case SYS_pwrite64:
        case SYS_ftruncate:
            unflushed.insert(FileOf(call.rdi));
            break;
        case SYS_fsync:
        case SYS_fdatasync:
            unflushed.erase(FileOf(call.rdi));
            break;
        case SYS_open:
        case SYS_openat:
            if ((call.orig_rax == SYS_open ? call.rsi : call.rdx) & O_TRUNC) {
                unflushed.insert(FileOf(call.rax));
            }
            break;
        case SYS_rename:
        case SYS_renameat:
        case SYS_renameat2:
            ++renames;
            break;
        default:
            break;
        }
    }

    void LoseUnflushedData() const {
        for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
            struct stat file {};
            if (stat(entry.path().c_str(), &file) == 0 && unflushed.count(file.st_ino) != 0) {
                fs::resize_file(entry.path(), static_cast<std::uintmax_t>(file.st_size) / 2);
            }
        }
    }

    const std::string directory;
    const Interruption interruption;
    pid_t child = -1;
    unsigned steps = 0;
    unsigned renames = 0;
    std::set<ino_t> unflushed;
};

class InterruptedSave : public testing::Test {
protected:
    static constexpr const char* kByHand = "; the left camera\r\n[Grabber_0]\r\n"
                                           "Exposure = 10 ; of last summer\r\nMine=yes\r\n"
                                           "\r\n# rest\r\n[Other]\r\nKey=value\r\n";

    /// A grabber with settings to save and an ini file with this content; no file for null.
    std::unique_ptr<TestGrabber> Grabber(const char* content) {
        const std::string path = directory.PathOf("grabber.ini");
        fs::remove(path);
        if (content) {
            directory.Write("grabber.ini", content);
        }
        auto grabber = std::make_unique<TestGrabber>();
        EXPECT_EQ(grabber->SetGrabberIni(path.c_str(), 0), MV_OK);
        grabber->SetSavedExposure(12345);
        grabber->MakeCameras({7, 9});
        grabber->GetCamera(1)->SetCameraSectionNum(4);
        return grabber;
    }
    std::string OnDisk() {
        std::string content = "<absent>";
        platform::ReadWholeFile(directory.PathOf("grabber.ini"), content);
        return content;
    }
    /// Interrupts a save at each of its steps.
    void ExpectOldOrNew(const char* content, Interruption kind) {
        const std::string before = content ? content : "<absent>";
        ASSERT_EQ(Grabber(content)->SaveGrabberConfig(), MV_OK);
        const std::string after = OnDisk();
        ASSERT_NE(after, before);
        Interrupted save(directory.Path(), kind);
        std::set<std::string> seen;
        bool failed = true;
        for (unsigned step = 1; failed; ++step) {
            const auto grabber = Grabber(content);
            failed = save.Run(step, [&] { return grabber->SaveGrabberConfig() == MV_OK; });
            const std::string found = OnDisk();
            EXPECT_TRUE(found == before || found == after) << "step " << step << ":\n" << found;
            seen.insert(found);
            EXPECT_EQ(grabber->SaveGrabberConfig(), MV_OK) << "the next save works, step " << step;
            EXPECT_EQ(OnDisk(), after) << "step " << step;
            EXPECT_EQ(grabber->SaveGrabberInt32("Next", 1), MV_OK) << "step " << step;
            EXPECT_FALSE(fs::exists(directory.PathOf("grabber.ini.lock"))) << "step " << step;
        }
        EXPECT_GE(save.Steps(), 4u) << "create, write, flush, rename";
        EXPECT_EQ(save.Renames(), 1u) << "a save is one change of the file";
        EXPECT_EQ(seen.size(), 2u) << "both the old and the new file were seen";
    }

    support::TemporaryDirectory directory;
};

using PowerLossTest = InterruptedSave;
using KillTest = InterruptedSave;

TEST_F(PowerLossTest, AtEveryStepOfASaveLeavesTheOldOrTheNewFile) {
    ExpectOldOrNew(kByHand, Interruption::kPowerLoss);
}

TEST_F(PowerLossTest, AtEveryStepOfTheFirstSaveLeavesNoFileOrTheNewOne) {
    ExpectOldOrNew(nullptr, Interruption::kPowerLoss);
}

TEST_F(KillTest, AtEverySystemCallOfASaveLeavesTheOldOrTheNewFile) {
    ExpectOldOrNew(kByHand, Interruption::kKill);
}

TEST_F(KillTest, AtEverySystemCallOfTheFirstSaveLeavesNoFileOrTheNewOne) {
    ExpectOldOrNew(nullptr, Interruption::kKill);
}

TEST_F(PowerLossTest, IsDetectedInAFileThatIsWrittenInPlace) {
    const std::string path = directory.Write("plain.txt", "the old content");
    Interrupted power(directory.Path(), Interruption::kPowerLoss);
    std::set<std::string> seen;
    const auto writeInPlace = [&] {
        const int file = open(path.c_str(), O_WRONLY | O_TRUNC);
        return file >= 0 && write(file, "the new", 7) == 7 && write(file, " content", 8) == 8 &&
               fsync(file) == 0 && close(file) == 0;
    };
    for (unsigned step = 1; power.Run(step, writeInPlace); ++step) {
        seen.insert(directory.Read("plain.txt"));
        directory.Write("plain.txt", "the old content");
    }
    EXPECT_EQ(seen, (std::set<std::string>{"the old content", "", "the", "the new"}));
}

} // namespace
