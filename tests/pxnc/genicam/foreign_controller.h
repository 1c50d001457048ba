// foreign_controller.h - another program that wants the fake camera
#pragma once

namespace genicam_test {

/// Speaks the camera's control protocol on its own: asks for exclusive control when it is made and
/// gives it back at the end.
class ForeignController {
public:
    ForeignController();
    ~ForeignController();
    ForeignController(const ForeignController&) = delete;
    ForeignController& operator=(const ForeignController&) = delete;

    /// Whether the camera granted it.
    bool HasControl() const { return granted; }

private:
    /// Writes the register that holds who controls the camera; true when the camera agreed.
    bool WriteControl(unsigned value) const;

    int connection = -1;
    bool granted = false;
};

} // namespace genicam_test
