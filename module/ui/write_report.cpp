// write_report.cpp - what the feature control dialog says of a value that was not written
#include "ui/write_report.h"

#include "sdk/format_text.h"
#include "sdk/sdk_error.h"

namespace pyxen {

namespace {

struct WriteWords {
    LogFormat<> noValue;
    NameFormat notWritten;
    NameFormat notReadBack;
};

constexpr TypeTable<WriteWords> kWriteWords = {{
    {"Failed to get the integer value from the form",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write integer value %s",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get integer value %s"},
    {"Failed to get the float32 value from the form",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write floating point value %s",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get floating point value %s"},
    {"Failed to get the enum value from the form",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write enum value %s",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get enum value %s"},
    {"Failed to get the string value from the form",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write string value %s",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get string %s"},
    {"Failed to get the boolean value from the form",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to write boolean value %s",
     "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to get boolean value %s"},
}};

} // namespace

void ReportNoValue(FeatureType type, Logger log) {
    if (const WriteWords* const words = kWriteWords.Find(type)) {
        log.Error(words->noValue);
    }
}

void ReportWrite(const Feature& feature, const WriteOutcome& outcome, Logger log) {
    if (outcome.step != WriteStep::kNotWritten && outcome.step != WriteStep::kNotReadBack) {
        return;
    }
    NameFormat line = "CKVNPyxenFeatureCtrlDialog::OnValueChanged: Failed to run command %s";
    if (const WriteWords* const words = kWriteWords.Find(feature.Type())) {
        line = outcome.step == WriteStep::kNotWritten ? words->notWritten : words->notReadBack;
    }
    ReportSdkError(FormatText(line, feature.Name()).c_str(), outcome.error, log);
}

BoxText FailureBox(const std::string& name, const WriteOutcome& outcome) {
    if (outcome.step == WriteStep::kRefused) {
        return {FormatText("The value you entered cannot by applied to feature\n%s",
                           outcome.refusal.failingFeature.c_str()),
                outcome.refusal.reason};
    }
    return {FormatText("An error occured while setting \"%s\".", name.c_str()), "Setting error"};
}

} // namespace pyxen
