// kvn_pyxen_device_finder_dialog.h - the dialog in which the user picks a camera
#pragma once

#include "sdk/logger.h"
#include "ui/device_discovery.h"
#include "ui/windows/device_finder_list_ctrl.h"
#include "ui/windows/small_icon.h"

#include <string>

class CPyxenAPIAccess;

/// Lists the cameras that the SDK knows and follows its discovery events while it is open.
class CKVNPyxenDeviceFinderDialog : public CDialog {
    DECLARE_DYNAMIC(CKVNPyxenDeviceFinderDialog)
public:
    /// `newApi` is valid and outlives the dialog; `newLog` may be null.
    CKVNPyxenDeviceFinderDialog(CPyxenAPIAccess& newApi, pyxen::Logger newLog, CWnd* parent);

    /// The extended identifier of the camera that is selected, or was when it was there last.
    void SetSelectedId(std::string id) { selectedId = std::move(id); }
    const std::string& GetSelectedId() const { return selectedId; }

    BOOL OnInitDialog() override;

protected:
    /// Only the OK button itself ends the dialog; elsewhere Enter leaves it open.
    void OnOK() override;
    void OnDestroy();
    LRESULT OnInterfaceDiscovery(WPARAM handle, LPARAM feature);
    LRESULT OnCameraDiscovery(WPARAM handle, LPARAM feature);
    LRESULT OnListNotification(WPARAM what, LPARAM);
    void OnItemChanged(NMHDR* header, LRESULT* result);

    DECLARE_MESSAGE_MAP()

private:
    void FollowDiscovery();
    void Renew();
    void UpdateCameraList();

    CPyxenAPIAccess& api;
    const pyxen::Logger log;
    pyxen::DeviceDiscovery discovery;
    std::string selectedId;
    pyxen::SmallIcon icon;
    CDeviceFinderListCtrl list;
};
