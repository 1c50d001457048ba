// The feature control dialog on a simulated camera, as it looks and what it costs.
#include "feature_dialog_fixture.h"
#include "screenshot.h"

using namespace pyxen;

namespace {

class FeatureDialogLooks : public FeatureDialogFixture {
protected:
    FeatureDialogLooks() : FeatureDialogFixture(SimulatorHome()) {}

    void Open() {
        OpenCamera();
        OpenDialog();
        Pump();
    }
    void Keep(const std::string& name) {
        ::RedrawWindow(Dialog().m_hWnd, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        Pump();
        SaveScreenshot(Dialog().m_hWnd, "feature-control-" + name);
    }
    void Retype(int id, const std::wstring& text) {
        ::SetFocus(EditorControl(id));
        ::SendMessage(EditorControl(id), EM_SETSEL, 0, -1);
        Type(text);
    }
    void Resize(int width, int height) {
        Dialog().SetWindowPos(nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
        Pump();
    }
    /// No part reaches over the client area or over another.
    void ExpectTidy() {
        CRect client;
        Dialog().GetClientRect(client);
        const int ids[] = {4108, 4109, 7002, 7001};
        std::vector<CRect> places;
        for (const int id : ids) {
            CRect place;
            ::GetWindowRect(Control(id), &place);
            Dialog().ScreenToClient(place);
            CRect both;
            both.IntersectRect(place, client);
            EXPECT_TRUE(EqualRect(both, place)) << id << " is cut";
            for (const CRect& other : places) {
                EXPECT_FALSE(both.IntersectRect(place, other)) << id << " overlaps";
            }
            places.push_back(place);
        }
        CRect text;
        ::GetWindowRect(Control(7003), &text);
        Dialog().ScreenToClient(text);
        CRect both;
        both.IntersectRect(text, places[2]);
        EXPECT_TRUE(EqualRect(both, text)) << "the description leaves its frame";
    }
};

TEST_F(FeatureDialogLooks, ShowsEveryKindOfFeature) {
    Open();
    EXPECT_EQ(Children(L""), (std::vector<std::wstring>{L"Camera", L"Interface", L"Localdevice",
                                                        L"Stream0", L"Transportlayer"}));
    Keep("modules");
    const struct {
        const wchar_t* path;
        const char* picture;
        bool hasEditor;
    } kinds[] = {{L"Camera/ImageFormatControl/Width", "integer", true},
                 {L"Camera/AnalogControl/Gain", "float", true},
                 {L"Camera/ImageFormatControl/PixelFormat", "enumeration", true},
                 {L"Camera/ImageFormatControl/ReverseX", "boolean", true},
                 {L"Camera/DeviceControl/DeviceUserID", "string", true},
                 {L"Camera/UserSetControl/UserSetLoad", "command", true},
                 {L"Camera/ImageFormatControl/SensorWidth", "read-only", false}};
    for (const auto& kind : kinds) {
        Select(kind.path);
        EXPECT_EQ(Editor() != nullptr, kind.hasEditor) << kind.picture;
        ExpectTidy();
        Keep(kind.picture);
    }
}

TEST_F(FeatureDialogLooks, ShowsAnEditFromBeginToEnd) {
    Open();
    const std::wstring width = L"Camera/ImageFormatControl/Width";
    Select(width);
    Retype(7022, L"320");
    Keep("typed");
    Press(VK_RETURN);
    EXPECT_EQ(RowText(width), L"Width\t320");
    Keep("committed");
    Retype(7022, L"256");
    ClickButton(Editor(), 7026);
    EXPECT_EQ(RowText(width), L"Width\t256");
    Keep("applied");
    Retype(7022, L"128");
    ClickButton(Editor(), 7030);
    EXPECT_EQ(TextOf(EditorControl(7022)), L"256");
    Keep("reverted");
    Retype(7022, L"999999");
    EXPECT_EQ(
        CatchBox(
            L"Out of range", [&] { ClickButton(Editor(), 7026); }, "feature-control-refused-box"),
        L"The value you entered cannot by applied to feature\n"
        L"/Camera/ImageFormatControl/Width");
    Keep("refused");
}

TEST_F(FeatureDialogLooks, FollowsTheCamera) {
    directory.Write("PxnC.xml", "<PxnC><camera kind=\"gige\" id=\"A\"/></PxnC>\n");
    Open();
    const std::wstring gain = L"Camera/AnalogControl/Gain";
    Expand(L"Camera/AnalogControl");
    const std::wstring before = RowText(gain);
    SdkControl("set A Gain 7.5");
    PumpUntil([&] { return RowText(gain) != before; });
    EXPECT_EQ(RowText(gain), L"Gain\t7.500000");
    Keep("invalidated");
}

TEST_F(FeatureDialogLooks, StaysTidyAtEverySize) {
    Open();
    Select(L"Camera/ImageFormatControl/Width");
    Resize(10, 10);
    ExpectTidy();
    Keep("smallest");
    Select(L"Camera/ImageFormatControl/PixelFormat");
    ExpectTidy();
    Keep("smallest-options");
    Resize(1400, 1000);
    ExpectTidy();
    Keep("large");
    Select(L"Camera/ImageFormatControl/Width");
    Keep("large-integer");
}

TEST_F(FeatureDialogLooks, GivesALongDescriptionTheRoomItNeeds) {
    Open();
    const auto heights = [&] {
        CRect text, tree;
        ::GetWindowRect(Control(7003), &text);
        ::GetWindowRect(Control(4108), &tree);
        return std::pair(text.Height(), tree.Height());
    };
    Select(L"Camera/ImageFormatControl/Width");
    const auto before = heights();
    Select(L"Camera/ImageFormatControl/PixelFormat");
    const int growth = heights().first - before.first;
    EXPECT_GT(growth, 0);
    EXPECT_EQ(before.second - heights().second, growth);
    Select(L"Camera/ImageFormatControl/Width");
    EXPECT_EQ(heights(), before);
}

TEST_F(FeatureDialogLooks, ErasesOnlyWhatNothingCovers) {
    Open();
    const COLORREF mark = RGB(200, 10, 150);
    CRect client;
    Dialog().GetClientRect(client);
    const HDC dc = ::GetDC(Dialog().m_hWnd);
    const HBRUSH brush = ::CreateSolidBrush(mark);
    ::FillRect(dc, client, brush);
    ::DeleteObject(brush);
    Dialog().SendMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc));
    for (const int id : {4108, 4109, 7003, 7001}) {
        CRect place;
        ::GetWindowRect(Control(id), &place);
        Dialog().ScreenToClient(place);
        for (const POINT point :
             {POINT{place.left, place.top}, POINT{place.right - 1, place.bottom - 1}}) {
            EXPECT_EQ(::GetPixel(dc, point.x, point.y), mark) << id;
        }
        EXPECT_NE(::GetPixel(dc, place.left - 1, place.top - 1), mark) << id;
    }
    ::ReleaseDC(Dialog().m_hWnd, dc);
}

TEST_F(FeatureDialogLooks, DestroysItsIconInTheEnd) {
    Open();
    const auto icon = reinterpret_cast<HICON>(Dialog().SendMessage(WM_GETICON, ICON_SMALL));
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    BITMAP bitmap{};
    GetObject(info.hbmMask, sizeof(bitmap), &bitmap);
    EXPECT_EQ(bitmap.bmWidth, GetSystemMetrics(SM_CXSMICON));
    DeleteObject(info.hbmMask);
    DeleteObject(info.hbmColor);
    EndGrabber();
    EXPECT_FALSE(GetIconInfo(icon, &info));
}

TEST_F(FeatureDialogLooks, ScrollsSideways) {
    Open();
    Resize(10, 10);
    Select(L"Camera/ImageFormatControl/Width");
    HDITEM item = {};
    item.mask = HDI_WIDTH;
    item.cxy = 400;
    Header_SetItem(::GetDlgItem(Control(4108), 1), 1, &item);
    Pump();
    for (int step = 0; step < 6; ++step) {
        ::SendMessage(Control(4108), WM_HSCROLL, SB_LINERIGHT, 0);
    }
    Pump();
    EXPECT_EQ(::GetScrollPos(Control(4108), SB_HORZ), 90);
    Keep("sideways");
}

/// Counts the messages to tree controls of this thread while it lives.
class TreeMessages {
public:
    TreeMessages() : hook(SetWindowsHookEx(WH_CALLWNDPROC, Watch, nullptr, GetCurrentThreadId())) {
        count = 0;
    }
    ~TreeMessages() { UnhookWindowsHookEx(hook); }
    TreeMessages(const TreeMessages&) = delete;
    TreeMessages& operator=(const TreeMessages&) = delete;

