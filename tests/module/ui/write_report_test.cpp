// write_report_test.cpp - what the feature control dialog says of a value that was not written
#include "ui/write_report.h"

#include "tests/module/sdk/loaded_api.h"

using namespace pyxen;

namespace {

class WriteReports : public LoadedApi {
protected:
    /// The lines about a feature named It.
    Texts Report(FeatureType type, WriteStep step) {
        WriteOutcome outcome;
        outcome.step = step;
        outcome.error = PxnErrTimeout;
        ReportWrite({api, scripted::CameraHandle(), "It", type}, outcome, &sink);
        return sink.Take();
    }
    static Texts Line(const std::string& text) {
        return {"0 CKVNPyxenFeatureCtrlDialog::OnValueChanged: " + text +
                " It: Timeout during wait"};
    }
};

TEST_F(WriteReports, NameTheTypeAndWhatFailed) {
    const struct {
        FeatureType type;
        const char* notWritten;
        const char* notReadBack;
        const char* noValue;
    } rows[] = {
        {FeatureType::kInteger, "Failed to write integer value", "Failed to get integer value",
         "0 Failed to get the integer value from the form"},
        {FeatureType::kFloat, "Failed to write floating point value",
         "Failed to get floating point value", "0 Failed to get the float32 value from the form"},
        {FeatureType::kEnumeration, "Failed to write enum value", "Failed to get enum value",
         "0 Failed to get the enum value from the form"},
        {FeatureType::kText, "Failed to write string value", "Failed to get string",
         "0 Failed to get the string value from the form"},
        {FeatureType::kBoolean, "Failed to write boolean value", "Failed to get boolean value",
         "0 Failed to get the boolean value from the form"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Report(row.type, WriteStep::kNotWritten), Line(row.notWritten));
        EXPECT_EQ(Report(row.type, WriteStep::kNotReadBack), Line(row.notReadBack));
        ReportNoValue(row.type, &sink);
        EXPECT_EQ(sink.Take(), Texts{row.noValue});
    }
    EXPECT_EQ(Report(FeatureType::kCommand, WriteStep::kNotWritten), Line("Failed to run command"));
}

TEST_F(WriteReports, AreNoneForWhatWasWrittenOrRefused) {
    EXPECT_EQ(Report(FeatureType::kInteger, WriteStep::kDone), Texts{});
    EXPECT_EQ(Report(FeatureType::kInteger, WriteStep::kRefused), Texts{});
    ReportNoValue(FeatureType::kBytes, &sink);
    EXPECT_EQ(sink.Take(), Texts{});
}

TEST(FailureBoxes, NameWhatRefusedAValueAndWhy) {
    WriteOutcome outcome;
    outcome.step = WriteStep::kRefused;
    outcome.refusal.failingFeature = "/Localdevice/Scripted/LineLength";
    outcome.refusal.reason = "Out of range";
    const BoxText box = FailureBox("Width", outcome);
    EXPECT_EQ(box.text, "The value you entered cannot by applied to feature\n"
                        "/Localdevice/Scripted/LineLength");
    EXPECT_EQ(box.caption, "Out of range");
}

TEST(FailureBoxes, NameTheFeatureThatCouldNotBeSet) {
    WriteOutcome outcome;
    for (const WriteStep step : {WriteStep::kNotWritten, WriteStep::kNotReadBack}) {
        outcome.step = step;
        const BoxText box = FailureBox("Width", outcome);
        EXPECT_EQ(box.text, "An error occured while setting \"Width\".");
        EXPECT_EQ(box.caption, "Setting error");
    }
}

} // namespace
