// The feature control dialog and a log sink that sends messages to its thread.
#include "platform/event.h"
#include "scripted_dialog.h"

#include <atomic>
#include <thread>

namespace {

constexpr unsigned kPatienceMs = 10000;

/// Shows lines of other threads in a window, as a host with a log window does.
class SendingSink final : public ILogSink {
public:
    void Write(int, const char*, ...) override { Send(); }
    void WriteError(const char*) override { Send(); }

    std::atomic<HWND> window{nullptr};
    std::atomic<int> delayed{0}; ///< lines that the window's thread kept waiting
    platform::Event sending;     ///< set while a line waits for the window's thread

private:
    void Send() {
        const HWND to = window;
        if (!to || delayed != 0 ||
            ::GetWindowThreadProcessId(to, nullptr) == ::GetCurrentThreadId()) {
            return;
        }
        sending.Set();
        DWORD_PTR result = 0;
        ::SetLastError(ERROR_SUCCESS);
        if (!::SendMessageTimeout(to, WM_NULL, 0, 0, SMTO_NORMAL, kPatienceMs, &result) &&
            ::GetLastError() == ERROR_TIMEOUT) {
            ++delayed;
        }
        sending.Reset();
    }
};

class DialogWithASendingSink : public ScriptedDialog {
protected:
    ILogSink& LogSink() override { return sending; }

    void SetUp() override {
        Open(WithRules());
        Expand(L"Camera/ImageFormatControl");
        sending.window = Frame().m_hWnd;
        changes = std::thread([this] {
            while (!stop) {
                sdk.Fire(scripted::CameraHandle(), "Width");
            }
            ended.Set();
        });
    }
    void TearDown() override {
        stop = true;
        while (changes.joinable() && !ended.Wait(5)) {
            Pump();
        }
        changes.join();
        sending.window = nullptr;
        EXPECT_EQ(sending.delayed, 0) << "the window's thread waited for the call";
        EndGrabber();
    }
    /// Returns while a call is sending to this thread, which has not received it yet.
    void AwaitCall() {
        Pump();
        ASSERT_TRUE(sending.sending.Wait(kPatienceMs));
    }

    SendingSink sending;

private:
    std::atomic<bool> stop{false};
    platform::Event ended;
    std::thread changes;
};

TEST_F(DialogWithASendingSink, TakesItsRegistrationsBackDuringACall) {
    AwaitCall();
    Dialog().Hide();
    AwaitCall();
    Dialog().Show();
    AwaitCall();
    Dialog().UpdateVisibleFeatures();
}

TEST_F(DialogWithASendingSink, EndsDuringACall) {
    AwaitCall();
    SetDialog(nullptr);
    Dialog().DestroyWindow();
    EXPECT_EQ(Grabber().GetRegisteredWindow(0), nullptr);
}

} // namespace
