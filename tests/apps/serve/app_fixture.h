// app_fixture.h - a served camera, virtual, for tests
#pragma once

#include "apps/common/app_options.h"
#include "apps/common/grabber_maker.h"
#include "apps/common/sdk_control.h"
#include "apps/serve/serve_app.h"
#include "tests/apps/serve/http_client.h"
#include "tests/support/environment_guard.h"
#include "tests/support/no_settling.h"
#include "tests/support/temporary_directory.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>

/// Grabbers of the module that is linked into the test, as many as are wanted: its pauses can be
/// skipped.
class LinkedGrabbers final : public IGrabberMaker {
public:
    LinkedGrabbers();
    ~LinkedGrabbers() override;
    CMivoraGrabber* Create() override;
    void Delete(CMivoraGrabber* grabber) override;
    IMivoraModuleServices* Services(CMivoraGrabber* grabber, std::string& reason) override;

private:
    struct Grabbers;
    const std::unique_ptr<Grabbers> grabbers;
};

/// Two cameras, "Camera A" and "Camera B", of 64 x 48 pixels, which send a hundred frames a second
/// whose brightness rises by one from pixel to pixel and line to line. The program's part runs on a
/// thread of its own.
class ServeAppTest : public testing::Test {
protected:
    ServeAppTest();
    ~ServeAppTest() override;

    /// Serves with these settings, apart from the directory of recordings.
    void Serve(ServeSettings settings = {});
    /// Serves with camera A open and grabbing.
    void ServeGrabbing();
    void EndServing();

    HttpClient Client() const { return HttpClient(port); }
    ClientAnswer Get(const std::string& target) { return Client().Get(target); }
    nlohmann::json GetJson(const std::string& target);
    /// Sends JSON and returns the answer's; the status has to be this one.
    nlohmann::json SendJson(const std::string& method, const std::string& target,
                            const std::string& json = "{}", int status = 200);
    nlohmann::json State() { return GetJson("/api/state"); }
    /// Waits a minute at most.
    void WaitForState(const std::function<bool(const nlohmann::json& state)>& isSo);
    /// Passes a command to the simulator, which must take it.
    void Sdk(const std::string& command);

    const support::TemporaryDirectory directory;
    std::string recordings;
    AppOptions options;
    std::string url;
    ServeApp* app = nullptr; // while it is served

private:
    void RunApp(const ServeSettings& settings);

    const support::NoSettling noSettling;
    const support::EnvironmentGuard home;
    SdkControl sdk;
    LinkedGrabbers maker;
    std::uint16_t port = 0;
    std::string failure;
    platform::Event isServing;
    std::thread thread;
};
