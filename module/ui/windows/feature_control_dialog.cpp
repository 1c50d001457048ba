// feature_control_dialog.cpp - the feature control dialog's window and messages
#include "ui/windows/feature_control_dialog.h"

#include "grabber/mivora_kvn_pyxen_class.h"
#include "res/resource.h"
#include "sdk/logger.h"
#include "ui/restart_rule.h"
#include "ui/update_batch.h"

#include <utility>

using namespace pyxen;

namespace {

// Posted by Update, on whatever thread.
constexpr UINT kModulesChanged = WM_APP + 4;

constexpr int kLeastWidth = 600;
constexpr int kLeastHeight = 400;

// In dialog units.
constexpr int kLeastPaneWidth = 96;
constexpr int kLeastPaneHeight = 62;

PxnHandle HandleOf(WPARAM wParam) {
    return reinterpret_cast<PxnHandle>(wParam);
}

const char* NameOf(LPARAM lParam) {
    return reinterpret_cast<const char*>(lParam);
}

CRect RectOf(const LayoutRect& place) {
    return CRect(place.left, place.top, place.right, place.bottom);
}

} // namespace

IMPLEMENT_DYNAMIC(CKVNPyxenFeatureCtrlDialog, CDialog)

BEGIN_MESSAGE_MAP(CKVNPyxenFeatureCtrlDialog, CDialog)
ON_BN_CLICKED(IDC_FEATURE_CLOSE, &CKVNPyxenFeatureCtrlDialog::OnCloseButton)
ON_WM_DESTROY()
ON_WM_SIZE()
ON_WM_GETMINMAXINFO()
ON_WM_ERASEBKGND()
ON_WM_SHOWWINDOW()
ON_WM_TIMER()
ON_MESSAGE(WM_FEATURE_UPDATE, &CKVNPyxenFeatureCtrlDialog::OnInvalidateFeature)
ON_MESSAGE(WM_SYNC_FEATURE_INVALIDATED, &CKVNPyxenFeatureCtrlDialog::OnInvalidateSyncFeature)
ON_MESSAGE(WM_BUFFER_FORMAT_INVALIDATED, &CKVNPyxenFeatureCtrlDialog::OnInvalidateAnyFeature)
ON_MESSAGE(WM_TIMING_FEATURE_INVALIDATED, &CKVNPyxenFeatureCtrlDialog::OnInvalidateTimingFeature)
ON_MESSAGE(kModulesChanged, &CKVNPyxenFeatureCtrlDialog::OnModulesChanged)
END_MESSAGE_MAP()

