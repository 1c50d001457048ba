// camera_features.h - the camera's features, by category
//
// Each function adds the features of one category; they are called in this order, because a
// feature must come after those that select it.
#pragma once

namespace pxsim {

class Camera;
class Module;

void AddDeviceControl(Camera& camera);
void AddImageFormatControl(Camera& camera);
void AddAcquisitionControl(Camera& camera);
void AddAnalogControl(Camera& camera);
void AddLookUpControl(Camera& camera); // look-up tables and colour transformation
void AddDigitalIoControl(Camera& camera);
void AddCounterAndTimerControl(Camera& camera);
void AddEventControl(Camera& camera);
void AddChunkDataControl(Camera& camera);
void AddUserSetControl(Camera& camera);
void AddFileAccessControl(Camera& camera);
void AddSequencerControl(Camera& camera);
void AddActionControl(Camera& camera);
void AddTransportLayerControl(Camera& camera);
/// Features for testing hosts, and as many more as the configuration asks for.
void AddSimulatorControl(Camera& camera);

/// The local device: the host's end of the connection.
void AddLocalDeviceFeatures(Module& localDevice, Camera& camera);

} // namespace pxsim
