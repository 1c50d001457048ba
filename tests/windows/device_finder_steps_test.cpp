// device_finder_steps_test.cpp - the order in which the device finder does its steps
#include "device_finder_fixture.h"
#include "sent_messages.h"

#include <string>

namespace {

/// What is done one after the other: messages to the dialog and its list, calls of the SDK, lines
/// of the log. Repetitions count once.
class DeviceFinderSteps : public DeviceFinder, private ILogSink {
protected:
    void SetUp() override {
        DeviceFinder::SetUp();
        sdk.Data().cameras.resize(1);
        const std::pair<const char*, const char*> calls[] = {
            {"PxnCamerasList", "list cameras"},
            {"PxnFeatureStringGet", "read texts"},
            {"PxnFeatureInvalidationRegister", "register"},
            {"PxnFeatureInvalidationUnregister", "unregister"}};
        for (const auto& [entry, step] : calls) {
            sdk.OnCall(entry, [this, name = std::string(step)] { Add(name); });
        }
    }
    void TearDown() override {
        sdk.ClearHooks();
        DeviceFinder::TearDown();
    }

    Texts Take() { return std::exchange(steps, {}); }
    ILogSink& Log() { return *this; }
    void Add(const std::string& step) {
        if (steps.empty() || steps.back() != step) {
            steps.push_back(step);
        }
    }

private:
    void Write(int, const char* format, ...) override {
        const std::string text = format;
        const std::size_t words = text.find(": ");
        Add("log " + text.substr(words + 2, 9));
    }
    void WriteError(const char* text) override { Add(text); }

    void Watch(const CWPSTRUCT& sent) {
        if (sent.message == WM_SETICON && SentMessages::IsOfClass(sent.hwnd, L"#32770")) {
            Add("icon");
        }
        if (!SentMessages::IsOfClass(sent.hwnd, WC_LISTVIEW)) {
            return;
        }
        switch (sent.message) {
        case LVM_SETEXTENDEDLISTVIEWSTYLE:
        case LVM_INSERTCOLUMN:
        case LVM_SETIMAGELIST:
            Add("initialise");
            break;
        case LVM_INSERTITEM:
            Add("insert row");
            break;
        case LVM_SETITEM:
            Add("number row");
            break;
        case LVM_SETITEMTEXT:
            Add("set texts");
            break;
        case LVM_SETITEMSTATE:
            Add(reinterpret_cast<const LVITEM*>(sent.lParam)->stateMask & LVIS_SELECTED
                    ? "select row"
                    : "set state");
            break;
        case LVM_DELETEITEM:
            Add("delete row");
            break;
        case WM_SETFOCUS:
            Add("focus");
            break;
        default:
            break;
        }
    }

    Texts steps;
    const SentMessages watch{[this](const CWPSTRUCT& sent) {
        Watch(sent);
    }};
};

const Texts kNewCamera = {"list cameras",  "read texts", "insert row", "number row",
                          "log New camer", "set texts",  "set state",  "log state of "};

Texts Joined(std::initializer_list<Texts> parts) {
    Texts all;
    for (const Texts& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

TEST_F(DeviceFinderSteps, FromTheIconToTheFocus) {
    RunWithLog(Log(), "ext-left", [&] {
        EXPECT_EQ(
            Take(),
            Joined({{"icon", "initialise"}, kNewCamera, {"select row", "register", "focus"}}));
        Push(IDCANCEL);
        EXPECT_EQ(Take().back(), "unregister");
    });
}

TEST_F(DeviceFinderSteps, OfAnEvent) {
    RunWithLog(Log(), "", [&] {
        sdk.Edit([](scripted::Model& model) {
            model.cameras[0] = Camera("other", "Other", 1);
            model.cameras.push_back(Camera("another", "Another", 1));
        });
        Take();
        Discover();
        const Texts known = {"read texts", "insert row", "number row",   "log New camer",
                             "set texts",  "set state",  "log state of "};
        EXPECT_EQ(Take(), Joined({{"log handle = ", "unregister", "list cameras"},
                                  known,
                                  known,
                                  {"delete row", "log camera %s", "number row", "register"}}));
        Push(IDCANCEL);
    });
}

} // namespace
