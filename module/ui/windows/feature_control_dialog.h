// feature_control_dialog.h - the dialog that shows and edits every feature of the open camera
#pragma once

#include "mivora/cam_cntrl_dlg_base.h"
#include "sdk/logger.h"
#include "sync/feature_writer.h"
#include "ui/buffer_debounce.h"
#include "ui/dialog_layout.h"
#include "ui/feature_reader.h"
#include "ui/feature_registrations.h"
#include "ui/feature_tree.h"
#include "ui/invalidation_receiver.h"
#include "ui/windows/attr_tree_view.h"
#include "ui/windows/container_view.h"
#include "ui/windows/scrolled_text.h"
#include "ui/windows/small_icon.h"
#include "ui/windows/value_view.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CMivoraKVNPyxenClass;

/// The modeless dialog "Camera Feature Control" of a grabber. It shows the modules of the open
/// camera as one tree, edits the selected feature, and follows what changes in the camera.
///
/// A receiver of the host that the dialog notifies may end the grabber, and the window with it. The
/// object lives until the last of its message handlers has returned; these touch nothing of the
/// grabber any more once there is no window.
///
/// User-interface thread only, but for Update and SetAcquisitionMarks.
class CKVNPyxenFeatureCtrlDialog : public CCamCntrlDlgBase,
                                   public std::enable_shared_from_this<CKVNPyxenFeatureCtrlDialog>,
                                   public CAttrTreeView::IObserver,
                                   public CValueView::IObserver,
                                   public CColumnTreeCtrl::INotifyCallback,
                                   private pyxen::BufferDebounce::Actions {
    DECLARE_DYNAMIC(CKVNPyxenFeatureCtrlDialog)
public:
    static constexpr UINT_PTR SYNC_TIMEOUT_TIMER_ID = 1;

    /// Makes the dialog, hidden, for the grabber to own: destroying the result destroys the window.
    /// Null when that failed.
    static std::unique_ptr<ICamCntrlDialog> Open(CMivoraKVNPyxenClass& grabber);
    explicit CKVNPyxenFeatureCtrlDialog(CWnd* parent = nullptr);
    ~CKVNPyxenFeatureCtrlDialog() override;

    /// Hands over the grabber, which outlives the window. Called once, before the window is made.
    void SetOwnerClass(CMivoraKVNPyxenClass& grabber);
    /// As in the base; FALSE without a grabber, too.
    BOOL Create(UINT templateId, CWnd* parent = nullptr) override;

    // ICamCntrlDialog
    void Update(uint32_t mask) override;
    void SetAcquisitionMarks(bool suppressBufferFormat, bool suppressSync) override;
    void Disconnect() override;

    // CAttrTreeView::IObserver
    void AttrSelected(HTREEITEM item) override;
    bool IsAttrReadOnly(HTREEITEM item) const override;
    // CValueView::IObserver
    void OnValueChanged(bool accepted) override;
    // CColumnTreeCtrl::INotifyCallback
    void OnTreeScrolled(int value) override;
    void OnTreeResized(int extent) override;
    void OnTreeExpanded() override;

    /// What the tree has notified last; 0 before it has.
    int GetScrollValue() const { return scrollValue; }
    int GetTreeExtent() const { return treeExtent; }

    /// Follows the values of the features on screen, and no others, as long as the dialog is not
    /// hidden. With a mask, only of those that have all of these PxnFeatureFlag... bits.
    void UpdateVisibleFeatures(std::uint32_t flagMask = 0);

protected:
    using CCamCntrlDlgBase::Create;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void OnCloseButton();
    void OnDestroy();
    void OnSize(UINT type, int width, int height);
    void OnGetMinMaxInfo(MINMAXINFO* info);
    BOOL OnEraseBkgnd(CDC* dc);
    void OnShowWindow(BOOL show, UINT status);
    void OnTimer(UINT_PTR id);
    LRESULT OnInvalidateFeature(WPARAM handle, LPARAM name);
    LRESULT OnInvalidateSyncFeature(WPARAM handle, LPARAM name);
    LRESULT OnInvalidateAnyFeature(WPARAM handle, LPARAM name);
    LRESULT OnInvalidateTimingFeature(WPARAM handle, LPARAM name);
    LRESULT OnModulesChanged(WPARAM, LPARAM);

    DECLARE_MESSAGE_MAP()

private:
    class Owned;

    /// The grabber, and what works with it.
    struct OwnerClass {
        OwnerClass(CMivoraKVNPyxenClass& newGrabber, CKVNPyxenFeatureCtrlDialog& dialog);

        CMivoraKVNPyxenClass& grabber;
        const pyxen::Logger log;
        pyxen::FeatureReader reader;
        pyxen::FeatureWriter writer;
        const std::shared_ptr<pyxen::InvalidationReceiver> receiver;
        pyxen::FeatureRegistrations registrations;
    };

    // BufferDebounce::Actions
    void BeginBufferChange() override;
    void EndBufferChange() override;
    void StartQuietTimer(std::uint32_t milliseconds) override;
    void StopQuietTimer() override;

    // the window
    void CaptureLayout();
    pyxen::FeatureDialogLayout::Places ComputePlaces() const;
    void LayOut();
    pyxen::LayoutRect PlaceOf(int id) const;

    // the tree and what is registered for it
    /// Whether the SDK may be called. The grabber must not be touched without a window.
    bool CanAsk() const;
    bool CanAsk(const FeatureLeaf& leaf) const { return CanAsk() && leaf.IsOpen(); }
    CColumnTreeCtrl& Tree() { return treeView.GetTree(); }
    void ShowModules();
    void ForgetModules();
    void BuildFeatureTree();
    std::vector<std::size_t> FindVisible(std::uint32_t flagMask);
    void DropVisibleFeatures();
    void RegisterSyncInvalidationFeatures();
    void RegisterBufferFormatInvalidationFeatures();
    void RegisterExtNotificationInvalidationFeatures();
    std::optional<std::size_t> LeafOf(HTREEITEM item) const;
    void RefreshLeaf(std::size_t index);

    // the editor
    std::unique_ptr<CValueView> MakeEditor(const pyxen::Feature& feature, const RECT& rect);
    std::optional<pyxen::WriteOutcome> Commit(std::size_t index);
    void RefreshCurrentForm();

    std::optional<OwnerClass> owner; ///< whenever there is a window
    const pyxen::SmallIcon icon;
    pyxen::BufferDebounce debounce;

    std::optional<pyxen::FeatureDialogLayout> layout; ///< once the template's controls stand
    CAttrTreeView treeView;
    CContainerView container;
    pyxen::CScrolledText descriptionText;
    bool wasShown = false;

    pyxen::FeatureTree tree;
    std::vector<HTREEITEM> leafItems; ///< by the leaves of the tree
    std::vector<std::size_t> visible; ///< leaves whose values are followed
    bool followsValues = true;        ///< not while hidden
    int scrollValue = 0;
    int treeExtent = 0;
    std::optional<std::size_t> currentLeaf;
    PxnFeatureInfo description{}; ///< of the current leaf
    std::unique_ptr<CValueView> valueView;
};
