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
#include "ui/write_report.h"

using namespace pyxen;

namespace {

constexpr const char* kBoolOptions[] = {"False", "True"};

struct EditorWords {
    NameFormat notMade;
    NameFormat notFilled;
};

constexpr TypeTable<EditorWords> kEditorWords = {{
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create integer view for feature %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set integer range/value on form for feature %s"},
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create float view for feature %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set float range/value on form for feature %s"},
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create enum view for feature %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set enum range/value on form for feature %s"},
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create string view for feature %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set string to form for feature %s"},
    {"CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create enum view for boolean feature %s",
     "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could set boolean range/value on form for feature %s"},
}};

/// Null for types without an editor.
std::unique_ptr<CValueView> NewView(FeatureType type) {
    switch (type) {
    case FeatureType::kInteger:
        return std::make_unique<CSintValueView>();
    case FeatureType::kFloat:
        return std::make_unique<CFloatValueView>();
    case FeatureType::kEnumeration:
    case FeatureType::kBoolean:
        return std::make_unique<CEnumValueView>();
    case FeatureType::kText:
        return std::make_unique<CStringValueView>();
    case FeatureType::kCommand:
        return std::make_unique<CCmdValueView>();
    default:
        return nullptr;
    }
}

/// Shows a value in the editor of its type, after its range where that is given.
bool ShowValue(CValueView& view, const FeatureValue& value, const FeatureRange* range = nullptr) {
    const auto select = [&](const char* const* options, std::size_t count, const char* entry) {
        auto* const form = dynamic_cast<CEnumValueView*>(&view);
        return form && (!range || form->SetOptions(options, static_cast<std::uint32_t>(count))) &&
               entry && form->SelectOption(entry);
    };
    return value.Visit(Overloaded{
        [&](std::int64_t number) {
            auto* const form = dynamic_cast<CSintValueView*>(&view);
            return form &&
                   (!range || form->SetRange(range->integers.least, range->integers.most)) &&
                   form->SetValue(number);
        },
        [&](double number) {
            auto* const form = dynamic_cast<CFloatValueView*>(&view);
            return form && (!range || form->SetRange(range->floats.least, range->floats.most)) &&
                   form->SetValue(number);
        },
        [&](const EnumEntry& entry) {
            return select(range ? range->entries.data() : nullptr,
                          range ? range->entries.size() : 0, entry.name);
        },
        [&](bool state) { return select(kBoolOptions, 2, kBoolOptions[state ? 1 : 0]); },
        [&](const std::string& text) {
            auto* const form = dynamic_cast<CStringValueView*>(&view);
            return form && form->SetText(text.c_str());
        },
        [](const FeatureBytes&) {
            return false;
        }});
}

template <typename View, typename Number>
std::optional<FeatureValue> TakeNumber(const CValueView* view) {
    const auto* const form = dynamic_cast<const View*>(view);
    Number number{};
    return form && form->GetValue(number) ? std::optional<FeatureValue>(number) : std::nullopt;
}

/// What the editor of a type holds. An entry's name is stored in `text`.
std::optional<FeatureValue> TakeValue(const CValueView* view, FeatureType type, std::string& text) {
    switch (type) {
    case FeatureType::kInteger:
        return TakeNumber<CSintValueView, std::int64_t>(view);
    case FeatureType::kFloat:
        return TakeNumber<CFloatValueView, double>(view);
    case FeatureType::kEnumeration:
    case FeatureType::kBoolean: {
        const auto* const form = dynamic_cast<const CEnumValueView*>(view);
        if (!form || !form->GetSelection(text)) {
            return std::nullopt;
        }
        return type == FeatureType::kBoolean ? FeatureValue(text == kBoolOptions[1])
                                             : FeatureValue(EnumEntry{text.c_str()});
    }
    case FeatureType::kText: {
        const auto* const form = dynamic_cast<const CStringValueView*>(view);
        return form && form->GetText(text) ? std::optional<FeatureValue>(text) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
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
    const PxnFeatureInfo* const info = leaf.cache->Find(leaf.name.c_str());
    if (!info) {
        owner->log.Error(
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Feature %s is not in the feature cache %s.",
            leaf.name.c_str(), leaf.moduleName.c_str());
        LayOut();
        return;
    }
    if (!CanAsk(leaf)) {
        LayOut();
        return;
    }
    description = *info;
    const Feature feature = leaf.In(owner->grabber.Api(), description);
    bool readable = false;
    bool writable = false;
    feature.Access(readable, writable);
    if (writable) {
        valueView = MakeEditor(feature, rect);
        if (valueView) {
            valueView->SetUnit(WideText(description.unit ? description.unit : "").c_str());
        } else
            owner->log.Error(
                "CKVNPyxenFeatureCtrlDialog::AttrSelected: Failed to create attribute edit field");
    }
    std::wstring text = StrictWideText(description.description ? description.description : "");
    const std::wstring range = WideText(owner->reader.RangeText(feature, description.unit));
    if (!text.empty() && !range.empty()) {
        text += L'\n';
    }
    SetDlgItemText(IDC_DESCRIPTION, (text + range).c_str());
    LayOut();
    if (Tree().EnsureVisible(item)) {
        UpdateVisibleFeatures();
    }
}

std::unique_ptr<CValueView> CKVNPyxenFeatureCtrlDialog::MakeEditor(const Feature& feature,
                                                                   const RECT& rect) {
    const bool isCommand = feature.Type() == FeatureType::kCommand;
    const std::optional<FeatureForm> form =
        isCommand ? std::nullopt : owner->reader.ToEdit(feature);
    if (!form && !isCommand) {
        return nullptr;
    }
    const EditorWords* const words = kEditorWords.Find(feature.Type());
    auto view = NewView(feature.Type());
    if (!view->Create(this, rect, &container)) {
        constexpr NameFormat kNoCommand =
            "CKVNPyxenFeatureCtrlDialog::AttrSelected: Could create command view for feature %s";
        owner->log.Error(words ? words->notMade : kNoCommand, feature.Name());
        return nullptr;
    }
    view->SetFeatureName(feature.Name());
    if (form && !ShowValue(*view, form->value, &form->range)) {
        owner->log.Error(words->notFilled, feature.Name());
        return nullptr;
    }
    return view;
}

// ---- committing ----

void CKVNPyxenFeatureCtrlDialog::OnValueChanged(bool accepted) {
    if (!currentLeaf || !CanAsk()) {
        return;
    }
    const FeatureLeaf leaf = tree.GetLeaves()[*currentLeaf];
    if (!CanAsk(leaf) || !leaf.handle) {
        return;
    }
    if (!accepted) {
        RefreshCurrentForm();
        return;
    }
    const auto outcome = Commit(*currentLeaf);
    if (!outcome || outcome->step == WriteStep::kDone) {
        return;
    }
    const BoxText box = FailureBox(leaf.name, *outcome);
    // The host may end the dialog while the box runs its message loop.
    const std::weak_ptr<CKVNPyxenFeatureCtrlDialog> self = weak_from_this();
    grabber_dialogs::ShowMessage(m_hWnd, box.text.c_str(), box.caption.c_str(), true, owner->log);
    if (const auto alive = self.lock()) {
        RefreshCurrentForm();
    }
}

std::optional<WriteOutcome> CKVNPyxenFeatureCtrlDialog::Commit(std::size_t index) {
    const FeatureLeaf leaf = tree.GetLeaves()[index];
    const Feature feature = leaf.In(owner->grabber.Api(), description);
    WriteOutcome outcome;
    if (feature.Type() == FeatureType::kCommand) {
        outcome.error = feature.Run();
        outcome.step = outcome.error ? WriteStep::kNotWritten : WriteStep::kDone;
        ReportWrite(feature, outcome, owner->log);
        return outcome;
    }
    std::string text;
    std::optional<FeatureValue> value = TakeValue(valueView.get(), feature.Type(), text);
    if (!value) {
        ReportNoValue(feature.Type(), owner->log);
        return std::nullopt;
    }
    outcome = owner->writer.Write(*leaf.cache, feature, *value);
    ReportWrite(feature, outcome, owner->log);
    const bool done = outcome.step == WriteStep::kDone;
    if (done) {
        ShowValue(*valueView, *value);
    }
    // The row of an enumeration is read anew also after a failed write.
    if (done ||
        (feature.Type() == FeatureType::kEnumeration && outcome.step != WriteStep::kRefused)) {
        RefreshLeaf(index);
    }
    return outcome;
}

// ---- reverting ----

void CKVNPyxenFeatureCtrlDialog::RefreshCurrentForm() {
    if (!valueView || !currentLeaf || !CanAsk(tree.GetLeaves()[*currentLeaf]) ||
        !(description.featureFlags & PxnFeatureFlagWrite)) {
        return;
    }
    const FeatureLeaf& leaf = tree.GetLeaves()[*currentLeaf];
    if (const auto form = owner->reader.ToRefresh(leaf.In(owner->grabber.Api(), description))) {
        ShowValue(*valueView, form->value, &form->range);
    }
}
