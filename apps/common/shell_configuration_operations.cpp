// shell_configuration_operations.cpp - operations on ini files, bits and features of the host
#include "apps/common/shell_context.h"
#include "apps/common/shell_operation.h"
#include "mivora/grabber.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>

namespace {

using TextReader = std::function<std::uint32_t(char* buffer, std::uint32_t capacity)>;

/// Reads a text of any length; the result is the length that the grabber returns.
ShellAnswer ReadText(const TextReader& read) {
    char none = '\0';
    const std::uint32_t length = read(&none, 0);
    std::string text(length + 1, '\0');
    const std::uint32_t result = read(text.data(), length + 1);
    text.resize(std::min(result, length));
    return ShellAnswer::Number(result).WithText("text", text);
}

CMivoraCamera* FindCamera(CMivoraGrabber& grabber, std::int32_t index) {
    CMivoraCamera* const camera = grabber.GetCamera(index);
    if (!camera) {
        throw ShellRefusal("there is no camera " + std::to_string(index));
    }
    return camera;
}

void AddFiles(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("SetGrabberIni", "FILE SECTION",
                   [&](const std::string& path, std::int32_t section) {
                       return ShellAnswer::Code(grabber.SetGrabberIni(path.c_str(), section));
                   });
    operations.Add("SetCameraIni", "FILE", [&](const std::string& path) {
        return ShellAnswer::Code(grabber.SetCameraIni(path.c_str()));
    });
    operations.Add("LoadGrabberConfig", "",
                   [&] { return ShellAnswer::Code(grabber.LoadGrabberConfig()); });
    operations.Add("SaveGrabberConfig", "",
                   [&] { return ShellAnswer::Code(grabber.SaveGrabberConfig()); });
    operations.Add("SaveCameraModeConfig", "",
                   [&] { return ShellAnswer::Code(grabber.SaveCameraModeConfig()); });
}

void AddGrabberKeys(ShellOperations& operations, CMivoraGrabber& grabber) {
    using TextArgument = const std::string&;
    operations.Add("GetGrabberInt32", "KEY DEFAULT", [&](TextArgument key, std::int32_t otherwise) {
        return ShellAnswer::Number(grabber.GetGrabberInt32(key.c_str(), otherwise));
    });
    operations.Add(
        "GetGrabberString", "KEY DEFAULT", [&](TextArgument key, TextArgument otherwise) {
            return ReadText([&](char* buffer, std::uint32_t capacity) {
                return grabber.GetGrabberString(key.c_str(), otherwise.c_str(), buffer, capacity);
            });
        });
    operations.Add("SaveGrabberInt32", "KEY VALUE", [&](TextArgument key, std::int32_t value) {
        return ShellAnswer::Code(grabber.SaveGrabberInt32(key.c_str(), value));
    });
    operations.Add("SaveGrabberHex32", "KEY VALUE", [&](TextArgument key, std::uint32_t value) {
        return ShellAnswer::Code(grabber.SaveGrabberHex32(key.c_str(), value));
    });
    operations.Add("SaveGrabberString", "KEY TEXT", [&](TextArgument key, TextArgument value) {
        return ShellAnswer::Code(grabber.SaveGrabberString(key.c_str(), value.c_str()));
    });
    operations.Add("GetBiggestSectionNum", "PREFIX", [&](TextArgument prefix) {
        return ShellAnswer::Number(grabber.GetBiggestSectionNum(prefix.c_str()));
    });
}

void AddCameraKeys(ShellOperations& operations, CMivoraGrabber& grabber) {
    using TextArgument = const std::string&;
    operations.Add("GetCamSpecInt32", "CAMERA KEY DEFAULT",
                   [&](std::int32_t camera, TextArgument key, std::int32_t otherwise) {
                       return ShellAnswer::Number(grabber.GetCamSpecInt32(
                           FindCamera(grabber, camera), key.c_str(), otherwise));
                   });
    operations.Add("GetCamSpecString", "CAMERA KEY DEFAULT",
                   [&](std::int32_t index, TextArgument key, TextArgument otherwise) {
                       CMivoraCamera* const camera = FindCamera(grabber, index);
                       return ReadText([&](char* buffer, std::uint32_t capacity) {
                           return grabber.GetCamSpecString(camera, key.c_str(), otherwise.c_str(),
                                                           buffer, capacity);
                       });
                   });
    operations.Add(
        "GetModeSpecInt32", "CAMERA MODE KEY DEFAULT",
        [&](std::int32_t camera, std::uint32_t mode, TextArgument key, std::int32_t otherwise) {
            return ShellAnswer::Number(grabber.GetModeSpecInt32(FindCamera(grabber, camera), mode,
                                                                key.c_str(), otherwise));
        });
    operations.Add(
        "GetActCamSpecInt32", "KEY DEFAULT", [&](TextArgument key, std::int32_t otherwise) {
            return ShellAnswer::Number(grabber.GetActCamSpecInt32(key.c_str(), otherwise));
        });
    operations.Add("GetActCamSpecString", "KEY DEFAULT",
                   [&](TextArgument key, TextArgument otherwise) {
                       return ReadText([&](char* buffer, std::uint32_t capacity) {
                           return grabber.GetActCamSpecString(key.c_str(), otherwise.c_str(),
                                                              buffer, capacity);
                       });
                   });
    operations.Add(
        "GetActModeSpecInt32", "KEY DEFAULT", [&](TextArgument key, std::int32_t otherwise) {
            return ShellAnswer::Number(grabber.GetActModeSpecInt32(key.c_str(), otherwise));
        });
    operations.Add("GetActModeSpecString", "KEY DEFAULT",
                   [&](TextArgument key, TextArgument otherwise) {
                       return ReadText([&](char* buffer, std::uint32_t capacity) {
                           return grabber.GetActModeSpecString(key.c_str(), otherwise.c_str(),
                                                               buffer, capacity);
                       });
                   });
}

void AddBitsAndFeatures(ShellOperations& operations, CMivoraGrabber& grabber) {
    operations.Add("SetGrabberBit", "BIT VALUE", [&](std::uint32_t bit, std::uint32_t value) {
        return ShellAnswer::Code(grabber.SetGrabberBit(bit, value));
    });
    operations.Add("GetGrabberBit", "BIT", [&](std::uint32_t bit) {
        std::uint32_t value = 0;
        const MV_ERRCODE code = grabber.GetGrabberBit(bit, &value);
        return ShellAnswer::Code(code).With("value", value);
    });
    operations.Add("GetFeatureStatus", "ID", [&](std::uint32_t id) {
        return ShellAnswer::Number(grabber.GetFeatureStatus(static_cast<EMV_FEATURE_ID>(id)));
    });
    operations.Add("GetFeatureMask", "",
                   [&] { return ShellAnswer::Number(grabber.GetFeatureMask()); });
    operations.Add("SetFeature", "ID 0|1", [&](std::uint32_t id, bool on) {
        return ShellAnswer::Code(grabber.SetFeature(static_cast<EMV_FEATURE_ID>(id), on ? 1 : 0));
    });
    operations.Add("GetFeature", "ID", [&](std::uint32_t id) {
        std::uint32_t on = 0;
        const MV_ERRCODE code = grabber.GetFeature(static_cast<EMV_FEATURE_ID>(id), &on);
        return ShellAnswer::Code(code).With("on", on);
    });
}

} // namespace

void AddConfigurationOperations(ShellOperations& operations, const ShellContext& context) {
    AddFiles(operations, context.grabber);
    AddGrabberKeys(operations, context.grabber);
    AddCameraKeys(operations, context.grabber);
    AddBitsAndFeatures(operations, context.grabber);
}
