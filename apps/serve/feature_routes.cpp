// feature_routes.cpp - reading and writing features, and what follows them
#include "apps/common/feature_text.h"
#include "apps/common/json_text.h"
#include "apps/common/whole_file.h"
#include "apps/serve/feature_json.h"
#include "apps/serve/json_body.h"
#include "apps/serve/request_failure.h"
#include "apps/serve/route_table.h"
#include "apps/serve/serve_parts.h"
#include "apps/serve/temporary_file.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr std::uint32_t kCommandTimeoutMs = 5000;

int StatusOf(MV_SERVICE_RESULT result) {
    switch (result) {
    case MV_SERVICE_NOT_FOUND:
        return kNotFound;
    case MV_SERVICE_BAD_ARGUMENT:
    case MV_SERVICE_WRONG_TYPE:
    case MV_SERVICE_OUT_OF_RANGE:
        return kRefusedValue;
    case MV_SERVICE_SDK_FAILED:
    case MV_SERVICE_TIMED_OUT:
    case MV_SERVICE_OUT_OF_MEMORY:
        return kUnavailable;
    default:
        return kConflict;
    }
}

/// The reason that the module gives says more than the name of the service.
RequestFailure FailureOf(const ServiceFailure& failure) {
    return {StatusOf(failure.Result()),
            failure.Details().empty() ? failure.Message() : failure.Details().front()};
}

template <typename Call>
auto WithServices(ServeParts& parts, Call call) {
    return parts.owner.Do([&](CameraSession& session) {
        try {
            return call(session, session.Base().Services());
        } catch (const ServiceFailure& failure) {
            throw FailureOf(failure);
        }
    });
}

/// The feature as it is now. What cannot be read has no value.
std::string PresentFeature(ServiceClient& services, const std::string& module,
                           const std::string& name) {
    const FeatureDescription feature = services.DescribeFeature(module, name);
    return FeatureJson(feature,
                       feature.isReadable ? services.TryReadFeature(module, name) : std::nullopt);
}

HttpAnswer FeatureAnswer(const std::string& feature) {
    // The first member says which version of the interface it is.
    return JsonAnswer("{\"schema\":1," + feature.substr(1));
}

HttpAnswer ListAnswer(ServeParts& parts) {
    return WithServices(parts, [](CameraSession&, ServiceClient& services) {
        std::vector<JsonValue> list;
        for (const std::string& module : services.ListModules()) {
            for (const FeatureDescription& listed : services.ListFeatures(module)) {
                if (listed.type == MV_FEATURE_CATEGORY) {
                    continue;
                }
                const FeatureDescription feature =
                    services.TryDescribeFeature(module, listed.name).value_or(listed);
                list.push_back(JsonValue::FromText(FeatureJson(
                    feature, feature.isReadable ? services.TryReadFeature(module, listed.name)
                                                : std::nullopt)));
            }
        }
        return JsonAnswer(JsonReport({{"features", JsonArray(list)}}).Text());
    });
}

/// As it would be typed: numbers with all their digits.
std::string TypedText(const nlohmann::json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    if (value.is_number() || value.is_boolean()) {
        return value.dump();
    }
    throw RequestFailure(kBadRequest, "value is a text, a number, true or false");
}

ServiceValue ValueFor(const FeatureDescription& feature, const std::string& text) {
    try {
        return ParseServiceValue(feature, text);
    } catch (const CommandFailure& failure) {
        throw RequestFailure(kRefusedValue, failure.Message());
    }
}

void Write(CameraSession& session, ServiceClient& services, const FeatureDescription& feature,
           const std::string& text, bool mayRestart) {
    const ServiceValue value = ValueFor(feature, text);
    const auto write = [&] {
        services.WriteFeature(feature.module, feature.name, value, text);
    };
    try {
        write();
    } catch (const ServiceFailure& failure) {
        if (failure.Result() != MV_SERVICE_NO_ACCESS || !mayRestart || !session.IsGrabbing()) {
            throw;
        }
        session.ChangeStopped(write);
    }
    if (session.IsOpen()) {
        session.NoteWritten(feature.module, feature.name, text);
    }
    if (!session.IsGrabbing()) {
        session.ReadImage();
    }
}

HttpAnswer WriteAnswer(ServeParts& parts, const RouteCall& call) {
    const nlohmann::json body = ParseJsonBody(call.request.body, {"value", "restart"});
    if (!body.contains("value")) {
        throw RequestFailure(kBadRequest, "the body lacks \"value\"");
    }
    const std::string text = TypedText(body["value"]);
    const bool mayRestart = body.value("restart", nlohmann::json(false)) == true;
    const std::string& module = call.path.at("module");
    const std::string& name = call.path.at("name");
    return WithServices(parts, [&](CameraSession& session, ServiceClient& services) {
        Write(session, services, services.DescribeFeature(module, name), text, mayRestart);
        return FeatureAnswer(PresentFeature(services, module, name));
    });
}

// ---- what follows ----

JsonValue NameJson(const FeatureChanges::Name& name) {
    return JsonObject({{"module", name.first}, {"name", name.second}});
}

