// feature_control_tree.cpp - the feature control dialog's rows and what is registered for them
#include "grabber/mivora_kvn_pyxen_class.h"
#include "res/resource.h"
#include "sdk/logger.h"
#include "ui/feature_value_text.h"
#include "ui/visible_change.h"
#include "ui/windows/feature_control_dialog.h"
#include "ui/windows/wide_text.h"

#include <algorithm>

using namespace pyxen;

namespace {

/// Keeps a window from drawing while many of its rows change.
class WithoutRedraw {
public:
    explicit WithoutRedraw(CWnd& window) : quiet(window) { quiet.SetRedraw(FALSE); }
    ~WithoutRedraw() {
        quiet.SetRedraw(TRUE);
        quiet.Invalidate(FALSE);
    }
    WithoutRedraw(const WithoutRedraw&) = delete;
    WithoutRedraw& operator=(const WithoutRedraw&) = delete;

private:
    CWnd& quiet;
};

} // namespace

void CKVNPyxenFeatureCtrlDialog::ShowModules() {
    if (!treeView.m_hWnd || !CanAsk()) {
        return;
    }
    BuildFeatureTree();
    UpdateVisibleFeatures();
    RegisterSyncInvalidationFeatures();
    RegisterBufferFormatInvalidationFeatures();
    RegisterExtNotificationInvalidationFeatures();
}

void CKVNPyxenFeatureCtrlDialog::ForgetModules() {
    owner->registrations.UnregisterAll(InvalidationKind::kSync);
    owner->registrations.UnregisterAll(InvalidationKind::kBufferFormat);
    owner->registrations.UnregisterAll(InvalidationKind::kTiming);
    DropVisibleFeatures();
    if (valueView && ::IsChild(valueView->m_hWnd, ::GetFocus())) {
        Tree().SetFocus();
    }
    valueView.reset();
    currentLeaf.reset();
    SetDlgItemText(IDC_DESCRIPTION, TEXT(""));
    tree.Clear();
    leafItems.clear();
    if (!treeView.m_hWnd) {
        return;
    }
    const WithoutRedraw quiet(Tree());
    const HTREEITEM root = Tree().GetRootItem();
    while (const HTREEITEM module = Tree().GetChildItem(root)) {
        Tree().DeleteItem(module);
    }
}

void CKVNPyxenFeatureCtrlDialog::BuildFeatureTree() {
    tree.Clear();
    leafItems.clear();
    for (uint32_t index = 0; index < owner->grabber.GetNumFeatureCaches(); ++index) {
        tree.AddModule(*owner->grabber.GetFeatureCache(index));
    }
    const WithoutRedraw quiet(Tree());
    const HTREEITEM root = Tree().GetRootItem();
    std::vector<HTREEITEM> items;
    items.reserve(tree.GetRows().size());
    leafItems.resize(tree.GetLeaves().size());
    for (const FeatureTree::Row& row : tree.GetRows()) {
        std::wstring text = WideText(row.text);
        TVINSERTSTRUCT insert = {};
        insert.hParent = row.parent == FeatureTree::kNone ? root : items[row.parent];
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT | TVIF_PARAM;
        insert.item.pszText = text.data();
        // 0 stands for no feature.
        insert.item.lParam = row.leaf == FeatureTree::kNone ? 0 : static_cast<LPARAM>(row.leaf + 1);
        items.push_back(Tree().InsertItem(&insert));
        if (row.leaf != FeatureTree::kNone) {
            leafItems[row.leaf] = items.back();
        }
    }
    Tree().SortChildren(root);
    Tree().SelectItem(Tree().GetChildItem(root));
    Tree().Expand(root, TVE_EXPAND);
    for (HTREEITEM module = Tree().GetChildItem(root); module;
         module = Tree().GetNextSiblingItem(module)) {
        Tree().Expand(module, TVE_EXPAND);
    }
    Tree().SelectItem(root);
}

std::optional<std::size_t> CKVNPyxenFeatureCtrlDialog::LeafOf(HTREEITEM item) const {
    const auto index = const_cast<CKVNPyxenFeatureCtrlDialog*>(this)->Tree().GetItemData(item);
    return index == 0 || index > tree.GetLeaves().size() ? std::nullopt
                                                         : std::optional<std::size_t>(index - 1);
}

bool CKVNPyxenFeatureCtrlDialog::IsAttrReadOnly(HTREEITEM item) const {
    const auto index = LeafOf(item);
    if (!index || !CanAsk(tree.GetLeaves()[*index])) {
        return false;
    }
    const FeatureLeaf& leaf = tree.GetLeaves()[*index];
    const Feature feature(owner->grabber.Api(), leaf.handle, leaf.name.c_str(),
                          FeatureType::kUnknown);
    bool readable = false;
    bool writable = false;
    return feature.Access(readable, writable) == PxnErrSuccess && !writable;
}

