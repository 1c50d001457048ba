// feature_writer.cpp - how the feature control dialog writes a value
#include "ui/feature_writer.h"

#include "sdk/format_text.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

WriteOutcome FeatureWriter::Failed(NameFormat format, const FeatureLeaf& leaf,
                                   PxnError error) const {
    ReportSdkError(FormatText(format, leaf.name.c_str()).c_str(), error, log);
    return {};
}

WriteOutcome FeatureWriter::WriteInteger(const FeatureLeaf& leaf, std::int64_t& value) {
    const char* const name = leaf.name.c_str();
    SyncCheckResult check = sync.IntFeatureCheckSyncPath(leaf.cache, name, value);
    if (!check.ok) {
        return {false, std::move(check)};
    }
    if (const PxnError error = api.PxnFeatureIntSet(leaf.handle, name, value)) {
        return Failed(
            "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write integer value %s", leaf,
            error);
    }
    if (const PxnError error = api.PxnFeatureIntGet(leaf.handle, name, &value)) {
        return Failed("CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get integer value %s",
                      leaf, error);
    }
    return {true, std::nullopt};
}

WriteOutcome FeatureWriter::WriteFloat(const FeatureLeaf& leaf, double& value) {
    const char* const name = leaf.name.c_str();
    SyncCheckResult check = sync.FloatFeatureCheckSyncPath(leaf.cache, name, value);
    if (!check.ok) {
        return {false, std::move(check)};
    }
    if (const PxnError error = api.PxnFeatureFloatSet(leaf.handle, name, value)) {
        return Failed(
            "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write floating point value %s",
            leaf, error);
    }
    if (const PxnError error = api.PxnFeatureFloatGet(leaf.handle, name, &value)) {
        return Failed(
            "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get floating point value %s",
            leaf, error);
    }
    return {true, std::nullopt};
}

WriteOutcome FeatureWriter::WriteEnum(const FeatureLeaf& leaf, std::string& value) {
    const char* const name = leaf.name.c_str();
    SyncCheckResult check = sync.EnumFeatureCheckSyncPath(leaf.cache, name, value.c_str());
    if (!check.ok) {
        return {false, std::move(check)};
    }
    if (const PxnError error = api.PxnFeatureEnumSet(leaf.handle, name, value.c_str())) {
        return Failed("CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write enum value %s",
                      leaf, error);
    }
    const char* entry = nullptr;
    if (const PxnError error = api.PxnFeatureEnumGet(leaf.handle, name, &entry)) {
        return Failed("CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get enum value %s",
                      leaf, error);
    }
    value = entry ? entry : "";
    return {true, std::nullopt};
}

WriteOutcome FeatureWriter::WriteString(const FeatureLeaf& leaf, std::string& value) {
    const char* const name = leaf.name.c_str();
    SyncCheckResult check = sync.StringFeatureCheckSyncPath(leaf.cache, name, value.c_str());
    if (!check.ok) {
        return {false, std::move(check)};
    }
    if (const PxnError error = api.PxnFeatureStringSet(leaf.handle, name, value.c_str())) {
        return Failed("CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write string value %s",
                      leaf, error);
    }
    if (const PxnError error = api.GetStringFeature(leaf.handle, name, value)) {
        return Failed("CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get string %s", leaf,
                      error);
    }
    return {true, std::nullopt};
}

WriteOutcome FeatureWriter::WriteBool(const FeatureLeaf& leaf, bool& value) {
    const char* const name = leaf.name.c_str();
    SyncCheckResult check = sync.BoolFeatureCheckSyncPath(leaf.cache, name, value);
    if (!check.ok) {
        return {false, std::move(check)};
    }
    if (const PxnError error = api.PxnFeatureBoolSet(leaf.handle, name, value ? 1 : 0)) {
        return Failed(
            "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write boolean value %s", leaf,
            error);
    }
    PxnBool held = 0;
    if (const PxnError error = api.PxnFeatureBoolGet(leaf.handle, name, &held)) {
        return Failed("CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get boolean value %s",
                      leaf, error);
    }
    value = held != 0;
    return {true, std::nullopt};
}

WriteOutcome FeatureWriter::RunCommand(const FeatureLeaf& leaf) {
    if (const PxnError error = api.PxnFeatureCommandRun(leaf.handle, leaf.name.c_str())) {
        return Failed("CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to run command %s", leaf,
                      error);
    }
    return {true, std::nullopt};
}

BoxText FeatureWriter::FailureBox(const FeatureLeaf& leaf, const WriteOutcome& outcome) {
    if (outcome.refusal) {
        return {FormatText("The value you entered cannot by applied to feature\n%s",
                           outcome.refusal->failingFeature.c_str()),
                outcome.refusal->reason};
    }
    return {FormatText("An error occured while setting \"%s\".", leaf.name.c_str()),
            "Setting error"};
}
