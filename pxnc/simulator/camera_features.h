// camera_features.h - the camera's features, by category
#pragma once

namespace pxsim {

class Camera;
class Module;

void AddDeviceControl(Camera& camera);
void AddImageFormatControl(Camera& camera);
void AddAcquisitionControl(Camera& camera);
void AddTransportLayerControl(Camera& camera);

/// The local device: the host's end of the connection.
void AddLocalDeviceFeatures(Module& localDevice, Camera& camera);

} // namespace pxsim
