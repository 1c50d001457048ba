// The feature control dialog: selecting a feature and editing it.
#include "feature_editing_fixture.h"

namespace {

// ---- selecting ----

TEST_F(FeatureEditing, DescribesAnInteger) {
    SelectFeature(width);
    EXPECT_EQ(TextOf(EditorControl(7024)), L"Width");
    EXPECT_EQ(TextOf(EditorControl(7022)), L"640");
    EXPECT_EQ(TextOf(EditorControl(7031)), L"px");
    EXPECT_EQ(Description(), L"Width of the image.\nMin: 16px, Max: 2048px");
}

TEST_F(FeatureEditing, DescribesAFloat) {
    SelectFeature(gain);
    EXPECT_EQ(TextOf(EditorControl(7010)), L"1.500000");
    EXPECT_EQ(TextOf(EditorControl(7031)), L"dB");
    EXPECT_EQ(Description(), L"Gain of the sensor.\nMin: 0.000000dB, Max: 24.000000dB");
}

TEST_F(FeatureEditing, OffersOnlyTheAvailableEntries) {
    SelectFeature(pixelFormat);
    EXPECT_EQ(Selected(), L"Mono8");
    EXPECT_EQ(::SendMessage(EditorControl(7007), CB_GETCOUNT, 0, 0), 8);
    EXPECT_EQ(Description(), L"Possible options: Mono8, Mono10p, Mono12, Mono12p, Mono12Packed, "
                             L"BayerRG8, RGB8, YUV422_8");
}

TEST_F(FeatureEditing, EditsABooleanAsTwoEntries) {
    SelectFeature(reverseX);
    EXPECT_EQ(Selected(), L"False");
    EXPECT_EQ(::SendMessage(EditorControl(7007), CB_GETCOUNT, 0, 0), 2);
    EXPECT_EQ(Description(), L"");
}

TEST_F(FeatureEditing, EditsAString) {
    SelectFeature(userId);
    EXPECT_EQ(TextOf(EditorControl(7018)), L"left");
}

TEST_F(FeatureEditing, ShowsACommandAsAButton) {
    SelectFeature(L"Camera/AcquisitionControl/AcquisitionStart");
    EXPECT_EQ(TextOf(EditorControl(7005)), L"AcquisitionStart");
}

TEST_F(FeatureEditing, DescribesWhatCannotBeWrittenWithoutAnEditor) {
    Select(L"Camera/TransportLayerControl/PayloadSize");
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Description(), L"Min: 0, Max: 4294967295");
    Select(L"Transportlayer/Scripted/TLType");
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Description(), L"Possible options: GEV, U3V");
}

TEST_F(FeatureEditing, KeepsEditorAndDescriptionOverACategory) {
    SelectFeature(width);
    const std::wstring before = Description();
    Select(L"Camera/DeviceControl");
    EXPECT_NE(Editor(), nullptr);
    EXPECT_EQ(Description(), before);
}

TEST_F(FeatureEditing, ReplacesTheEditorWithTheNextFeaturesOne) {
    SelectFeature(width);
    SelectFeature(gain);
    EXPECT_EQ(EditorControl(7022), nullptr);
    EXPECT_NE(EditorControl(7010), nullptr);
    EXPECT_EQ(::GetWindow(Editor(), GW_HWNDNEXT), nullptr) << "the old editor is still there";
}

TEST_F(FeatureEditing, ShowsNoDescriptionThatIsNoText) {
    Camera().Find("Width")->description = "\xFF\xFE";
    Reopen();
    SelectFeature(width);
    EXPECT_EQ(Description(), L"Min: 16px, Max: 2048px");
}

TEST_F(FeatureEditing, ShowsUnitsOfOtherLetters) {
    Camera().Find("Gain")->unit = "\xC2\xB5s";
    Reopen();
    SelectFeature(gain);
    EXPECT_EQ(TextOf(EditorControl(7031)), L"\xB5s");
    EXPECT_EQ(Description(), L"Gain of the sensor.\nMin: 0.000000\xB5s, Max: 24.000000\xB5s");
}

