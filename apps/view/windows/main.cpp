// main.cpp - mivora-view, a live-view host application
#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/module_maker.h"
#include "apps/view/windows/utf8_text.h"
#include "apps/view/windows/viewer_window.h"

#include <exception>

namespace {

constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

CWinApp application;

void Tell(const std::string& text, UINT icon) {
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
    const AFX_MAINTAIN_STATE2 entered(AfxGetStaticModuleState());
    CLI::App app("Shows a camera's images live", "mivora-view");
    AppOptions options;
    AddAppOptions(app, options);
    app.require_subcommand(0);
    try {
        app.parse(argumentCount, arguments);
        return RunViewer(options);
    } catch (const CLI::CallForHelp&) {
        Tell(app.help(), MB_ICONINFORMATION);
        return 0;
    } catch (const CLI::ParseError& error) {
        Tell(error.what() + ("\n\n" + app.help()), MB_ICONERROR);
        return kBadUsage;
    } catch (const std::exception& error) {
        Tell(error.what(), MB_ICONERROR);
        return kFailed;
    }
}
