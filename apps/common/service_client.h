// service_client.h - the services of a grabber module, with types of the standard library
#pragma once

#include "apps/common/command_failure.h"
#include "mivora/module_services.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Value of a feature; only the member of the type counts, see MV_FEATURE_VALUE.
struct ServiceValue {
    MV_FEATURE_TYPE type = MV_FEATURE_UNKNOWN;
    std::int64_t integer = 0;
    double real = 0;
    std::string text; ///< entries by name, strings, the bytes of a register
};

/// An entry of an enumeration.
struct DescribedEntry {
    std::string name;
    bool isAvailable = false;
};

/// A feature as MV_FEATURE_DESCRIPTION has it; what is so at present is empty in lists.
struct FeatureDescription {
    MV_FEATURE_TYPE type = MV_FEATURE_UNKNOWN;
    MV_FEATURE_VISIBILITY visibility = MV_VISIBILITY_UNKNOWN;
    bool isSelector = false;
    bool isStreamable = false;
    bool isVolatile = false;
    std::string module;
    std::string name;
    std::string displayName;
    std::string category;
    std::string unit;
    std::string toolTip;
    std::string description;
    std::string nameSpace;
    std::string representation;

    bool isReadable = false;
    bool isWritable = false;
    bool hasLimits = false;
    bool hasIncrement = false;
    std::int64_t integerMin = 0;
    std::int64_t integerMax = 0;
    std::int64_t increment = 0;
    double realMin = 0;
    double realMax = 0;
    std::uint32_t longestText = 0;
    std::vector<DescribedEntry> entries;
    std::vector<std::string> selected;

    /// "/Camera/ImageFormatControl/Width".
    std::string Path() const;
};

struct DescriptionFile {
    std::string name; ///< as the camera names it
    std::string content;
};

/// An image as the camera has sent it.
struct SentImageBytes {
    std::string format; ///< as "PixelFormat" names it
    std::string bytes;
};

/// A camera of the grabber's list, see MV_CAMERA_DESCRIPTION.
struct DescribedCamera {
    std::uint32_t index = 0;
    std::string id;
    std::string extendedId;
    std::string name;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string userName;
    std::string interfaceId;
    std::string interfaceName;
    std::string transportLayer;
    bool canOpen = false;
    bool canRead = false;
};

/// What became of one feature of a settings file, see MV_SETTING.
struct SettingReport {
    MV_SERVICE_RESULT result = MV_SERVICE_OK;
    std::string module;
    std::string feature;
    std::string selector;
    std::string value;
    std::string present;
    std::string reason;
};

struct SettingsOutcome {
    bool isComplete = false; ///< every setting was saved or taken
    std::string reason;      ///< why not
    std::vector<SettingReport> settings;
};

/// A service that has failed.
class ServiceFailure : public CommandFailure {
public:
    ServiceFailure(MV_SERVICE_RESULT serviceResult, const std::string& text,
                   const std::vector<std::string>& reasons)
        : CommandFailure(text, reasons), result(serviceResult) {}

    MV_SERVICE_RESULT Result() const { return result; }

private:
    MV_SERVICE_RESULT result;
};

/// The meaning of a result, for people.
const char* ServiceResultText(MV_SERVICE_RESULT result);

/// Calls services. Every failure throws ServiceFailure, which names the service, the result and its
/// meaning, the object, and the reasons of the service and of the log. One thread.
class ServiceClient {
public:
    /// Returns the errors logged since its last call.
    using ReasonSource = std::function<std::deque<std::string>()>;

    /// The services must outlive the client.
    explicit ServiceClient(IMivoraModuleServices& moduleServices, ReasonSource logReasons = {});

    std::vector<std::string> ListModules();
    std::vector<FeatureDescription> ListFeatures(const std::string& module);
    FeatureDescription DescribeFeature(const std::string& module, const std::string& feature);
    /// nullopt instead of a failure; std::bad_alloc without memory.
    std::optional<FeatureDescription> TryDescribeFeature(const std::string& module,
                                                         const std::string& feature);
    ServiceValue ReadFeature(const std::string& module, const std::string& feature);
    /// nullopt instead of a failure; std::bad_alloc without memory.
    std::optional<ServiceValue> TryReadFeature(const std::string& module,
                                               const std::string& feature);
    /// How reading it ends; the value and the reason are not kept.
    MV_SERVICE_RESULT ProbeFeature(const std::string& module, const std::string& feature);
    /// Returns the value that the feature has afterwards; nullopt if it cannot be read. `shown` is
    /// the value in messages.
    std::optional<ServiceValue> WriteFeature(const std::string& module, const std::string& feature,
                                             const ServiceValue& value, const std::string& shown);
    void RunCommand(const std::string& module, const std::string& feature, std::uint32_t timeoutMs);
    DescriptionFile ReadDescriptionFile();
    /// Empty instead of a failure.
    std::vector<DescribedCamera> TryListCameras();
    /// Names who is called for each frame, see IMivoraModuleServices; null for nobody. False if the
    /// module does not report frames.
    bool TryInstallFrameReceiver(MV_FRAME_RECEIVER receiver, void* context);
    /// Whether the module has ReadSentImage.
    bool OffersSentImages() const;
    /// False with the reason if it fails; std::bad_alloc without memory. Any thread.
    bool TryReadSentImage(std::uint64_t bufferIndex, SentImageBytes& image, std::string& reason);
    SettingsOutcome SaveSettings(const std::string& path);
    SettingsOutcome LoadSettings(const std::string& path, bool isDryRun);

private:
    template <typename Call>
    MV_SERVICE_RESULT Run(const char* service, const std::string& object, Call&& call);
    template <typename Call>
    SettingsOutcome RunSettings(const char* service, const std::string& path, Call&& call);

    IMivoraModuleServices& services;
    const ReasonSource reasons;
};