/// The grabber's share in the dialog.
class CKVNPyxenFeatureCtrlDialog::Owned final : public ICamCntrlDialog {
public:
    explicit Owned(std::shared_ptr<CKVNPyxenFeatureCtrlDialog> made) : dialog(std::move(made)) {}
    ~Owned() override {
        AFX_MANAGE_STATE(AfxGetStaticModuleState())
        dialog->DestroyWindow();
        dialog.reset();
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    // Windows of the host that are activated meanwhile may end the grabber.
    void Show() override {
        const auto alive = dialog;
        alive->Show();
    }
    void Hide() override {
        const auto alive = dialog;
        alive->Hide();
    }
    bool IsVisible() const override { return dialog->IsVisible(); }
    void Update(uint32_t mask) override { dialog->Update(mask); }
    void SetAcquisitionMarks(bool suppressBufferFormat, bool suppressSync) override {
        dialog->SetAcquisitionMarks(suppressBufferFormat, suppressSync);
    }
    void Disconnect() override { dialog->Disconnect(); }

private:
    std::shared_ptr<CKVNPyxenFeatureCtrlDialog> dialog;
};

std::unique_ptr<ICamCntrlDialog> CKVNPyxenFeatureCtrlDialog::Open(CMivoraKVNPyxenClass& grabber) {
    const auto dialog = std::make_shared<CKVNPyxenFeatureCtrlDialog>();
    dialog->SetOwnerClass(grabber);
    if (!dialog->Create(IDD_FEATURE_CONTROL)) {
        return nullptr;
    }
    return std::make_unique<Owned>(dialog);
}

CKVNPyxenFeatureCtrlDialog::CKVNPyxenFeatureCtrlDialog(CWnd* parent)
    : CCamCntrlDlgBase(IDD_FEATURE_CONTROL, parent),
      icon(LoadSmallIcon(IDI_FEATURE_CONTROL)),
      debounce(*this) {}

CKVNPyxenFeatureCtrlDialog::OwnerClass::OwnerClass(CMivoraKVNPyxenClass& newGrabber,
                                                   CKVNPyxenFeatureCtrlDialog& dialog)
    : grabber(newGrabber),
      log(newGrabber.GetLogSink()),
      reader(log),
      writer(newGrabber.Sync()),
      receiver(std::make_shared<InvalidationReceiver>(
          log,
          [&dialog](std::uint32_t message, PxnHandle handle, const char* name) {
              dialog.PostMessage(message, reinterpret_cast<WPARAM>(handle),
                                 reinterpret_cast<LPARAM>(name));
          })),
      registrations(newGrabber.Api(), receiver, log) {}

void CKVNPyxenFeatureCtrlDialog::SetOwnerClass(CMivoraKVNPyxenClass& grabber) {
    owner.emplace(grabber, *this);
}

BOOL CKVNPyxenFeatureCtrlDialog::Create(UINT templateId, CWnd* parent) {
    return owner && CCamCntrlDlgBase::Create(templateId, parent);
}

CKVNPyxenFeatureCtrlDialog::~CKVNPyxenFeatureCtrlDialog() {
    AFX_MANAGE_STATE(AfxGetStaticModuleState())
    // While the class's own handlers are there to be called.
    DestroyWindow();
    if (owner) {
        owner->receiver->Close(); // when there never was a window
    }
}

bool CKVNPyxenFeatureCtrlDialog::CanAsk() const {
    return owner && m_hWnd && owner->grabber.Api().IsValid();
}

// ---- what the grabber tells ----

void CKVNPyxenFeatureCtrlDialog::Update(uint32_t mask) {
    if (mask == kMvUpdateAll) {
        PostMessage(kModulesChanged);
    }
}

void CKVNPyxenFeatureCtrlDialog::SetAcquisitionMarks(bool suppressBufferFormat, bool suppressSync) {
    if (owner) {
        owner->receiver->Suppress(suppressBufferFormat, suppressSync);
    }
}

void CKVNPyxenFeatureCtrlDialog::Disconnect() {
    if (owner) {
        owner->registrations.Disconnect();
    }
}

// ---- window messages ----

LRESULT CKVNPyxenFeatureCtrlDialog::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto alive = weak_from_this().lock(); // null while the object is being destroyed
    return CCamCntrlDlgBase::WindowProc(message, wParam, lParam);
}