void CKVNPyxenFeatureCtrlDialog::RefreshLeaf(std::size_t index) {
    const FeatureLeaf& leaf = tree.GetLeaves()[index];
    if (!leaf.cache || !leaf.cache->GetModuleName()) {
        owner->log.Error(
            "CKVNPyxenFeatureCtrlDialog::RefreshLeaf: Feature %s has no valid feature cache",
            leaf.name.c_str());
        return;
    }
    const PxnFeatureInfo* const feature = leaf.cache->Find(leaf.name.c_str());
    if (!feature) {
        owner->log.Error(
            "CKVNPyxenFeatureCtrlDialog::RefreshLeaf: Feature %s is not in the feature cache",
            leaf.name.c_str());
        return;
    }
    if (!CanAsk(leaf)) {
        return;
    }
    const std::string text =
        leaf.name + "\t" + FormatFeatureValue(leaf.In(owner->grabber.Api(), *feature));
    Tree().SetItemText(leafItems[index], WideText(text).c_str());
}

// ---- what is on screen ----

void CKVNPyxenFeatureCtrlDialog::OnTreeScrolled(int value) {
    scrollValue = value;
    UpdateVisibleFeatures();
}

void CKVNPyxenFeatureCtrlDialog::OnTreeResized(int extent) {
    treeExtent = extent;
    UpdateVisibleFeatures();
}

void CKVNPyxenFeatureCtrlDialog::OnTreeExpanded() {
    UpdateVisibleFeatures();
}

// In the order of the leaves, like everything that is registered.
std::vector<std::size_t> CKVNPyxenFeatureCtrlDialog::FindVisible(std::uint32_t flagMask) {
    std::vector<std::size_t> found;
    CRect client;
    Tree().GetClientRect(client);
    CRect row;
    for (HTREEITEM item = Tree().GetNextItem(nullptr, TVGN_FIRSTVISIBLE);
         item && Tree().GetItemRect(item, row, FALSE) && row.top < client.bottom;
         item = Tree().GetNextItem(item, TVGN_NEXTVISIBLE)) {
        const auto leaf = LeafOf(item);
        if (leaf && row.top >= 0 && (tree.GetLeaves()[*leaf].flags & flagMask) == flagMask) {
            found.push_back(*leaf);
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

void CKVNPyxenFeatureCtrlDialog::UpdateVisibleFeatures(std::uint32_t flagMask) {
    if (!followsValues || !CanAsk()) {
        return;
    }
    std::vector<std::size_t> now = FindVisible(flagMask);
    const std::vector<FeatureLeaf>& leaves = tree.GetLeaves();
    const VisibleChange change = CompareVisible(leaves, visible, now);
    for (const std::size_t index : change.appeared) {
        PostMessage(WM_FEATURE_UPDATE, reinterpret_cast<WPARAM>(leaves[index].handle),
                    reinterpret_cast<LPARAM>(leaves[index].sdkName));
    }
    for (const std::size_t index : change.vanished) {
        owner->registrations.Unregister(InvalidationKind::kValue, leaves[index]);
    }
    for (const std::size_t index : change.appeared) {
        owner->registrations.Register(InvalidationKind::kValue, leaves[index]);
    }
    visible = std::move(now);
}

void CKVNPyxenFeatureCtrlDialog::DropVisibleFeatures() {
    owner->registrations.UnregisterAll(InvalidationKind::kValue);
    visible.clear();
}

// ---- what is followed all the time ----

void CKVNPyxenFeatureCtrlDialog::RegisterSyncInvalidationFeatures() {
    for (const FeatureLeaf& leaf : tree.GetLeaves()) {
        if (owner->grabber.SyncRules().FindSyncEntry(leaf.moduleName.c_str(), leaf.name.c_str())) {
            owner->registrations.Register(InvalidationKind::kSync, leaf);
        }
    }
}

void CKVNPyxenFeatureCtrlDialog::RegisterBufferFormatInvalidationFeatures() {
    for (const FeatureLeaf& leaf : tree.GetLeaves()) {
        if (leaf.triggersRestart) {
            owner->registrations.Register(InvalidationKind::kBufferFormat, leaf);
        }
    }
}

void CKVNPyxenFeatureCtrlDialog::RegisterExtNotificationInvalidationFeatures() {
    for (const FeatureLeaf& leaf : tree.GetLeaves()) {
        if (leaf.name == "ExposureTime" || leaf.name == "AcquisitionFrameRate") {
            owner->registrations.Register(InvalidationKind::kTiming, leaf);
        }
    }
}
