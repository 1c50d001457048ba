#include "pxnc/simulator/simulator.h"

#include "pxnc/simulator/faults.h"

namespace pxsim {
namespace {

template <class List>
auto* ById(const List& list, const std::string& id) {
    for (const auto& one : list) {
        if (one->Setup().id == id) {
            return one.get();
        }
    }
    return static_cast<typename List::value_type::pointer>(nullptr);
}

} // namespace

Simulator::Simulator(const Configuration& setup) : configuration(setup), system(strings, events) {
    for (const TransportLayerConfiguration& layer : configuration.transportLayers) {
        layers.push_back(std::make_unique<TransportLayer>(layer, strings, events));
    }
    for (const InterfaceConfiguration& interface : configuration.interfaces) {
        interfaces.push_back(std::make_unique<Interface>(interface, strings, events));
    }
    const SharedServices services{strings, events, handles, accounting};
    for (const CameraConfiguration& camera : configuration.cameras) {
        const Interface& interface = *ById(interfaces, camera.interfaceId);
        cameras.push_back(std::make_unique<Camera>(camera, interface.Setup(), services, *this));
    }
}

Simulator::~Simulator() {
    Stop();
}

bool Simulator::Start() {
    handles.AddSystem(&system);
    system.AddHandle(PXN_SYSTEM_HANDLE);
    for (auto& layer : layers) {
        layer->SetHandle(handles.Add({layer.get()}));
        layer->AddHandle(layer->Handle());
    }
    for (auto& interface : interfaces) {
        const TransportLayer* layer = ById(layers, interface->Setup().transportLayerId);
        interface->SetHandles(handles.Add({interface.get()}), layer->Handle());
        interface->AddHandle(interface->Handle());
    }
    for (auto& camera : cameras) {
        const Interface* interface = ById(interfaces, camera->Setup().interfaceId);
        camera->SetTopology(interface->TransportLayerHandle(), interface->Handle());
    }
    return events.Start();
}

void Simulator::Stop() {
    for (auto& camera : cameras) {
        for (auto& stream : camera->Streams()) {
            stream->Engine().Close();
        }
    }
    events.Stop();
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
    events.PostEvent(PXN_SYSTEM_HANDLE, strings.Intern("EventCameraDiscovery"),
                     [this, type, id] { system.LatchCameraEvent(type, id); });
}

bool Simulator::RaiseInterfaceEvent(const char* type, const std::string& interfaceId) {
    if (ById(interfaces, interfaceId) == nullptr) {
        return false;
    }
    events.PostEvent(PXN_SYSTEM_HANDLE, strings.Intern("EventInterfaceDiscovery"),
                     [this, type, interfaceId] { system.LatchInterfaceEvent(type, interfaceId); });
    return true;
}

std::string Simulator::LeakReport() const {
    std::size_t openHandles = 0;
    std::uint64_t announced = 0;
    for (const auto& camera : cameras) {
        openHandles += camera->OpenHandleCount();
        for (const auto& stream : camera->Streams()) {
            announced += stream->Engine().Statistics().announced;
        }
    }
    const std::size_t registrations = events.RegistrationCount();
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
            if (first == nullptr || problem.line < first->line) {
                first = &problem;
            }
        }
    }
    return first;
}

void Simulator::OnScheduledFrame(Camera& sender, std::uint64_t frameId) {
    for (const Faults::ScheduledPlug& one : Faults::Instance().TakeScheduled(frameId)) {
        Camera* camera = one.id.empty() ? &sender : FindCamera(one.id);
        if (camera != nullptr) {
            SetPlugged(*camera, one.plug);
        }
    }
}

} // namespace pxsim
