// fake_services.h - services without a module, which a test fills
#pragma once

#include "tests/support/test_services.h"

#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Serves what the test has put into its members and keeps what it is asked to do.
class FakeServices final : public TestServices {
public:
    struct Feature {
        MV_FEATURE_DESCRIPTION description{};
        MV_FEATURE_VALUE value{};
        std::string text; ///< of the value
        MV_SERVICE_RESULT writing = MV_SERVICE_OK;
    };

    /// Adds a feature that can be read and written.
    Feature& Add(const char* module, const char* name, MV_FEATURE_TYPE type) {
        order.emplace_back(module, name);
        Feature& feature = features[{module, name}];
        MV_FEATURE_DESCRIPTION& record = feature.description;
        record.size = sizeof record;
        record.type = type;
        record.module = module;
        record.name = name;
        for (const char** text :
             {&record.displayName, &record.category, &record.unit, &record.toolTip,
              &record.description, &record.nameSpace, &record.representation}) {
            *text = "";
        }
        record.isReadable = 1;
        record.isWritable = 1;
        feature.value.size = sizeof feature.value;
        feature.value.type = type;
        return feature;
    }

    MV_SERVICE_RESULT ListModules(MV_TEXT_RECEIVER receiver, void* context,
                                  MV_SERVICE_REASON*) override {
        receiver("System", context);
        receiver("Camera", context);
        return MV_SERVICE_OK;
    }
    MV_SERVICE_RESULT ListFeatures(const char* module, MV_FEATURE_RECEIVER receiver, void* context,
                                   MV_SERVICE_REASON*) override {
        for (const auto& name : order) {
            if (name.first == module) {
                receiver(&features[name].description, context);
            }
        }
        return MV_SERVICE_OK;
    }
    MV_SERVICE_RESULT DescribeFeature(const char* module, const char* name,
                                      MV_FEATURE_RECEIVER receiver, void* context,
                                      MV_SERVICE_REASON* reason) override {
        Feature* const feature = Find(module, name, reason);
        if (!feature) {
            return MV_SERVICE_NOT_FOUND;
        }
        receiver(&feature->description, context);
        return MV_SERVICE_OK;
    }
    MV_SERVICE_RESULT ReadFeature(const char* module, const char* name, MV_VALUE_RECEIVER receiver,
                                  void* context, MV_SERVICE_REASON* reason) override {
        if (reading != MV_SERVICE_OK) {
            return reading;
        }
        Feature* const feature = Find(module, name, reason);
        if (!feature) {
            return MV_SERVICE_NOT_FOUND;
        }
        Pass(*feature, receiver, context);
        return MV_SERVICE_OK;
    }
    MV_SERVICE_RESULT WriteFeature(const char* module, const char* name,
                                   const MV_FEATURE_VALUE* value, MV_VALUE_RECEIVER receiver,
                                   void* context, MV_SERVICE_REASON* reason) override {
        Feature* const feature = Find(module, name, reason);
        if (!feature) {
            return MV_SERVICE_NOT_FOUND;
        }
        calls.push_back(std::string("write ") + module + "/" + name);
        if (feature->writing != MV_SERVICE_OK) {
            SetReason(reason, "it does not want to");
            return feature->writing;
        }
        feature->value = *value;
        feature->text.assign(value->text ? value->text : "", value->textBytes);
        if (onWrite) {
            onWrite(name);
        }
        if (isReadBack) {
            Pass(*feature, receiver, context);
        }
        return MV_SERVICE_OK;
    }
    MV_SERVICE_RESULT RunCommand(const char* module, const char* name, uint32_t timeoutMs,
                                 MV_SERVICE_REASON*) override {
        calls.push_back(std::string("run ") + module + "/" + name + " " +
                        std::to_string(timeoutMs));
        return running;
    }
    MV_SERVICE_RESULT ReadDescriptionFile(MV_DATA_RECEIVER receiver, void* context,
                                          MV_SERVICE_REASON*) override {
        receiver("camera.xml", descriptionFile.data(), descriptionFile.size(), context);
        return MV_SERVICE_OK;
    }
    MV_SERVICE_RESULT SaveSettings(const char* path, MV_SETTING_RECEIVER receiver, void* context,
                                   MV_SERVICE_REASON* reason) override {
        calls.push_back(std::string("save ") + path);
        return PassSettings(receiver, context, reason);
    }
    MV_SERVICE_RESULT LoadSettings(const char* path, uint32_t flags, MV_SETTING_RECEIVER receiver,
                                   void* context, MV_SERVICE_REASON* reason) override {
        calls.push_back(std::string("load ") + path + " " + std::to_string(flags));
        return PassSettings(receiver, context, reason);
    }

    static void SetReason(MV_SERVICE_REASON* reason, const char* text) {
        if (reason) {
            std::strncpy(reason->text, text, sizeof reason->text - 1);
        }
    }

    std::map<std::pair<std::string, std::string>, Feature> features;
    std::vector<std::string> calls;
    std::vector<MV_SETTING> settings;
    MV_SERVICE_RESULT settingsResult = MV_SERVICE_OK;
    const char* settingsReason = "";
    MV_SERVICE_RESULT running = MV_SERVICE_OK;
    MV_SERVICE_RESULT reading = MV_SERVICE_OK;
    std::function<void(const std::string& feature)> onWrite; ///< what else a write changes
    std::string descriptionFile;
    bool isReadBack = true;

private:
    Feature* Find(const char* module, const char* name, MV_SERVICE_REASON* reason) {
        const auto found = features.find({module, name});
        if (found == features.end()) {
            SetReason(reason, "no such feature");
            return nullptr;
        }
        return &found->second;
    }
    static void Pass(Feature& feature, MV_VALUE_RECEIVER receiver, void* context) {
        feature.value.text = feature.text.data();
        feature.value.textBytes = static_cast<uint32_t>(feature.text.size());
        receiver(&feature.value, context);
    }
    MV_SERVICE_RESULT PassSettings(MV_SETTING_RECEIVER receiver, void* context,
                                   MV_SERVICE_REASON* reason) const {
        SetReason(reason, settingsReason);
        for (const MV_SETTING& setting : settings) {
            receiver(&setting, context);
        }
        return settingsResult;
    }

    std::vector<std::pair<std::string, std::string>> order;
};
