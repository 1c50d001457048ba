// feature_control_editor.cpp - the feature control dialog's editing of the selected feature
#include "grabber/grabber_dialogs.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "res/resource.h"
#include "sdk/logger.h"
#include "ui/windows/cmd_value_view.h"
#include "ui/windows/enum_value_view.h"
#include "ui/windows/feature_control_dialog.h"
#include "ui/windows/float_value_view.h"
#include "ui/windows/sint_value_view.h"
#include "ui/windows/string_value_view.h"
#include "ui/windows/wide_text.h"

namespace {

constexpr const char* kBoolOptions[] = {"False", "True"};

const char* BoolText(bool value) {
    return kBoolOptions[value ? 1 : 0];
}

void LogFailure(Logger log, NameFormat format, const FeatureLeaf& leaf) {
    log.Error(format, leaf.name.c_str());
}

bool Fill(CSintValueView& view, const IntegerForm& form) {
    return view.SetRange(form.min, form.max) && view.SetValue(form.value);
}

bool Fill(CFloatValueView& view, const FloatForm& form) {
    return view.SetRange(form.min, form.max) && view.SetValue(form.value);
}

bool Fill(CEnumValueView& view, const EnumForm& form) {
    return view.SetOptions(form.range.entries.Get(), form.range.count) && form.value &&
           view.SelectOption(form.value);
}

bool Fill(CEnumValueView& view, bool value) {
    return view.SetOptions(kBoolOptions, 2) && view.SelectOption(BoolText(value));
}

bool Fill(CStringValueView& view, const std::string& text) {
    return view.SetText(text.c_str());
}

/// Makes a view for a feature, named but not filled; null when the window could not be made.
template <class View>
std::unique_ptr<View> MakeView(CValueView::IObserver* observer, CWnd* parent, const RECT& rect,
                               const FeatureLeaf& leaf) {
    auto view = std::make_unique<View>();
    if (!view->Create(observer, rect, parent)) {
        return nullptr;
    }
    view->SetFeatureName(leaf.name.c_str());
    return view;
}

} // namespace

// ---- selecting ----

void CKVNPyxenFeatureCtrlDialog::AttrSelected(HTREEITEM item) {
    currentLeaf = LeafOf(item);
    CRect rect;
    container.GetClientRect(rect);
    valueView.reset();
    if (!currentLeaf || !CanAsk()) {
        SetDlgItemText(IDC_DESCRIPTION, TEXT(""));
        LayOut();
        return;
    }
    const FeatureLeaf& leaf = tree.GetLeaves()[*currentLeaf];
    const PxnFeatureInfo* const feature = leaf.cache->Find(leaf.name.c_str());
    if (!feature) {
        log.Error(
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Feature %s is not in the feature cache %s.",
            leaf.name.c_str(), leaf.moduleName.c_str());
        LayOut();
        return;
    }
    description = *feature;
    if (reader.IsWriteable(leaf)) {
        valueView = MakeEditor(leaf, rect);
        if (valueView) {
            valueView->SetUnit(WideText(description.unit ? description.unit : "").c_str());
        } else
            log.Error(
                "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to create attribute edit field");
    }
    std::wstring text = StrictWideText(description.description ? description.description : "");
    const std::wstring range = WideText(reader.RangeText(leaf, description));
    if (!text.empty() && !range.empty()) {
        text += L'\n';
    }
    SetDlgItemText(IDC_DESCRIPTION, (text + range).c_str());
    LayOut();
    if (Tree().EnsureVisible(item)) {
        UpdateVisibleFeatures();
    }
}

std::unique_ptr<CValueView> CKVNPyxenFeatureCtrlDialog::MakeEditor(const FeatureLeaf& leaf,
                                                                   const RECT& rect) {
    switch (description.featureDataType) {
    case PxnFeatureDataInt:
        return MakeIntegerEditor(leaf, rect);
    case PxnFeatureDataFloat:
        return MakeFloatEditor(leaf, rect);
    case PxnFeatureDataEnum:
        return MakeEnumEditor(leaf, rect);
    case PxnFeatureDataBool:
        return MakeBoolEditor(leaf, rect);
    case PxnFeatureDataString:
        return MakeStringEditor(leaf, rect);
    case PxnFeatureDataCommand:
        return MakeCommandEditor(leaf, rect);
    default:
        return nullptr;
    }
}

