// main.cpp - mivora-view, a live-view host application
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/module_maker.h"
#include "apps/view/windows/utf8_text.h"
#include "apps/view/windows/viewer_window.h"

#include <exception>
#include <string>

namespace {

constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

CWinApp application;

void ShowMessage(const std::string& text, UINT icon) {
    ::MessageBox(nullptr, ToWideLines(text).c_str(), L"Mivora View", MB_OK | icon);
}

int RunMessageLoop(CViewerWindow& window) {
    MSG message = {};
    while (::GetMessage(&message, nullptr, 0, 0) > 0) {
        if (!window.OfferMessage(message)) {
            ::TranslateMessage(&message);
            ::DispatchMessage(&message);
        }
    }
    return window.ExitStatus();
}

int RunViewer(const AppOptions& options) {
    ModuleMaker modules;
    modules.SetPath(ModuleFile(options));
    CViewerWindow window;
    if (!window.Open(options, modules, SW_SHOW)) {
        return kFailed;
    }
    return RunMessageLoop(window);
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (!AfxWinInit(::GetModuleHandle(nullptr), nullptr, ::GetCommandLine(), SW_SHOW)) {
        return kFailed;
    }
    CommandLine program("Shows a camera's images live", "mivora-view");
    AppOptions options;
    AddAppOptions(program, options);
    try {
        std::string text;
        switch (program.Parse(argumentCount, arguments, text)) {
        case CommandLine::ParseResult::kHelpRequested:
            ShowMessage(text, MB_ICONINFORMATION);
            return 0;
        case CommandLine::ParseResult::kBadUsage:
            ShowMessage(text, MB_ICONERROR);
            return kBadUsage;
        default:
            return RunViewer(options);
        }
    } catch (const std::exception& error) {
        ShowMessage(error.what(), MB_ICONERROR);
        return kFailed;
    }
}