    static std::int64_t Count() { return count; }

private:
    static LRESULT CALLBACK Watch(int code, WPARAM wParam, LPARAM lParam) {
        const UINT message = reinterpret_cast<const CWPSTRUCT*>(lParam)->message;
        count += code == HC_ACTION && message >= TV_FIRST && message < TV_FIRST + 0x100 ? 1 : 0;
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static inline std::int64_t count = 0;
    const HHOOK hook;
};

TEST_F(FeatureDialogLooks, OpensTenThousandFeaturesWithTheSameWorkForEach) {
    struct Work {
        std::int64_t calls = 0;    // of the SDK
        std::int64_t messages = 0; // to the tree
    };
    const auto open = [this](int features) {
        EndGrabber();
        directory.Write("PxnC.xml", "<PxnC><camera kind=\"gige\" id=\"A\" extraFeatures=\"" +
                                        std::to_string(features) + "\"/></PxnC>\n");
        OpenCamera();
        EXPECT_GE(Grabber().GetFeatureCacheByName("Camera")->GetFeatureCount(),
                  static_cast<std::size_t>(features));
        const std::int64_t before = SdkCalls();
        const TreeMessages messages;
        OpenDialog();
        Pump();
        return Work{SdkCalls() - before, messages.Count()};
    };
    const Work quarter = open(2500);
    const Work half = open(5000);
    const Work whole = open(10000);
    RecordProperty("calls", std::to_string(whole.calls));
    RecordProperty("messages", std::to_string(whole.messages));
    EXPECT_GE(whole.messages, 10000);
    EXPECT_EQ(whole.calls - half.calls, 2 * (half.calls - quarter.calls));
    EXPECT_EQ(whole.messages - half.messages, 2 * (half.messages - quarter.messages));
    sink.Take();
    Expand(L"Camera/SimulatorControl");
    for (const wchar_t* const group : {L"Group3", L"Group2", L"Group1", L"Group0"}) {
        Expand(std::wstring(L"Camera/SimulatorControl/") + group);
    }
    std::size_t registered = 0;
    std::size_t given = 0;
    const auto count = [&] {
        for (const std::string& line : DialogLog()) {
            registered += line.find("RegisterDlgInvalidationFeatures: Registering") == 2;
            given += line.find("UnregisterDlgInvalidationFeatures: Unregistering") == 2;
        }
    };
    count();
    const std::size_t page =
        static_cast<std::size_t>(::SendMessage(Tree(), TVM_GETVISIBLECOUNT, 0, 0)) + 1;
    EXPECT_LE(registered - given, page);
    for (int step = 0; step < 20; ++step) {
        ::SendMessage(Tree(), WM_VSCROLL, SB_PAGEDOWN, 0);
        Pump();
        count();
        EXPECT_LE(registered - given, page) << "hidden rows are followed";
    }
    EXPECT_LE(registered, 26 * page);
    EXPECT_GT(registered, 10 * (page - 2));
    Keep("ten-thousand");
}

} // namespace
