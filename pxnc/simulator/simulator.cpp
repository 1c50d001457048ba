// simulator.cpp - everything that lives from the first startup to the last shutdown
#include "pxnc/simulator/simulator.h"

#include "pxnc/simulator/chunk_data.h"
#include "pxnc/simulator/faults.h"
#include "pxnc/simulator/sdk.h"

namespace pxsim {
namespace {

template <typename List>
auto* ById(const List& list, const std::string& id) {
    for (const auto& one : list) {
        if (one->Setup().id == id) {
            return one.get();
        }
    }
    return static_cast<typename List::value_type::pointer>(nullptr);
}

} // namespace

Simulator::Simulator(const Configuration& setup)
    : configuration(setup), system(Texts(), Changes()) {
    for (const TransportLayerConfiguration& layer : configuration.transportLayers) {
        layers.push_back(std::make_unique<TransportLayer>(layer, Texts(), Changes()));
    }
    for (const InterfaceConfiguration& interface : configuration.interfaces) {
        interfaces.push_back(std::make_unique<Interface>(interface, Texts(), Changes()));
    }
    const SharedServices services{Texts(), Changes(), Handles()};
    for (const CameraConfiguration& camera : configuration.cameras) {
        const Interface& interface = *ById(interfaces, camera.interfaceId);
        cameras.push_back(std::make_unique<Camera>(camera, interface.Setup(), services, *this));
    }
}

Simulator::~Simulator() {
    EndThreads();
}

bool Simulator::Start() {
    const std::shared_ptr<void> notOwned; // the modules are members
    Handles().Put(PXN_SYSTEM_HANDLE, {{notOwned, &system}});
    system.AddHandle(PXN_SYSTEM_HANDLE);
    for (auto& layer : layers) {
        layer->SetHandle(Handles().Add({{notOwned, layer.get()}}));
        layer->AddHandle(layer->Handle());
    }
    for (auto& interface : interfaces) {
        const TransportLayer* layer = ById(layers, interface->Setup().transportLayerId);
        interface->SetHandles(Handles().Add({{notOwned, interface.get()}}), layer->Handle());
        interface->AddHandle(interface->Handle());
    }
    for (auto& camera : cameras) {
        const Interface* interface = ById(interfaces, camera->Setup().interfaceId);
        camera->SetTopology(interface->TransportLayerHandle(), interface->Handle());
    }
    return Changes().Start();
}

void Simulator::Stop() {
    delayed.Stop(); // a line that runs still finds the SDK started
    TheSdk().OnStop(*this);
    EndThreads();
}

void Simulator::EndThreads() {
    for (auto& camera : cameras) {
        camera->CloseEngines();
    }
    Changes().Stop();
}

std::vector<PxnTransportLayerInfo> Simulator::ListTransportLayers() {
    std::vector<PxnTransportLayerInfo> infos;
    for (const auto& layer : layers) {
        layer->FillInfo(infos.emplace_back());
    }
    return infos;
}

std::vector<PxnInterfaceInfo> Simulator::ListInterfaces() {
    std::vector<PxnInterfaceInfo> infos;
    for (const auto& interface : interfaces) {
        interface->FillInfo(infos.emplace_back());
    }
    return infos;
}

std::vector<PxnCameraInfo> Simulator::ListCameras() {
    std::vector<PxnCameraInfo> infos;
    for (const auto& camera : cameras) {
        if (camera->IsPlugged()) {
            camera->FillInfo(infos.emplace_back());
        }
    }
    return infos;
}

PxnError Simulator::DescribeCamera(const char* id, PxnCameraInfo& info) {
    const Camera* const camera = FindCamera(id);
    if (!camera || !camera->IsPlugged()) {
        return PxnErrNotFound;
    }
    camera->FillInfo(info);
    return PxnErrSuccess;
}

PxnError Simulator::DescribeCamera(PxnHandle camera, PxnCameraInfo& info) {
    const Camera* const open = CameraOf(camera);
    if (!open) {
        return PxnErrBadHandle;
    }
    open->FillInfo(info);
    return PxnErrSuccess;
}

PxnError Simulator::OpenCamera(const char* id, std::uint32_t accessMode, PxnHandle& camera) {
    Camera* const found = FindCamera(id);
    return found ? found->Open(accessMode, &camera) : PxnError{PxnErrNotFound};
}

PxnError Simulator::CloseCamera(PxnHandle camera) {
    Camera* const open = CameraOf(camera);
    if (!open) {
        return PxnErrBadHandle;
    }
    open->Close(camera);
    return PxnErrSuccess;
}

Camera* Simulator::CameraOf(PxnHandle handle) {
    skeleton::Target target;
    return Handles().Find(handle, target) ? dynamic_cast<Camera*>(target.module.get()) : nullptr;
}

bool Simulator::FindPayload(const PxnFrame& frame, std::uint32_t& payload) const {
    for (const auto& camera : cameras) {
        for (const auto& stream : camera->Streams()) {
            if (stream->Engine().PayloadOf(&frame, payload)) {
                return true;
            }
        }
    }
    return false;
}

PxnError Simulator::AccessChunks(const PxnFrame& frame,
                                 skeleton::FunctionRef<PxnError(PxnHandle)> read) {
    std::uint32_t payload = 0;
    if (!FindPayload(frame, payload)) {
        return PxnErrNotFound;
    }
    if (payload == 0) {
        return PxnErrNoData;
    }
    if (frame.chunkDataPresent == 0) {
        return PxnErrNoChunkData;
    }
    std::vector<ChunkValue> values;
    if (!ReadChunkList(static_cast<const std::uint8_t*>(frame.buffer), payload, values)) {
        return PxnErrParsingChunkData;
    }
    const PxnHandle handle =
        Handles().Add({std::make_shared<ChunkModule>(Texts(), Changes(), values)});
    const PxnError result = read(handle);
    Handles().Remove(handle);
    Changes().UnregisterAll(handle);
    return result;
}

Camera* Simulator::FindCamera(const std::string& id) const {
    for (const auto& camera : cameras) {
        if (camera->HasId(id.c_str())) {
            return camera.get();
        }
    }
    return nullptr;
}

bool Simulator::SetPlugged(Camera& camera, bool plugged) {
    if (!(plugged ? camera.Plug() : camera.Unplug())) {
        return false;
    }
    RaiseCameraEvent(plugged ? "Detected" : "Missing", camera);
    return true;
}

void Simulator::RaiseCameraEvent(const char* type, const Camera& camera) {
    const char* id = camera.ExtendedId();
    const char* feature = Texts().Intern("EventCameraDiscovery");
    Changes().PostWork(PXN_SYSTEM_HANDLE, [this, type, id, feature] {
        system.LatchCameraEvent(type, id);
        return std::vector{feature};
    });
}

bool Simulator::RaiseInterfaceEvent(const char* type, const std::string& interfaceId) {
    if (!ById(interfaces, interfaceId)) {
        return false;
    }
    const char* feature = Texts().Intern("EventInterfaceDiscovery");
    Changes().PostWork(PXN_SYSTEM_HANDLE, [this, type, interfaceId, feature] {
        system.LatchInterfaceEvent(type, interfaceId);
        return std::vector{feature};
    });
    return true;
}

std::string Simulator::LeakReport() {
    std::size_t openHandles = 0;
    std::uint64_t announced = 0;
    for (const auto& camera : cameras) {
        openHandles += camera->OpenHandleCount();
        for (const auto& stream : camera->Streams()) {
            announced += stream->Engine().AnnouncedFrames();
        }
    }
    const std::size_t registrations = Changes().List().size();
    if (openHandles == 0 && announced == 0 && registrations == 0) {
        return {};
    }
    return "left at shutdown: " + std::to_string(openHandles) + " open camera handles, " +
           std::to_string(announced) + " announced frames, " + std::to_string(registrations) +
           " invalidation registrations";
}

const Setting* Simulator::FirstProblem() const {
    const Setting* first = nullptr;
    for (const auto& camera : cameras) {
        for (const Setting& problem : camera->SetupProblems()) {
            if (!first || problem.line < first->line) {
                first = &problem;
            }
        }
    }
    return first;
}

void Simulator::OnScheduledFrame(Camera& sender, std::uint64_t frameId) {
    for (const Faults::ScheduledPlug& one : Faults::Instance().TakeScheduled(frameId)) {
        Camera* camera = one.id.empty() ? &sender : FindCamera(one.id);
        if (camera) {
            SetPlugged(*camera, one.plug);
        }
    }
}

} // namespace pxsim