struct Failure {
    const char* entry;
    unsigned nth;
    const char* path;
    std::string line;
};

const std::string kTimeout = ": Timeout during wait";

TEST_F(FeatureEditing, SaysWhatCouldNotBeReadAndStaysUsable) {
    // The entries of an enumeration have the SDK's code in a line of their own.
    const Failure failures[] = {
        {"PxnFeatureIntRangeQuery", 1, "ImageFormatControl/Width",
         "Failed to get range of integer Width" + kTimeout},
        {"PxnFeatureIntGet", 1, "ImageFormatControl/Width",
         "Failed to get value of integer Width" + kTimeout},
        {"PxnFeatureFloatRangeQuery", 1, "AnalogControl/Gain",
         "Failed to get range of float Gain" + kTimeout},
        {"PxnFeatureFloatGet", 1, "AnalogControl/Gain",
         "Failed to get value of float Gain" + kTimeout},
        {"PxnFeatureEnumRangeQuery", 1, "ImageFormatControl/PixelFormat",
         "Could not query range of enum PixelFormat"},
        {"PxnFeatureEnumGet", 1, "ImageFormatControl/PixelFormat",
         "Failed to get enum value PixelFormat" + kTimeout},
        {"PxnFeatureBoolGet", 1, "ImageFormatControl/ReverseX",
         "Failed to get boolean value ReverseX" + kTimeout},
        {"PxnFeatureStringGet", 1, "DeviceControl/DeviceUserID",
         "Failed to get length of string DeviceUserID" + kTimeout},
        {"PxnFeatureStringGet", 2, "DeviceControl/DeviceUserID",
         "Failed to get value of string DeviceUserID" + kTimeout},
    };
    for (const Failure& failure : failures) {
        Select(L"Camera/AcquisitionControl/AcquisitionStart");
        const std::string path = failure.path;
        const std::wstring row = L"Camera/" + std::wstring(path.begin(), path.end());
        // With its rows in sight already, so that no refresh reads in between.
        TreeView_EnsureVisible(Tree(), Row(row));
        Dialog().OnTreeExpanded();
        Pump();
        Forget();
        sdk.Fail(failure.entry, PxnErrTimeout, failure.nth);
        Select(row);
        sdk.ClearFailures();
        EXPECT_EQ(Editor(), nullptr) << failure.line;
        const Texts lines = DialogLog();
        EXPECT_TRUE(Has(lines, "0 AttrSelected: " + failure.line)) << failure.line;
        EXPECT_TRUE(Has(lines, noEditor));
    }
    SelectFeature(width);
}

TEST_F(FeatureEditing, SaysWhenAFeatureIsNotInItsCache) {
    Expand(L"Camera/DeviceControl");
    ASSERT_EQ(Grabber().CloseActCamera(), MV_OK);
    Forget();
    Select(userId);
    EXPECT_EQ(DialogLog(),
              (Texts{"0 AttrSelected: Feature DeviceUserID is not in the feature cache Camera."}));
    EXPECT_EQ(Editor(), nullptr);
}

TEST_F(FeatureEditing, HasNoEditorForAnUnsupportedType) {
    Select(L"Camera/Scripted/Blob");
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_TRUE(Has(DialogLog(), noEditor));
    EXPECT_EQ(Description(), L"");
}

TEST_F(FeatureEditing, HasNoEditorForAnEntryThatIsNotAvailable) {
    Camera().Find("PixelFormat")->text = "Mono10";
    Select(pixelFormat);
    EXPECT_EQ(Editor(), nullptr);
    const Texts lines = DialogLog();
    EXPECT_TRUE(Has(lines, "0 AttrSelected: Could set enum range/value on form for feature "
                           "PixelFormat"));
    EXPECT_TRUE(Has(lines, noEditor));
    EXPECT_EQ(Description().substr(0, 25), L"Possible options: Mono8, ");
}

