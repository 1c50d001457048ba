// scripted_dialog.h - the feature control dialog on the scripted SDK
#pragma once

#include "feature_dialog_fixture.h"
#include "tests/scripted_sdk/scripted_sdk.h"

class ScriptedDialog : public FeatureDialogFixture {
protected:
    using Texts = std::vector<std::string>;
    using WideTexts = std::vector<std::wstring>;

    ScriptedDialog() : FeatureDialogFixture(scripted::Home()) { sdk.Reset(); }
    ~ScriptedDialog() override { EndGrabber(); }

    scripted::Camera& Camera() { return sdk.Data().cameras[0]; }
    /// The camera open and the dialog shown; all it did is in the log and the record.
    void Open(const std::string& ini = "") {
        OpenCamera(ini);
        sdk.ClearCalls();
        OpenDialog();
        Pump();
    }
    /// An ini section that has OffsetX follow Width.
    std::string WithRules() {
        directory.Write(
            "rules.json",
            R"({"SyncFeatures":[{"ModuleName":"camera","FeatureName":"Width","Dependencies":[{"ModuleName":"Camera","FeatureName":"OffsetX"}]}]})");
        return "[TLSpecificConfig_0]\nTLType=GEV\nFeatureSyncFile=rules.json\n";
    }
    void Forget() {
        sink.Take();
        sdk.ClearCalls();
    }
    /// What is registered, as "camera0 Width", without the discovery of cameras.
    Texts Registered() {
        Texts texts;
        for (const scripted::Registration& registration : sdk.Registrations()) {
            if (registration.module != "system") {
                texts.push_back(registration.module + " " + registration.feature);
            }
        }
        return texts;
    }

    scripted::Sdk& sdk = scripted::GetSdk();
};
