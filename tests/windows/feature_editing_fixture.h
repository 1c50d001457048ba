// feature_editing_fixture.h - the feature control dialog with a feature of each kind to edit
#pragma once

#include "scripted_dialog.h"

#include <algorithm>
#include <string>

class FeatureEditing : public ScriptedDialog {
protected:
    void SetUp() override {
        auto& feature = Camera().Put(scripted::FloatFeature("Gain", 1.5, 0.0, 24.0));
        feature.category = "/AnalogControl";
        feature.unit = "dB";
        feature.description = "Gain of the sensor.";
        Camera().Find("Width")->description = "Width of the image.";
        Camera().Find("Width")->unit = "px";
        Camera().Find("PixelFormat")->entries[1].available = false;
        Camera().Put(scripted::RawFeature("Blob", {'x'}));
        Open();
        Forget();
    }

    void SelectFeature(const std::wstring& path) {
        Select(path);
        ASSERT_NE(Editor(), nullptr);
    }
    void Retype(int id, const std::wstring& text) {
        ::SetFocus(EditorControl(id));
        ::SendMessage(EditorControl(id), EM_SETSEL, 0, -1);
        Type(text);
    }
    std::wstring Selected() {
        const HWND list = EditorControl(7007);
        wchar_t text[64]{};
        ::SendMessage(list, CB_GETLBTEXT,
                      static_cast<WPARAM>(::SendMessage(list, CB_GETCURSEL, 0, 0)),
                      reinterpret_cast<LPARAM>(text));
        return text;
    }
    void Choose(const wchar_t* text) {
        ASSERT_GE(::SendMessage(EditorControl(7007), CB_SELECTSTRING, static_cast<WPARAM>(-1),
                                reinterpret_cast<LPARAM>(text)),
                  0);
    }
    /// The camera is opened anew, and its features are listed as they are now.
    void Reopen() {
        ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
        ASSERT_EQ(Grabber().OpenActCamera(), MV_OK);
        Pump();
        Forget();
    }
    static bool Has(const Texts& lines, const std::string& line) {
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    Texts Writes() {
        return sdk.TakeCalls({"PxnFeatureIntSet", "PxnFeatureFloatSet", "PxnFeatureEnumSet",
                              "PxnFeatureStringSet", "PxnFeatureBoolSet", "PxnFeatureCommandRun"});
    }

    const std::string noEditor = "0 AttrSelected: Failed to create attribute edit field";
    const std::wstring width = L"Camera/ImageFormatControl/Width";
    const std::wstring gain = L"Camera/AnalogControl/Gain";
    const std::wstring pixelFormat = L"Camera/ImageFormatControl/PixelFormat";
    const std::wstring reverseX = L"Camera/ImageFormatControl/ReverseX";
    const std::wstring userId = L"Camera/DeviceControl/DeviceUserID";
};