/// While it lives no icon is found, and so no value editor can be made.
class WithoutIcons {
public:
    WithoutIcons() { state.m_hCurrentResourceHandle = GetModuleHandle(L"kernel32.dll"); }
    ~WithoutIcons() { state.m_hCurrentResourceHandle = before; }
    WithoutIcons(const WithoutIcons&) = delete;
    WithoutIcons& operator=(const WithoutIcons&) = delete;

private:
    AFX_MODULE_STATE& state = *AfxGetStaticModuleState();
    const HINSTANCE before = state.m_hCurrentResourceHandle;
};

TEST_F(FeatureEditing, SaysThatAnEditorCouldNotBeMade) {
    const std::pair<std::wstring, const char*> kinds[] = {
        {width, "Could create integer view for feature Width"},
        {gain, "Could create float view for feature Gain"},
        {pixelFormat, "Could create enum view for feature PixelFormat"},
        {reverseX, "Could create enum view for boolean feature ReverseX"},
        {userId, "Could create string view for feature DeviceUserID"},
        {L"Camera/AcquisitionControl/AcquisitionStart",
         "Could create command view for feature AcquisitionStart"}};
    const WithoutIcons without;
    for (const auto& [path, line] : kinds) {
        Forget();
        Select(path);
        EXPECT_EQ(Editor(), nullptr) << line;
        const Texts lines = DialogLog();
        EXPECT_TRUE(Has(lines, std::string("0 AttrSelected: ") + line)) << line;
        EXPECT_TRUE(Has(lines, noEditor)) << line;
    }
}

