// loaded_api.h - the SDK access object with the scripted SDK behind it
#pragma once

#include "sdk/pyxen_api_access.h"
#include "tests/module/texts.h"
#include "tests/scripted_sdk/scripted_sdk.h"
#include "tests/support/environment_guard.h"
#include "tests/support/recording_sink.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Loaded and started, with no line and no call recorded yet.
class LoadedApi : public ::testing::Test {
protected:
    void SetUp() override {
        sdk.Reset();
        ASSERT_TRUE(api.Load(nullptr, &sink));
        sink.Take();
        sdk.ClearCalls();
    }

    scripted::Sdk& sdk = scripted::GetSdk();
    support::EnvironmentGuard home{"PYXEN_HOME", scripted::Home()};
    support::RecordingSink sink;
    CPyxenAPIAccess api;
};
