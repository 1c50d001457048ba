// kvn_pyxen_device_finder_dialog.cpp - the dialog in which the user picks a camera
#include "ui/windows/kvn_pyxen_device_finder_dialog.h"

#include "res/resource.h"
#include "sdk/logger.h"
#include "sdk/malloc_array.h"
#include "sdk/pyxen_api_access.h"
#include "ui/device_row.h"

#include <algorithm>
#include <span>

using namespace pyxen;

namespace {

constexpr UINT kInterfaceDiscovery = WM_APP + 1; ///< wParam the handle, lParam the feature's name
constexpr UINT kCameraDiscovery = WM_APP + 2;
constexpr UINT kListNotification = WM_APP + 3;

} // namespace

IMPLEMENT_DYNAMIC(CKVNPyxenDeviceFinderDialog, CDialog)

BEGIN_MESSAGE_MAP(CKVNPyxenDeviceFinderDialog, CDialog)
ON_WM_DESTROY()
ON_MESSAGE(kInterfaceDiscovery, &CKVNPyxenDeviceFinderDialog::OnInterfaceDiscovery)
ON_MESSAGE(kCameraDiscovery, &CKVNPyxenDeviceFinderDialog::OnCameraDiscovery)
ON_MESSAGE(kListNotification, &CKVNPyxenDeviceFinderDialog::OnListNotification)
ON_NOTIFY(LVN_ITEMCHANGED, IDC_DEVICE_LIST, &CKVNPyxenDeviceFinderDialog::OnItemChanged)
END_MESSAGE_MAP()

CKVNPyxenDeviceFinderDialog::CKVNPyxenDeviceFinderDialog(CPyxenAPIAccess& newApi, Logger newLog,
                                                         CWnd* parent)
    : CDialog(IDD_DEVICE_FINDER, parent),
      api(newApi),
      log(newLog),
      discovery(newApi),
      icon(LoadSmallIcon(IDI_DEVICE_FINDER)) {}

BOOL CKVNPyxenDeviceFinderDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    SetIcon(icon.get(), FALSE);
    list.SubclassDlgItem(IDC_DEVICE_LIST, this);
    list.SetNotification(kListNotification);
    list.Initialise(log);
    UpdateCameraList();
    FollowDiscovery();
    list.SetFocus();
    return FALSE;
}

void CKVNPyxenDeviceFinderDialog::OnDestroy() {
    discovery.Unregister();
    CDialog::OnDestroy();
}

// A window that is gone gets nothing; the SDK keeps the names until its shutdown.
void CKVNPyxenDeviceFinderDialog::FollowDiscovery() {
    discovery.Register(
        [window = m_hWnd](DeviceDiscovery::Event event, PxnHandle handle, const char* feature) {
            ::PostMessage(window,
                          event == DeviceDiscovery::Event::kInterface ? kInterfaceDiscovery
                                                                      : kCameraDiscovery,
                          reinterpret_cast<WPARAM>(handle), reinterpret_cast<LPARAM>(feature));
        });
}

void CKVNPyxenDeviceFinderDialog::Renew() {
    discovery.Unregister();
    UpdateCameraList();
    FollowDiscovery();
}

LRESULT CKVNPyxenDeviceFinderDialog::OnInterfaceDiscovery(WPARAM handle, LPARAM feature) {
    log.Information("CKVNPyxenDeviceFinderDialog::OnDiscoveryInterfaceEventCallback: handle = %p, "
                    "feature = %s",
                    reinterpret_cast<void*>(handle), reinterpret_cast<const char*>(feature));
    Renew();
    return 0;
}

LRESULT CKVNPyxenDeviceFinderDialog::OnCameraDiscovery(WPARAM handle, LPARAM feature) {
    log.Information("CKVNPyxenDeviceFinderDialog::OnDiscoveryCameraEventCallback: handle = %p, "
                    "feature = %s",
                    reinterpret_cast<void*>(handle), reinterpret_cast<const char*>(feature));
    Renew();
    return 0;
}

void CKVNPyxenDeviceFinderDialog::UpdateCameraList() {
    if (!::IsWindow(list)) {
        return;
    }
    PxnCameraInfo* found = nullptr;
    const std::uint32_t count = api.AllocateAndGetCameraList(&found);
    MallocArray<PxnCameraInfo> owner;
    owner.Adopt(found);
    const std::span<const PxnCameraInfo> cameras(found, count);
    for (const PxnCameraInfo& camera : cameras) {
        const int row = list.AddOrUpdateCamera(camera, ReadDeviceConnection(api, camera, log));
        if (row != -1 && selectedId == TextOrEmpty(camera.cameraIdExtended)) {
            list.SelectRow(row);
        }
    }
    for (int row = 0; row < list.GetItemCount();) {
        const std::string* const shown = list.GetCameraId(row);
        const bool present =
            !shown || std::any_of(cameras.begin(), cameras.end(), [&](const PxnCameraInfo& camera) {
                return *shown == TextOrEmpty(camera.cameraIdExtended);
            });
        if (present || !list.RemoveCameraFromList(std::string(*shown))) {
            ++row;
        }
    }
}

// Only a changed state can be a changed selection. When a camera is removed the later rows get new
// numbers one by one, and until that is done a number may belong to another camera.
void CKVNPyxenDeviceFinderDialog::OnItemChanged(NMHDR* header, LRESULT*) {
    if (!(reinterpret_cast<const NMLISTVIEW*>(header)->uChanged & LVIF_STATE)) {
        return;
    }
    if (const std::string* const id = list.GetCameraId(list.GetSelectedRow())) {
        selectedId = *id;
    }
}

LRESULT CKVNPyxenDeviceFinderDialog::OnListNotification(WPARAM what, LPARAM) {
    if (what == CDeviceFinderListCtrl::kChosen) {
        CDialog::OnOK();
    }
    return 0;
}

void CKVNPyxenDeviceFinderDialog::OnOK() {
    if (::GetFocus() == ::GetDlgItem(m_hWnd, IDOK)) {
        CDialog::OnOK();
    }
}
