// entries_settings.cpp - settings files
#include "platform/text.h"
#include "pxnc/skeleton/entry.h"
#include "pxnc/skeleton/settings_file.h"

using namespace skeleton;

namespace {

/// `settings` is reserved: no version of the record exists yet.
template <typename Body>
PxnError EnterSettings(const EntryCall& call, PxnHandle handle, const wchar_t* path,
                       const void* settings, std::uint32_t size, Body body) noexcept {
    return EnterModule(call, handle, path && (settings || size == 0),
                       [&](Backend&, const Target& target) -> PxnError {
                           return settings ? PxnError{PxnErrStructSize}
                                           : body(target, platform::WideToNarrow(path));
                       });
}

} // namespace

PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return EnterSettings({__func__, {Argument::Handle(handle), Argument::Path(path)}}, handle, path,
                         settings, size, [](const Target& target, const std::string& file) {
                             return SaveSettings(*target.module, file);
                         });
}

PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return EnterSettings({__func__, {Argument::Handle(handle), Argument::Path(path)}}, handle, path,
                         settings, size,
                         [](const Target& target, const std::string& file) -> PxnError {
                             return target.isWritable ? LoadSettings(*target.module, file)
                                                      : PxnError{PxnErrInvalidAccess};
                         });
}
