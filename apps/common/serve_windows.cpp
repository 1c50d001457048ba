// serve_windows.cpp - handles window messages while a program waits
#include "apps/common/serve_windows.h"

#include "mivora/grabber.h"
#include "platform/message_loop.h"

#include <cstdint>
#include <vector>

void ServeWindows(const CMivoraGrabber& grabber) {
    std::vector<MV_WINDOW> dialogs;
    while (MV_WINDOW const window =
               grabber.GetRegisteredWindow(static_cast<std::uint32_t>(dialogs.size()))) {
        dialogs.push_back(window);
    }
    platform::ServeWindowMessages(dialogs.data(), dialogs.size());
}