std::unique_ptr<CValueView> CKVNPyxenFeatureCtrlDialog::MakeIntegerEditor(const FeatureLeaf& leaf,
                                                                          const RECT& rect) {
    const auto form = reader.IntegerToEdit(leaf);
    if (!form) {
        return nullptr;
    }
    auto view = MakeView<CSintValueView>(this, &container, rect, leaf);
    if (!view) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create integer view for feature %s",
            leaf);
        return nullptr;
    }
    if (!Fill(*view, *form)) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set integer range/value on form for feature %s",
            leaf);
        return nullptr;
    }
    return view;
}

std::unique_ptr<CValueView> CKVNPyxenFeatureCtrlDialog::MakeFloatEditor(const FeatureLeaf& leaf,
                                                                        const RECT& rect) {
    const auto form = reader.FloatToEdit(leaf);
    if (!form) {
        return nullptr;
    }
    auto view = MakeView<CFloatValueView>(this, &container, rect, leaf);
    if (!view) {
        LogFailure(
            log, "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create float view for feature %s",
            leaf);
        return nullptr;
    }
    if (!Fill(*view, *form)) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set float range/value on form for feature %s",
            leaf);
        return nullptr;
    }
    return view;
}

std::unique_ptr<CValueView> CKVNPyxenFeatureCtrlDialog::MakeEnumEditor(const FeatureLeaf& leaf,
                                                                       const RECT& rect) {
    const auto form = reader.EnumToEdit(leaf);
    if (!form) {
        return nullptr;
    }
    auto view = MakeView<CEnumValueView>(this, &container, rect, leaf);
    if (!view) {
        LogFailure(
            log, "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create enum view for feature %s",
            leaf);
        return nullptr;
    }
    if (!Fill(*view, *form)) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set enum range/value on form for feature %s",
            leaf);
        return nullptr;
    }
    return view;
}

std::unique_ptr<CValueView> CKVNPyxenFeatureCtrlDialog::MakeBoolEditor(const FeatureLeaf& leaf,
                                                                       const RECT& rect) {
    const auto value = reader.BoolToEdit(leaf);
    if (!value) {
        return nullptr;
    }
    auto view = MakeView<CEnumValueView>(this, &container, rect, leaf);
    if (!view) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create enum view for boolean feature %s",
            leaf);
        return nullptr;
    }
    if (!Fill(*view, *value)) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set boolean range/value on form for feature %s",
            leaf);
        return nullptr;
    }
    return view;
}

std::unique_ptr<CValueView> CKVNPyxenFeatureCtrlDialog::MakeStringEditor(const FeatureLeaf& leaf,
                                                                         const RECT& rect) {
    const auto text = reader.StringToEdit(leaf);
    if (!text) {
        return nullptr;
    }
    auto view = MakeView<CStringValueView>(this, &container, rect, leaf);
    if (!view) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create string view for feature %s",
            leaf);
        return nullptr;
    }
    if (!Fill(*view, *text)) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set string to form for feature %s",
            leaf);
        return nullptr;
    }
    return view;
}

std::unique_ptr<CValueView> CKVNPyxenFeatureCtrlDialog::MakeCommandEditor(const FeatureLeaf& leaf,
                                                                          const RECT& rect) {
    auto view = MakeView<CCmdValueView>(this, &container, rect, leaf);
    if (!view) {
        LogFailure(
            log,
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create command view for feature %s",
            leaf);
    }
    return view;
}

// ---- committing ----

void CKVNPyxenFeatureCtrlDialog::OnValueChanged(bool accepted) {
    if (!currentLeaf || !CanAsk()) {
        return;
    }
    const FeatureLeaf leaf = tree.GetLeaves()[*currentLeaf];
    if (!leaf.cache->GetModuleName() || !leaf.handle) {
        return;
    }
    if (!accepted) {
        RefreshCurrentForm();
        return;
    }
    const auto outcome = Commit(*currentLeaf);
    if (!outcome || outcome->written) {
        return;
    }
    const BoxText box = FeatureWriter::FailureBox(leaf, *outcome);
    // The host may end the dialog while the box runs its message loop.
    const std::weak_ptr<InvalidationReceiver> alive = receiver;
    GrabberDialogs::ShowMessage(m_hWnd, box.text.c_str(), box.caption.c_str(), true, log);
    if (!alive.expired()) {
        RefreshCurrentForm();
    }
}