/// Why the module would not write the value; empty if it would. Asks it by a settings file of one
/// setting that is loaded without writing.
std::string DryRunProblem(ServiceClient& services, const FeatureDescription& feature,
                          const ServiceValue& value) {
    const JsonValue setting = JsonObject({{"module", feature.module},
                                          {"feature", feature.name},
                                          {"type", FeatureTypeText(feature.type)},
                                          {"value", ServiceValueJson(value)}});
    const TemporaryFile file("settings.json");
    WriteWholeFile(
        file.Path(),
        JsonObject(
            {{"format", "Mivora settings"},
             {"version", 1},
             {"camera", JsonObject({{"vendor", ""}, {"model", ""}, {"serial", ""}, {"id", ""}})},
             {"settings", JsonArray({setting})}})
            .Text());
    const SettingsOutcome outcome = services.LoadSettings(file.Path(), true);
    return outcome.settings.empty() ? outcome.reason : outcome.settings.front().reason;
}

/// The features whose value would be another one.
std::vector<JsonValue> ChangesOf(ServiceClient& services,
                                 const std::vector<FeatureChanges::Name>& names,
                                 const ServiceValue& value) {
    std::vector<JsonValue> changes;
    const std::string to = ServiceValueText(value);
    for (const FeatureChanges::Name& name : names) {
        const auto present = services.TryReadFeature(name.first, name.second);
        const bool isOfType = present && present->type == value.type;
        if (isOfType && ServiceValueText(*present) != to) {
            changes.push_back(JsonObject({{"feature", NameJson(name)},
                                          {"from", ServiceValueJson(*present)},
                                          {"to", ServiceValueJson(value)}}));
        }
    }
    return changes;
}

/// "640" and "\"Mono8\"" as JSON; whatever is none counts as text.
std::string QueriedValue(const std::string& text) {
    const bool isQuoted = text.starts_with('"');
    const nlohmann::json value = nlohmann::json::parse(isQuoted ? text : "0", nullptr, false);
    return value.is_string() ? value.get<std::string>() : text;
}

HttpAnswer SynchronisationAnswer(ServeParts& parts, const RouteCall& call) {
    const std::string& whole = call.query.Text("feature");
    const std::size_t slash = whole.find('/');
    if (slash == std::string::npos) {
        throw RequestFailure(kBadRequest, "feature takes MODULE/NAME, not " + whole);
    }
    const std::string module = whole.substr(0, slash);
    const std::string name = whole.substr(slash + 1);
    return WithServices(parts, [&](CameraSession& session, ServiceClient& services) {
        const FeatureDescription feature = services.DescribeFeature(module, name);
        std::vector<FeatureChanges::Name> names = session.FollowersOf(module, name);
        std::vector<JsonValue> followers;
        for (const FeatureChanges::Name& follower : names) {
            followers.push_back(NameJson(follower));
        }
        std::vector<JsonValue> changes;
        JsonValue reason = nullptr;
        if (call.query.Has("value")) {
            const ServiceValue value = ValueFor(feature, QueriedValue(call.query.Text("value")));
            const std::string problem = DryRunProblem(services, feature, value);
            if (problem.empty()) {
                names.insert(names.begin(), {module, name});
                changes = ChangesOf(services, names, value);
            } else {
                reason = problem;
            }
        }
        return JsonAnswer(JsonReport({{"feature", NameJson({module, name})},
                                      {"followers", JsonArray(followers)},
                                      {"changes", JsonArray(changes)},
                                      {"reason", reason}})
                              .Text());
    });
}

} // namespace

void AddFeatureRoutes(RouteTable& table, ServeParts& parts) {
    table.Add({.path = "/api/features", .run = [&parts](const RouteCall&) {
                   return ListAnswer(parts);
               }});
    table.Add({.path = "/api/features/{module}/{name}", .run = [&parts](const RouteCall& call) {
                   return WithServices(parts, [&](CameraSession&, ServiceClient& services) {
                       return FeatureAnswer(
                           PresentFeature(services, call.path.at("module"), call.path.at("name")));
                   });
               }});
    table.Add({.method = "PUT",
               .path = "/api/features/{module}/{name}",
               .body = RouteBody::kJson,
               .run = [&parts](const RouteCall& call) {
                   return WriteAnswer(parts, call);
               }});
    table.Add({.method = "POST",
               .path = "/api/features/{module}/{name}/execute",
               .body = RouteBody::kJson,
               .run = [&parts](const RouteCall& call) {
                   ParseJsonBody(call.request.body, {});
                   return WithServices(parts, [&](CameraSession&, ServiceClient& services) {
                       services.RunCommand(call.path.at("module"), call.path.at("name"),
                                           kCommandTimeoutMs);
                       return FeatureAnswer(
                           PresentFeature(services, call.path.at("module"), call.path.at("name")));
                   });
               }});
    table.Add({.path = "/api/synchronisation",
               .query = {"feature", "value"},
               .run = [&parts](const RouteCall& call) {
                   return SynchronisationAnswer(parts, call);
               }});
}
