// service_client.cpp - the services of a grabber module, with types of the standard library
#include "apps/common/service_client.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

namespace {

constexpr std::uint32_t kVersionOfSentImages = 2;

std::string TextOf(const char* text) {
    return text ? text : "";
}

/// What a receiver of a service was passed. No exception crosses the module's interface.
template <typename Item>
class Received {
public:
    void* Context() { return this; }
    /// Adds what `make` returns to the items of the object behind `context`.
    template <typename Make>
    static void Add(void* context, Make&& make) {
        auto& self = *static_cast<Received*>(context);
        try {
            self.items.push_back(make());
        } catch (...) {
            self.failure = std::current_exception();
        }
    }
    std::vector<Item>& Items() {
        if (failure) {
            std::rethrow_exception(failure);
        }
        return items;
    }

private:
    std::vector<Item> items;
    std::exception_ptr failure;
};

/// False after a failure that may be passed over; being out of memory may not.
bool HasWorked(MV_SERVICE_RESULT result) {
    if (result == MV_SERVICE_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    return result == MV_SERVICE_OK;
}

FeatureDescription FromRecord(const MV_FEATURE_DESCRIPTION& record) {
    FeatureDescription feature;
    feature.type = static_cast<MV_FEATURE_TYPE>(record.type);
    feature.visibility = static_cast<MV_FEATURE_VISIBILITY>(record.visibility);
    feature.isSelector = record.isSelector != 0;
    feature.isStreamable = record.isStreamable != 0;
    feature.isVolatile = record.isVolatile != 0;
    feature.module = TextOf(record.module);
    feature.name = TextOf(record.name);
    feature.displayName = TextOf(record.displayName);
    feature.category = TextOf(record.category);
    feature.unit = TextOf(record.unit);
    feature.toolTip = TextOf(record.toolTip);
    feature.description = TextOf(record.description);
    feature.nameSpace = TextOf(record.nameSpace);
    feature.representation = TextOf(record.representation);
    feature.isReadable = record.isReadable != 0;
    feature.isWritable = record.isWritable != 0;
    feature.hasLimits = record.hasLimits != 0;
    feature.hasIncrement = record.hasIncrement != 0;
    feature.integerMin = record.integerMin;
    feature.integerMax = record.integerMax;
    feature.increment = record.increment;
    feature.realMin = record.realMin;
    feature.realMax = record.realMax;
    feature.longestText = record.longestText;
    for (std::uint32_t i = 0; record.entries && i < record.entryCount; ++i) {
        feature.entries.push_back(
            {TextOf(record.entries[i]), record.entryAvailable && record.entryAvailable[i] != 0});
    }
    for (std::uint32_t i = 0; record.selected && i < record.selectedCount; ++i) {
        feature.selected.push_back(TextOf(record.selected[i]));
    }
    return feature;
}

void ReceiveName(const char* name, void* context) {
    Received<std::string>::Add(context, [&] { return TextOf(name); });
}

void ReceiveFeature(const MV_FEATURE_DESCRIPTION* feature, void* context) {
    Received<FeatureDescription>::Add(context, [&] { return FromRecord(*feature); });
}

void ReceiveValue(const MV_FEATURE_VALUE* record, void* context) {
    Received<ServiceValue>::Add(context, [&] {
        return ServiceValue{static_cast<MV_FEATURE_TYPE>(record->type), record->integer,
                            record->real,
                            record->text ? std::string(record->text, record->textBytes) : ""};
    });
}

void ReceiveFile(const char* name, const void* data, std::uint64_t bytes, void* context) {
    Received<DescriptionFile>::Add(context, [&] {
        return DescriptionFile{TextOf(name),
                               data ? std::string(static_cast<const char*>(data), bytes) : ""};
    });
}

void ReceiveSentImage(const char* format, const void* data, std::uint64_t bytes, void* context) {
    Received<SentImageBytes>::Add(context, [&] {
        return SentImageBytes{TextOf(format), std::string(static_cast<const char*>(data), bytes)};
    });
}

void ReceiveCamera(const MV_CAMERA_DESCRIPTION* camera, void* context) {
    Received<DescribedCamera>::Add(context, [&] {
        return DescribedCamera{camera->index,
                               TextOf(camera->id),
                               TextOf(camera->extendedId),
                               TextOf(camera->name),
                               TextOf(camera->vendor),
                               TextOf(camera->model),
                               TextOf(camera->serialNumber),
                               TextOf(camera->userName),
                               TextOf(camera->interfaceId),
                               TextOf(camera->interfaceName),
                               TextOf(camera->transportLayer),
                               camera->canOpen != 0,
                               camera->canRead != 0};
    });
}

void ReceiveSetting(const MV_SETTING* setting, void* context) {
    Received<SettingReport>::Add(context, [&] {
        return SettingReport{static_cast<MV_SERVICE_RESULT>(setting->result),
                             TextOf(setting->module),
                             TextOf(setting->feature),
                             TextOf(setting->selector),
                             TextOf(setting->value),
                             TextOf(setting->present),
                             TextOf(setting->reason)};
    });
}

std::string ObjectOf(const std::string& module, const std::string& feature) {
    return module + "/" + feature;
}

} // namespace

std::string FeatureDescription::Path() const {
    return "/" + module + category + (category.ends_with('/') ? "" : "/") + name;
}

const char* ServiceResultText(MV_SERVICE_RESULT result) {
    switch (result) {
    case MV_SERVICE_OK:
        return "done";
    case MV_SERVICE_BAD_ARGUMENT:
        return "an argument has a value that is not allowed";
    case MV_SERVICE_NOT_INITIALISED:
        return "the grabber is not initialised";
    case MV_SERVICE_NO_CAMERA:
        return "no camera is open";
    case MV_SERVICE_BUSY:
        return "the camera is being opened or closed";
    case MV_SERVICE_NOT_FOUND:
        return "there is nothing of this name";
    case MV_SERVICE_WRONG_TYPE:
        return "this does not suit the feature's type";
    case MV_SERVICE_NO_ACCESS:
        return "there is no access at present";
    case MV_SERVICE_OUT_OF_RANGE:
        return "the value is outside the limits";
    case MV_SERVICE_REFUSED:
        return "a feature that depends on this one refuses the value";
    case MV_SERVICE_NOT_SYNCHRONISED:
        return "written, but a feature that depends on it did not follow";
    case MV_SERVICE_SDK_FAILED:
        return "the camera SDK failed";
    case MV_SERVICE_TIMED_OUT:
        return "it did not end in time";
    case MV_SERVICE_GONE:
        return "the camera has the memory again";
    case MV_SERVICE_FILE_FAILED:
        return "the file cannot be used";
    case MV_SERVICE_INCOMPLETE:
        return "done in part";
    case MV_SERVICE_NOT_SUPPORTED:
        return "the camera or its SDK has nothing like that";
    case MV_SERVICE_OUT_OF_MEMORY:
        return "memory ran out";
    }
    return "unknown result";
}

ServiceClient::ServiceClient(IMivoraModuleServices& moduleServices, ReasonSource logReasons)
    : services(moduleServices), reasons(std::move(logReasons)) {}

template <typename Call>
MV_SERVICE_RESULT ServiceClient::Run(const char* service, const std::string& object, Call&& call) {
    if (reasons) {
        reasons(); // of what was before
    }
    MV_SERVICE_REASON reason{};
    reason.size = sizeof reason;
    const MV_SERVICE_RESULT result = call(&reason);
    if (result == MV_SERVICE_OK || result == MV_SERVICE_INCOMPLETE) {
        return result;
    }
    std::vector<std::string> details;
    if (reason.text[0] != '\0') {
        details.emplace_back(reason.text);
    }
    for (const std::string& line : reasons ? reasons() : std::deque<std::string>()) {
        details.push_back(line.substr(std::min(line.find_first_not_of(' '), line.size())));
    }
    throw ServiceFailure(
        result,
        std::string(service) + " failed with " + std::to_string(static_cast<int>(result)) + " (" +
            ServiceResultText(result) + ")" + (object.empty() ? "" : " for " + object),
        details);
}

std::vector<std::string> ServiceClient::ListModules() {
    Received<std::string> received;
    Run("ListModules", "", [&](MV_SERVICE_REASON* reason) {
        return services.ListModules(&ReceiveName, received.Context(), reason);
    });
    return std::move(received.Items());
}

std::vector<FeatureDescription> ServiceClient::ListFeatures(const std::string& module) {
    Received<FeatureDescription> received;
    Run("ListFeatures", module, [&](MV_SERVICE_REASON* reason) {
        return services.ListFeatures(module.c_str(), &ReceiveFeature, received.Context(), reason);
    });
    return std::move(received.Items());
}

FeatureDescription ServiceClient::DescribeFeature(const std::string& module,
                                                  const std::string& feature) {
    Received<FeatureDescription> received;
    Run("DescribeFeature", ObjectOf(module, feature), [&](MV_SERVICE_REASON* reason) {
        return services.DescribeFeature(module.c_str(), feature.c_str(), &ReceiveFeature,
                                        received.Context(), reason);
    });
    return std::move(received.Items().at(0));
}

std::optional<FeatureDescription> ServiceClient::TryDescribeFeature(const std::string& module,
                                                                    const std::string& feature) {
    Received<FeatureDescription> received;
    if (!HasWorked(services.DescribeFeature(module.c_str(), feature.c_str(), &ReceiveFeature,
                                            received.Context(), nullptr))) {
        return std::nullopt;
    }
    return std::move(received.Items().at(0));
}

ServiceValue ServiceClient::ReadFeature(const std::string& module, const std::string& feature) {
    Received<ServiceValue> received;
    Run("ReadFeature", ObjectOf(module, feature), [&](MV_SERVICE_REASON* reason) {
        return services.ReadFeature(module.c_str(), feature.c_str(), &ReceiveValue,
                                    received.Context(), reason);
    });
    return std::move(received.Items().at(0));
}

std::optional<ServiceValue> ServiceClient::TryReadFeature(const std::string& module,
                                                          const std::string& feature) {
    Received<ServiceValue> received;
    if (!HasWorked(services.ReadFeature(module.c_str(), feature.c_str(), &ReceiveValue,
                                        received.Context(), nullptr))) {
        return std::nullopt;
    }
    return std::move(received.Items().at(0));
}

MV_SERVICE_RESULT ServiceClient::ProbeFeature(const std::string& module,
                                              const std::string& feature) {
    Received<ServiceValue> received;
    return services.ReadFeature(module.c_str(), feature.c_str(), &ReceiveValue, received.Context(),
                                nullptr);
}

std::optional<ServiceValue> ServiceClient::WriteFeature(const std::string& module,
                                                        const std::string& feature,
                                                        const ServiceValue& value,
                                                        const std::string& shown) {
    MV_FEATURE_VALUE record{};
    record.size = sizeof record;
    record.type = value.type;
    record.integer = value.integer;
    record.real = value.real;
    record.text = value.text.c_str();
    record.textBytes = static_cast<std::uint32_t>(value.text.size());
    Received<ServiceValue> received;
    Run("WriteFeature", ObjectOf(module, feature) + "=" + shown, [&](MV_SERVICE_REASON* reason) {
        return services.WriteFeature(module.c_str(), feature.c_str(), &record, &ReceiveValue,
                                     received.Context(), reason);
    });
    std::vector<ServiceValue>& values = received.Items();
    return values.empty() ? std::nullopt : std::optional(std::move(values[0]));
}

void ServiceClient::RunCommand(const std::string& module, const std::string& feature,
                               std::uint32_t timeoutMs) {
    Run("RunCommand", ObjectOf(module, feature), [&](MV_SERVICE_REASON* reason) {
        return services.RunCommand(module.c_str(), feature.c_str(), timeoutMs, reason);
    });
}

DescriptionFile ServiceClient::ReadDescriptionFile() {
    Received<DescriptionFile> received;
    Run("ReadDescriptionFile", "", [&](MV_SERVICE_REASON* reason) {
        return services.ReadDescriptionFile(&ReceiveFile, received.Context(), reason);
    });
    return std::move(received.Items().at(0));
}

std::vector<DescribedCamera> ServiceClient::TryListCameras() {
    Received<DescribedCamera> received;
    switch (services.ListCameras(&ReceiveCamera, received.Context(), nullptr)) {
    case MV_SERVICE_OK:
        break;
    case MV_SERVICE_OUT_OF_MEMORY:
        throw std::bad_alloc();
    default:
        return {};
    }
    return std::move(received.Items());
}

template <typename Call>
SettingsOutcome ServiceClient::RunSettings(const char* service, const std::string& path,
                                           Call&& call) {
    Received<SettingReport> received;
    SettingsOutcome outcome;
    const MV_SERVICE_RESULT result = Run(service, path, [&](MV_SERVICE_REASON* reason) {
        const MV_SERVICE_RESULT ended = call(received.Context(), reason);
        outcome.reason = reason->text;
        return ended;
    });
    outcome.isComplete = result == MV_SERVICE_OK;
    outcome.settings = std::move(received.Items());
    return outcome;
}

bool ServiceClient::TryInstallFrameReceiver(MV_FRAME_RECEIVER receiver, void* context) {
    return services.InstallFrameReceiver(receiver, context, nullptr) == MV_SERVICE_OK;
}

bool ServiceClient::OffersSentImages() const {
    return services.GetVersion() >= kVersionOfSentImages;
}

bool ServiceClient::TryReadSentImage(std::uint64_t bufferIndex, SentImageBytes& image,
                                     std::string& reason) {
    Received<SentImageBytes> received;
    MV_SERVICE_REASON why{};
    why.size = sizeof why;
    if (!HasWorked(
            services.ReadSentImage(bufferIndex, &ReceiveSentImage, received.Context(), &why))) {
        reason = why.text;
        return false;
    }
    image = std::move(received.Items().at(0));
    return true;
}

SettingsOutcome ServiceClient::SaveSettings(const std::string& path) {
    return RunSettings("SaveSettings", path, [&](void* context, MV_SERVICE_REASON* reason) {
        return services.SaveSettings(path.c_str(), &ReceiveSetting, context, reason);
    });
}

SettingsOutcome ServiceClient::LoadSettings(const std::string& path, bool isDryRun) {
    const std::uint32_t flags = isDryRun ? kMvSettingsDryRun : 0;
    return RunSettings("LoadSettings", path, [&](void* context, MV_SERVICE_REASON* reason) {
        return services.LoadSettings(path.c_str(), flags, &ReceiveSetting, context, reason);
    });
}