std::optional<WriteOutcome> CKVNPyxenFeatureCtrlDialog::Commit(std::size_t index) {
    const FeatureLeaf leaf = tree.GetLeaves()[index];
    const auto refreshed = [&](std::optional<WriteOutcome> outcome) {
        // The row of an enumeration is read anew also after a failed write.
        const bool refresh =
            outcome && (outcome->written ||
                        (description.featureDataType == PxnFeatureDataEnum && !outcome->refusal));
        if (refresh) {
            RefreshLeaf(index);
        }
        return outcome;
    };
    switch (description.featureDataType) {
    case PxnFeatureDataInt:
        return refreshed(CommitInteger(leaf));
    case PxnFeatureDataFloat:
        return refreshed(CommitFloat(leaf));
    case PxnFeatureDataEnum:
        return refreshed(CommitEnum(leaf));
    case PxnFeatureDataString:
        return refreshed(CommitString(leaf));
    case PxnFeatureDataBool:
        return refreshed(CommitBool(leaf));
    case PxnFeatureDataCommand:
        return writer.RunCommand(leaf);
    default:
        return std::nullopt;
    }
}

std::optional<WriteOutcome> CKVNPyxenFeatureCtrlDialog::CommitInteger(const FeatureLeaf& leaf) {
    auto* const form = dynamic_cast<CSintValueView*>(valueView.get());
    std::int64_t value = 0;
    if (!form || !form->GetValue(value)) {
        log.Error("Failed to get the integer value from the form");
        return std::nullopt;
    }
    const WriteOutcome outcome = writer.WriteInteger(leaf, value);
    if (outcome.written) {
        form->SetValue(value);
    }
    return outcome;
}

std::optional<WriteOutcome> CKVNPyxenFeatureCtrlDialog::CommitFloat(const FeatureLeaf& leaf) {
    auto* const form = dynamic_cast<CFloatValueView*>(valueView.get());
    double value = 0.0;
    if (!form || !form->GetValue(value)) {
        log.Error("Failed to get the float32 value from the form");
        return std::nullopt;
    }
    const WriteOutcome outcome = writer.WriteFloat(leaf, value);
    if (outcome.written) {
        form->SetValue(value);
    }
    return outcome;
}

std::optional<WriteOutcome> CKVNPyxenFeatureCtrlDialog::CommitEnum(const FeatureLeaf& leaf) {
    auto* const form = dynamic_cast<CEnumValueView*>(valueView.get());
    std::string value;
    if (!form || !form->GetSelection(value)) {
        log.Error("Failed to get the enum value from the form");
        return std::nullopt;
    }
    const WriteOutcome outcome = writer.WriteEnum(leaf, value);
    if (outcome.written) {
        form->SelectOption(value.c_str());
    }
    return outcome;
}

std::optional<WriteOutcome> CKVNPyxenFeatureCtrlDialog::CommitString(const FeatureLeaf& leaf) {
    auto* const form = dynamic_cast<CStringValueView*>(valueView.get());
    std::string value;
    if (!form || !form->GetText(value)) {
        log.Error("Failed to get the string value from the form");
        return std::nullopt;
    }
    const WriteOutcome outcome = writer.WriteString(leaf, value);
    if (outcome.written) {
        form->SetText(value.c_str());
    }
    return outcome;
}

std::optional<WriteOutcome> CKVNPyxenFeatureCtrlDialog::CommitBool(const FeatureLeaf& leaf) {
    auto* const form = dynamic_cast<CEnumValueView*>(valueView.get());
    std::string entry;
    if (!form || !form->GetSelection(entry)) {
        log.Error("Failed to get the boolean value from the form");
        return std::nullopt;
    }
    bool value = entry == BoolText(true);
    const WriteOutcome outcome = writer.WriteBool(leaf, value);
    if (outcome.written) {
        form->SelectOption(BoolText(value));
    }
    return outcome;
}

// ---- reverting ----

void CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm() {
    if (!valueView || !currentLeaf || !CanAsk() ||
        !(description.featureFlags & PxnFeatureFlagWrite)) {
        return;
    }
    const FeatureLeaf& leaf = tree.GetLeaves()[*currentLeaf];
    const auto refresh = [](auto* editor, const auto& form) {
        if (editor && form) {
            Fill(*editor, *form);
        }
    };
    CValueView* const view = valueView.get();
    switch (description.featureDataType) {
    case PxnFeatureDataInt:
        refresh(dynamic_cast<CSintValueView*>(view), reader.IntegerToRefresh(leaf));
        break;
    case PxnFeatureDataFloat:
        refresh(dynamic_cast<CFloatValueView*>(view), reader.FloatToRefresh(leaf));
        break;
    case PxnFeatureDataEnum:
        refresh(dynamic_cast<CEnumValueView*>(view), reader.EnumToRefresh(leaf));
        break;
    case PxnFeatureDataString:
        refresh(dynamic_cast<CStringValueView*>(view), reader.StringToRefresh(leaf));
        break;
    case PxnFeatureDataBool:
        refresh(dynamic_cast<CEnumValueView*>(view), reader.BoolToRefresh(leaf));
        break;
    default:
        break;
    }
}