/// While it lives a value editor loses a control once its name has been written.
class WithoutControl {
public:
    explicit WithoutControl(int id)
        : hook(SetWindowsHookEx(WH_CALLWNDPROC, Watch, nullptr, GetCurrentThreadId())) {
        lost = id;
    }
    ~WithoutControl() { UnhookWindowsHookEx(hook); }
    WithoutControl(const WithoutControl&) = delete;
    WithoutControl& operator=(const WithoutControl&) = delete;

private:
    static LRESULT CALLBACK Watch(int code, WPARAM wParam, LPARAM lParam) {
        const auto& call = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (code == HC_ACTION && call.message == WM_SETTEXT && GetDlgCtrlID(call.hwnd) == 7024) {
            DestroyWindow(GetDlgItem(GetParent(call.hwnd), lost));
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static inline int lost = 0;
    const HHOOK hook;
};

TEST_F(FeatureEditing, SaysThatAnEditorCouldNotBeFilled) {
    const struct {
        std::wstring path;
        int control;
        const char* line;
    } kinds[] = {{width, 7020, "Could set integer range/value on form for feature Width"},
                 {width, 7022, "Could set integer range/value on form for feature Width"},
                 {gain, 7010, "Could set float range/value on form for feature Gain"},
                 {pixelFormat, 7007, "Could set enum range/value on form for feature PixelFormat"},
                 {reverseX, 7007, "Could set boolean range/value on form for feature ReverseX"},
                 {userId, 7018, "Could set string to form for feature DeviceUserID"}};
    for (const auto& kind : kinds) {
        Select(L"Camera/Scripted/Blob");
        Forget();
        const WithoutControl without(kind.control);
        Select(kind.path);
        EXPECT_EQ(Editor(), nullptr) << kind.line;
        const Texts lines = DialogLog();
        EXPECT_TRUE(Has(lines, std::string("0 AttrSelected: ") + kind.line)) << kind.line;
        EXPECT_TRUE(Has(lines, noEditor)) << kind.line;
    }
    SelectFeature(width);
}

// ---- committing ----

TEST_F(FeatureEditing, WritesANumberOnEnterAndReadsItBack) {
    SelectFeature(width);
    Retype(7022, L"800");
    EXPECT_EQ(Writes(), Texts{});
    Press(VK_RETURN);
    EXPECT_EQ(Writes(), (Texts{R"(PxnFeatureIntSet(camera0, "Width", 800))"}));
    EXPECT_EQ(RowText(width), L"Width\t800");
    EXPECT_EQ(TextOf(EditorControl(7022)), L"800");
    EXPECT_TRUE(Dialog().IsVisible());
}

TEST_F(FeatureEditing, ShowsWhatTheCameraMadeOfIt) {
    SelectFeature(gain);
    sdk.OnCall("PxnFeatureFloatGet", [&] { Camera().Find("Gain")->floatValue = 3.25; });
    Retype(7010, L"3.3");
    ClickButton(Editor(), 7026);
    sdk.ClearHooks();
    EXPECT_EQ(TextOf(EditorControl(7010)), L"3.250000");
    EXPECT_EQ(RowText(gain), L"Gain\t3.250000");
}

TEST_F(FeatureEditing, WritesAnEntry) {
    SelectFeature(pixelFormat);
    Choose(L"Mono12");
    EXPECT_EQ(Writes(), Texts{});
    ClickButton(Editor(), 7026);
    EXPECT_EQ(Writes(), (Texts{R"(PxnFeatureEnumSet(camera0, "PixelFormat", "Mono12"))"}));
    EXPECT_EQ(RowText(pixelFormat), L"PixelFormat\tMono12");
}

TEST_F(FeatureEditing, WritesABoolean) {
    SelectFeature(reverseX);
    Choose(L"True");
    ::SetFocus(EditorControl(7007));
    Press(VK_RETURN);
    EXPECT_EQ(Writes(), (Texts{R"(PxnFeatureBoolSet(camera0, "ReverseX", 1))"}));
    EXPECT_EQ(RowText(reverseX), L"ReverseX\tTrue");
    Choose(L"False");
    Press(VK_RETURN);
    EXPECT_EQ(Writes(), (Texts{R"(PxnFeatureBoolSet(camera0, "ReverseX", 0))"}));
}

TEST_F(FeatureEditing, WritesAText) {
    SelectFeature(userId);
    Retype(7018, L"K\xF6ln");
    Press(VK_RETURN);
    EXPECT_EQ(Camera().Find("DeviceUserID")->text, "K\xC3\xB6ln");
    EXPECT_EQ(RowText(userId), L"DeviceUserID\tK\xF6ln");
}

TEST_F(FeatureEditing, RunsACommand) {
    SelectFeature(L"Camera/AcquisitionControl/AcquisitionStart");
    ClickButton(Editor(), 7005);
    EXPECT_EQ(Writes(), (Texts{R"(PxnFeatureCommandRun(camera0, "AcquisitionStart"))"}));
}

TEST_F(FeatureEditing, IsWalkedThroughFromTheTreeByTheTabKey) {
    SelectFeature(width);
    ::SetFocus(Tree());
    const HWND order[] = {EditorControl(7020), EditorControl(7022), EditorControl(7026),
                          EditorControl(7030), Control(7001),       Tree()};
    for (const HWND next : order) {
        Press(VK_TAB);
        EXPECT_EQ(::GetFocus(), next) << ::GetDlgCtrlID(next);
    }
}

TEST_F(FeatureEditing, WritesNothingOnEnterElsewhere) {
    SelectFeature(width);
    Retype(7022, L"800");
    ::SetFocus(Tree());
    Press(VK_RETURN);
    EXPECT_EQ(Writes(), Texts{});
    EXPECT_TRUE(Dialog().IsVisible());
}

TEST_F(FeatureEditing, RevertsToTheCamerasValue) {
    SelectFeature(width);
    Retype(7022, L"800");
    ClickButton(Editor(), 7030);
    EXPECT_EQ(TextOf(EditorControl(7022)), L"640");
    SelectFeature(gain);
    Retype(7010, L"9");
    ClickButton(Editor(), 7030);
    EXPECT_EQ(TextOf(EditorControl(7010)), L"1.500000");
    SelectFeature(pixelFormat);
    Choose(L"RGB8");
    ClickButton(Editor(), 7030);
    EXPECT_EQ(Selected(), L"Mono8");
    SelectFeature(reverseX);
    Choose(L"True");
    ClickButton(Editor(), 7030);
    EXPECT_EQ(Selected(), L"False");
    SelectFeature(userId);
    Retype(7018, L"mine");
    ClickButton(Editor(), 7030);
    EXPECT_EQ(TextOf(EditorControl(7018)), L"left");
    EXPECT_EQ(Writes(), Texts{});
}

// ---- refused and failed ----

TEST_F(FeatureEditing, SaysWhatRefusedAValueAndWhy) {
    SelectFeature(width);
    Retype(7022, L"99999");
    const std::wstring text = CatchBox(L"Out of range", [&] { ClickButton(Editor(), 7026); });
    EXPECT_EQ(text, L"The value you entered cannot by applied to feature\n"
                    L"/Camera/ImageFormatControl/Width");
    EXPECT_EQ(Writes(), Texts{});
    EXPECT_EQ(TextOf(EditorControl(7022)), L"640") << "not reverted";
}

TEST_F(FeatureEditing, SaysThatAValueIsWriteProtected) {
    SelectFeature(reverseX);
    Camera().Find("ReverseX")->writeable = false;
    Choose(L"True");
    const std::wstring text = CatchBox(L"Write protected", [&] { ClickButton(Editor(), 7026); });
    EXPECT_EQ(text, L"The value you entered cannot by applied to feature\n"
                    L"/Camera/ImageFormatControl/ReverseX");
    EXPECT_EQ(Selected(), L"False");
}

TEST_F(FeatureEditing, SaysThatWritingFailed) {
    const struct {
        std::wstring path;
        const char* entry;
        const char* line;
        const wchar_t* name;
    } cases[] = {
        {width, "PxnFeatureIntSet", "Failed to write integer value Width", L"Width"},
        {width, "PxnFeatureIntGet", "Failed to get integer value Width", L"Width"},
        {gain, "PxnFeatureFloatSet", "Failed to write floating point value Gain", L"Gain"},
        {gain, "PxnFeatureFloatGet", "Failed to get floating point value Gain", L"Gain"},
        {pixelFormat, "PxnFeatureEnumSet", "Failed to write enum value PixelFormat",
         L"PixelFormat"},
        {pixelFormat, "PxnFeatureEnumGet", "Failed to get enum value PixelFormat", L"PixelFormat"},
        {reverseX, "PxnFeatureBoolSet", "Failed to write boolean value ReverseX", L"ReverseX"},
        {reverseX, "PxnFeatureBoolGet", "Failed to get boolean value ReverseX", L"ReverseX"},
        {userId, "PxnFeatureStringSet", "Failed to write string value DeviceUserID",
         L"DeviceUserID"},
        {userId, "PxnFeatureStringGet", "Failed to get string DeviceUserID", L"DeviceUserID"},
        {L"Camera/AcquisitionControl/AcquisitionStart", "PxnFeatureCommandRun",
         "Failed to run command AcquisitionStart", L"AcquisitionStart"},
    };
    for (const auto& failing : cases) {
        SelectFeature(failing.path);
        Pump();
        Forget();
        sdk.Fail(failing.entry, PxnErrTimeout);
        const std::wstring text = CatchBox(L"Setting error", [&] { ClickButton(Editor(), 7026); });
        sdk.ClearFailures();
        EXPECT_EQ(text, L"An error occured while setting \"" + std::wstring(failing.name) + L"\".");
        const Texts lines = DialogLog();
        EXPECT_TRUE(Has(lines, "0 OnValueChanged: " + std::string(failing.line) + kTimeout))
            << failing.line;
    }
}

TEST_F(FeatureEditing, ShowsTheEntryThatAFailedWriteLeft) {
    SelectFeature(pixelFormat);
    Pump();
    sdk.OnCall("PxnFeatureEnumSet", [&] { Camera().Find("PixelFormat")->text = "Mono12"; });
    sdk.Fail("PxnFeatureEnumSet", PxnErrTimeout);
    CatchBox(L"Setting error", [&] { ClickButton(Editor(), 7026); });
    sdk.ClearHooks();
    EXPECT_EQ(RowText(pixelFormat), L"PixelFormat\tMono12");
    EXPECT_EQ(Selected(), L"Mono12");
}

TEST_F(FeatureEditing, LeavesTheEditorAloneOfWhatIsListedAsReadOnly) {
    Camera().Find("DeviceUserID")->flags = PxnFeatureFlagRead;
    Reopen();
    SelectFeature(userId);
    Retype(7018, L"mine");
    Pump();
    Forget();
    ClickButton(Editor(), 7030);
    EXPECT_EQ(TextOf(EditorControl(7018)), L"mine");
    EXPECT_EQ(sdk.Calls({"PxnFeatureStringGet"}), Texts{});
}

TEST_F(FeatureEditing, SaysNothingToTheUserWhenTheFormHasNoValue) {
    SelectFeature(pixelFormat);
    ::SendMessage(EditorControl(7007), CB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    Forget();
    ClickButton(Editor(), 7026);
    EXPECT_EQ(sink.Take(), (Texts{"0 Failed to get the enum value from the form"}));
    EXPECT_EQ(Writes(), Texts{});
    SelectFeature(reverseX);
    ::SendMessage(EditorControl(7007), CB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    Forget();
    ClickButton(Editor(), 7026);
    EXPECT_EQ(sink.Take(), (Texts{"0 Failed to get the boolean value from the form"}));
    const struct {
        std::wstring path;
        int control;
        const char* line;
    } kinds[] = {{width, 7022, "0 Failed to get the integer value from the form"},
                 {gain, 7010, "0 Failed to get the float32 value from the form"},
                 {userId, 7018, "0 Failed to get the string value from the form"}};
    for (const auto& kind : kinds) {
        SelectFeature(kind.path);
        ::DestroyWindow(EditorControl(kind.control));
        Pump();
        Forget();
        ClickButton(Editor(), 7026);
        EXPECT_EQ(sink.Take(), (Texts{kind.line}));
        EXPECT_EQ(Writes(), Texts{});
    }
}

TEST_F(FeatureEditing, SaysWhatCouldNotBeReadWhenReverting) {
    const struct {
        std::wstring path;
        const char* entry;
        std::string line;
    } cases[] = {
        {width, "PxnFeatureIntRangeQuery", "Could not query range of integer Width" + kTimeout},
        {width, "PxnFeatureIntGet", "Could not query integer Width" + kTimeout},
        {gain, "PxnFeatureFloatRangeQuery", "Could not query range of float Gain" + kTimeout},
        {gain, "PxnFeatureFloatGet", "Could not query float Gain" + kTimeout},
        {pixelFormat, "PxnFeatureEnumRangeQuery", "Could not query range of enum PixelFormat"},
        {pixelFormat, "PxnFeatureEnumGet", "Could not value of enum PixelFormat" + kTimeout},
        {reverseX, "PxnFeatureBoolGet", "Could not query boolean ReverseX" + kTimeout},
        {userId, "PxnFeatureStringGet", "Could get string DeviceUserID" + kTimeout},
    };
    for (const auto& failing : cases) {
        SelectFeature(failing.path);
        Pump();
        Forget();
        sdk.Fail(failing.entry, PxnErrTimeout);
        ClickButton(Editor(), 7030);
        sdk.ClearFailures();
        const Texts lines = DialogLog();
        EXPECT_TRUE(Has(lines, "0 RefreshCurrentForm: " + failing.line)) << failing.line;
        EXPECT_NE(Editor(), nullptr);
    }
}

TEST_F(FeatureEditing, CopesWithModulesListedAnewUnderItsMessageBox) {
    SelectFeature(width);
    Retype(7022, L"99999");
    const HWND window = Dialog().m_hWnd;
    CatchBox(L"Out of range", [&] {
        sdk.OnCall("PxnFeatureIntRangeQuery", [&] {
            sdk.OnCall("PxnFeatureIntRangeQuery", {});
            ::PostMessage(window, WM_APP + 4, 0, 0); // the modules are listed anew meanwhile
        });
        ClickButton(Editor(), 7026);
    });
    sdk.ClearHooks();
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(TreeView_GetSelection(Tree()), Row(L""));
}

} // namespace