BOOL CKVNPyxenFeatureCtrlDialog::OnInitDialog() {
    CCamCntrlDlgBase::OnInitDialog();
    SetIcon(icon.get(), FALSE);
    owner->grabber.RegisterWindowHandle(m_hWnd);
    descriptionText.SubclassDlgItem(IDC_DESCRIPTION, this);
    CaptureLayout();
    const auto places = ComputePlaces();
    if (!treeView.Create(this, RectOf(places.tree), this, IDC_ATTRIBUTE_TREE) ||
        !container.Create(RectOf(places.container), this, IDC_VALUE_CONTAINER)) {
        return TRUE;
    }
    // On top, so that the keys reach the tree first, then the editor.
    for (const HWND view : {container.m_hWnd, treeView.m_hWnd}) {
        ::SetWindowPos(view, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    Tree().SetNotifyCallback(this);
    LayOut();
    ShowModules();
    Tree().SetFocus();
    return FALSE;
}

void CKVNPyxenFeatureCtrlDialog::OnOK() {
    if (valueView) {
        valueView->CommitOnEnter();
    }
}

void CKVNPyxenFeatureCtrlDialog::OnCancel() {
    OnCloseButton();
}

void CKVNPyxenFeatureCtrlDialog::OnCloseButton() {
    // The host may have ended the dialog meanwhile.
    if (owner->grabber.SignalCamCntrlDlgEvent(kMvEventCloseRequest) == 1 && m_hWnd) {
        Hide();
    }
}

void CKVNPyxenFeatureCtrlDialog::OnDestroy() {
    owner->log.Information("CKVNPyxenFeatureCtrlDialog::OnDestroy called");
    owner->registrations.UnregisterAll(InvalidationKind::kSync);
    owner->registrations.UnregisterAll(InvalidationKind::kBufferFormat);
    owner->registrations.UnregisterAll(InvalidationKind::kTiming);
    DropVisibleFeatures();
    owner->receiver->Close();
    valueView.reset();
    container.DestroyWindow();
    if (treeView.m_hWnd) {
        Tree().SetNotifyCallback(nullptr);
        treeView.DestroyWindow();
    }
    owner->grabber.UnRegisterWindowHandle(m_hWnd);
    CCamCntrlDlgBase::OnDestroy();
}

void CKVNPyxenFeatureCtrlDialog::OnShowWindow(BOOL show, UINT status) {
    CCamCntrlDlgBase::OnShowWindow(show, status);
    followsValues = show != FALSE;
    if (show) {
        // Whoever opens the dialog may have given it another size than its template.
        if (!std::exchange(wasShown, true) && treeView.m_hWnd) {
            treeView.FitColumns();
        }
        UpdateVisibleFeatures();
    } else {
        DropVisibleFeatures();
    }
}

void CKVNPyxenFeatureCtrlDialog::OnGetMinMaxInfo(MINMAXINFO* info) {
    info->ptMinTrackSize = CPoint(kLeastWidth, kLeastHeight);
}

// What covers its own area is left out, so that it does not flicker. A control that has this window
// paint its background asks with a device context of its own.
BOOL CKVNPyxenFeatureCtrlDialog::OnEraseBkgnd(CDC* dc) {
    if (::WindowFromDC(*dc) == m_hWnd) {
        for (const int id :
             {IDC_ATTRIBUTE_TREE, IDC_VALUE_CONTAINER, IDC_FEATURE_CLOSE, IDC_DESCRIPTION}) {
            if (::GetDlgItem(m_hWnd, id)) {
                dc->ExcludeClipRect(RectOf(PlaceOf(id)));
            }
        }
    }
    return CCamCntrlDlgBase::OnEraseBkgnd(dc);
}

// ---- layout ----

LayoutRect CKVNPyxenFeatureCtrlDialog::PlaceOf(int id) const {
    CRect rect;
    ::GetWindowRect(::GetDlgItem(m_hWnd, id), rect);
    ScreenToClient(rect);
    return {rect.left, rect.top, rect.right, rect.bottom};
}

void CKVNPyxenFeatureCtrlDialog::CaptureLayout() {
    CRect client;
    GetClientRect(client);
    CRect units(VALUE_FORM_WIDTH, 0, kLeastPaneWidth, kLeastPaneHeight);
    ::MapDialogRect(m_hWnd, units);
    FeatureDialogLayout::Template from;
    from.width = client.Width();
    from.height = client.Height();
    from.frame = PlaceOf(IDC_DESCRIPTION_FRAME);
    from.description = PlaceOf(IDC_DESCRIPTION);
    from.close = PlaceOf(IDC_FEATURE_CLOSE);
    from.paneWidth = units.left;
    from.leastPaneWidth = units.right;
    from.leastPaneHeight = units.bottom;
    layout.emplace(from);
}

void CKVNPyxenFeatureCtrlDialog::OnSize(UINT type, int width, int height) {
    CCamCntrlDlgBase::OnSize(type, width, height);
    if (type != SIZE_MINIMIZED) {
        LayOut();
    }
}

FeatureDialogLayout::Places CKVNPyxenFeatureCtrlDialog::ComputePlaces() const {
    CRect client;
    GetClientRect(client);
    const int width = layout->DescriptionWidth(client.Width());
    return layout->Compute(client.Width(), client.Height(), descriptionText.HeightAt(width),
                           descriptionText.LineHeight());
}

void CKVNPyxenFeatureCtrlDialog::LayOut() {
    if (!layout || !treeView.m_hWnd) {
        return;
    }
    const auto places = ComputePlaces();
    const std::pair<int, LayoutRect> moves[] = {{IDC_ATTRIBUTE_TREE, places.tree},
                                                {IDC_VALUE_CONTAINER, places.container},
                                                {IDC_DESCRIPTION_FRAME, places.frame},
                                                {IDC_DESCRIPTION, places.description},
                                                {IDC_FEATURE_CLOSE, places.close}};
    CRect frames = RectOf(PlaceOf(IDC_DESCRIPTION_FRAME));
    ::UnionRect(frames, frames, RectOf(places.frame));
    HDWP batch = ::BeginDeferWindowPos(static_cast<int>(std::size(moves)));
    for (const auto& [id, place] : moves) {
        // The text breaks elsewhere in another width.
        const UINT copy = id == IDC_DESCRIPTION ? SWP_NOCOPYBITS : 0u;
        batch =
            ::DeferWindowPos(batch, ::GetDlgItem(m_hWnd, id), nullptr, place.left, place.top,
                             place.Width(), place.Height(), SWP_NOZORDER | SWP_NOACTIVATE | copy);
    }
    ::EndDeferWindowPos(batch);
    // A group box does not erase what it had drawn before.
    ::RedrawWindow(m_hWnd, frames, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    if (valueView) {
        CRect client;
        container.GetClientRect(client);
        valueView->MoveWindow(client);
    }
}

// ---- what the SDK tells ----

LRESULT CKVNPyxenFeatureCtrlDialog::OnInvalidateFeature(WPARAM handle, LPARAM name) {
    UpdateBatch batch;
    const auto add = [&](WPARAM wParam, LPARAM lParam) {
        if (lParam && !batch.Add(HandleOf(wParam), NameOf(lParam)) && owner->log) {
            owner->log.Information(
                "CKVNPyxenFeatureCtrlDialog::OnInvalidateFeature: Dropping duplicate feature update request: handle %p, Feature %s .",
                HandleOf(wParam), NameOf(lParam));
        }
    };
    add(handle, name);
    MSG message;
    while (::PeekMessage(&message, m_hWnd, WM_FEATURE_UPDATE, WM_FEATURE_UPDATE, PM_REMOVE)) {
        add(message.wParam, message.lParam);
    }
    if (!m_hWnd) {
        return 0; // PeekMessage also has messages handled that other threads send
    }
    for (const UpdateBatch::Request& request : batch.GetRequests()) {
        const auto leaf = tree.FindLeaf(request.handle, request.name);
        if (leaf) {
            owner->log.Information("CKVNPyxenFeatureCtrlDialog::OnInvalidateFeature: Updating %s",
                                   request.name);
            RefreshLeaf(*leaf);
        } else {
            owner->log.Error(
                "CKVNPyxenFeatureCtrlDialog::OnInvalidateFeature: Feature %s not found in handle %p.",
                request.name, request.handle);
        }
    }
    return 0;
}

LRESULT CKVNPyxenFeatureCtrlDialog::OnInvalidateSyncFeature(WPARAM handle, LPARAM name) {
    FeatureCache* const cache = owner->grabber.GetFeatureCacheByHandle(HandleOf(handle));
    if (!cache || !name || !CanAsk()) {
        return 0;
    }
    owner->log.Information(
        "CKVNPyxenFeatureCtrlDialog::OnInvalidateSyncFeature: %s has been invalidated.",
        NameOf(name));
    owner->grabber.Sync().SyncDependentFeatures(cache, NameOf(name), true);
    return 0;
}

LRESULT CKVNPyxenFeatureCtrlDialog::OnInvalidateAnyFeature(WPARAM handle, LPARAM name) {
    FeatureCache* const cache = owner->grabber.GetFeatureCacheByHandle(HandleOf(handle));
    debounce.OnChange([&] {
        if (!cache || !name || !DoesPathTriggerRestart(*cache, NameOf(name), owner->log)) {
            return false;
        }
        owner->log.Information(
            "CKVNPyxenFeatureCtrlDialog::OnInvalidateAnyFeature: change of %s invalidates framebuffers.",
            NameOf(name));
        return true;
    });
    return 0;
}

LRESULT CKVNPyxenFeatureCtrlDialog::OnInvalidateTimingFeature(WPARAM handle, LPARAM name) {
    if (CanAsk() && owner->grabber.GetFeatureCacheByHandle(HandleOf(handle))) {
        owner->grabber.OnTimingFeatureChanged(HandleOf(handle), NameOf(name));
    }
    return 0;
}

LRESULT CKVNPyxenFeatureCtrlDialog::OnModulesChanged(WPARAM, LPARAM) {
    MSG message;
    while (::PeekMessage(&message, m_hWnd, kModulesChanged, kModulesChanged, PM_REMOVE)) {
    }
    if (!m_hWnd) {
        return 0;
    }
    ForgetModules();
    ShowModules();
    return 0;
}

// ---- changes of the buffer format ----

void CKVNPyxenFeatureCtrlDialog::BeginBufferChange() {
    owner->grabber.NotifyBufferImpact(false);
}

void CKVNPyxenFeatureCtrlDialog::EndBufferChange() {
    owner->log.Information(
        "CKVNPyxenFeatureCtrlDialog::OnTimer(SYNC_TIMEOUT_TIMER_ID): Feature synchronization finished. Calling NotifyBufferImpact.\n");
    owner->grabber.NotifyBufferImpact(true);
}

void CKVNPyxenFeatureCtrlDialog::StartQuietTimer(std::uint32_t milliseconds) {
    if (m_hWnd) { // or the thread would get a timer
        SetTimer(SYNC_TIMEOUT_TIMER_ID, milliseconds, nullptr);
    }
}

void CKVNPyxenFeatureCtrlDialog::StopQuietTimer() {
    KillTimer(SYNC_TIMEOUT_TIMER_ID);
}

void CKVNPyxenFeatureCtrlDialog::OnTimer(UINT_PTR id) {
    if (id == SYNC_TIMEOUT_TIMER_ID) {
        debounce.OnTimer();
    } else {
        CCamCntrlDlgBase::OnTimer(id);
    }
}
