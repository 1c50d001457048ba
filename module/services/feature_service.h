// feature_service.h - features of the SDK's modules, for hosts
#pragma once

#include "mivora/module_services.h"
#include "services/service_context.h"

#include <cstdint>

namespace pyxen {

class HeldLog;

/// What IMivoraModuleServices offers about features, but for following them. Arguments have been
/// checked for null. Throws std::bad_alloc. Any thread.
class FeatureService {
public:
    explicit FeatureService(ServiceContext& shared) : context(shared) {}

    ServiceOutcome ListModules(MV_TEXT_RECEIVER receiver, void* receiverContext);
    ServiceOutcome List(const char* module, MV_FEATURE_RECEIVER receiver, void* receiverContext);
    ServiceOutcome Describe(const char* module, const char* name, MV_FEATURE_RECEIVER receiver,
                            void* receiverContext);
    ServiceOutcome Read(const char* module, const char* name, MV_VALUE_RECEIVER receiver,
                        void* receiverContext);
    /// `receiver` may be null.
    ServiceOutcome Write(const char* module, const char* name, const MV_FEATURE_VALUE& given,
                         MV_VALUE_RECEIVER receiver, void* receiverContext);
    ServiceOutcome Run(const char* module, const char* name, std::uint32_t timeoutMs);

    // ---- with the lock, for other services ----

    /// Reads a value, and the number of an entry.
    static ServiceOutcome ReadValue(const ServiceFeature& feature, FeatureValue& value,
                                    std::int64_t& entryNumber);
    /// Checks, writes, reads back and synchronises. `value` becomes what the feature holds;
    /// `isKnown` says whether it could be read. The lines go to `log`.
    ServiceOutcome WriteValue(const ServiceFeature& feature, FeatureValue& value, bool& isKnown,
                              Logger log);

    /// Whether WriteValue would write, at present.
    ServiceOutcome CheckValue(const ServiceFeature& feature, const FeatureValue& value, Logger log);

private:
    ServiceOutcome StartCommand(const char* module, const char* name);
    ServiceOutcome AskCommand(const char* module, const char* name, std::uint64_t camera,
                              bool& isDone);
    ServiceOutcome Synchronise(const ServiceFeature& feature, const FeatureValue& value,
                               Logger log);

    ServiceContext& context;
};

} // namespace pyxen
