// save_dialog.cpp - asks for the file to save an image to
#include "apps/view/windows/save_dialog.h"

#include "apps/common/image_writer.h"
#include "platform/text.h"

#include <commdlg.h>

#include <array>

std::string AskForImageFile(HWND parent) {
    constexpr std::array<const char*, 4> kEndings = {".png", ".tiff", ".pnm", ".raw"};
    std::array<wchar_t, 4096> path = {};
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof(dialog);
    dialog.hwndOwner = parent;
    dialog.lpstrFilter = L"PNG images (*.png)\0*.png\0"
                         L"TIFF images (*.tif; *.tiff)\0*.tif;*.tiff\0"
                         L"PNM images (*.pnm; *.pgm; *.ppm)\0*.pnm;*.pgm;*.ppm\0"
                         L"Raw images (*.raw)\0*.raw\0";
    dialog.nFilterIndex = 1;
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrTitle = L"Save Image";
    dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    if (!GetSaveFileNameW(&dialog)) {
        return {};
    }
    const std::string chosen = platform::WideToNarrow(path.data());
    return ImageFileNameProblem(chosen).empty() ? chosen
                                                : chosen + kEndings[dialog.nFilterIndex - 1];
}
