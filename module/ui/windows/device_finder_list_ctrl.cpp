// device_finder_list_ctrl.cpp - the device finder's list of cameras
#include "ui/windows/device_finder_list_ctrl.h"

#include "res/resource.h"
#include "sdk/logger.h"
#include "ui/device_row.h"
#include "ui/windows/small_icon.h"
#include "ui/windows/wide_text.h"

#include <algorithm>

using namespace pyxen;

IMPLEMENT_DYNAMIC(CDeviceFinderListCtrl, CListCtrl)

BEGIN_MESSAGE_MAP(CDeviceFinderListCtrl, CListCtrl)
ON_NOTIFY_REFLECT(NM_DBLCLK, &CDeviceFinderListCtrl::OnDoubleClick)
ON_NOTIFY_REFLECT(NM_RCLICK, &CDeviceFinderListCtrl::OnRightClick)
ON_WM_KEYDOWN()
ON_MESSAGE(WM_GETDLGCODE, &CDeviceFinderListCtrl::OnWhichKeys)
END_MESSAGE_MAP()

namespace {

constexpr int kIconSize = 16;

struct Column {
    const wchar_t* heading;
    int width; ///< pixels at the standard resolution; 0 takes what is left
};

constexpr Column kColumns[kDeviceColumnCount] = {{L"Name", 210},
                                                 {L"Serial Number", 110},
                                                 {L"Interface", 150},
                                                 {L"Transport Layer", 170},
                                                 {L"Transport Layer Vendor", 0}};
constexpr int kColumnCount = static_cast<int>(kDeviceColumnCount);
constexpr int kLeastLastWidth = 100;
constexpr int kStandardResolution = 96;

} // namespace

void CDeviceFinderListCtrl::Initialise(Logger newLog) {
    log = newLog;
    SetExtendedStyle(GetExtendedStyle() | LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
    SetColumns();
    stateImages.Create(kIconSize, kIconSize, ILC_COLOR32 | ILC_MASK, 5, 4);
    for (const UINT id : {IDI_CAMERA_FREE, IDI_CAMERA_IN_USE}) {
        stateImages.Add(LoadIconOfSize(id, kIconSize).get());
    }
    ModifyStyle(0, LVS_SHAREIMAGELISTS); // or the window destroys the images with itself
    SetImageList(&stateImages, LVSIL_STATE);
}

void CDeviceFinderListCtrl::SetColumns() {
    CHeaderCtrl* const header = GetHeaderCtrl();
    while (header->GetItemCount() > kColumnCount) {
        DeleteColumn(kColumnCount);
    }
    for (int index = header->GetItemCount(); index < kColumnCount; ++index) {
        InsertColumn(index, L"");
    }
    // The headings would not fit any more where the system's texts are larger.
    const int resolution = CClientDC(this).GetDeviceCaps(LOGPIXELSX);
    const auto scaled = [&](int width) {
        return ::MulDiv(width, resolution, kStandardResolution);
    };
    CRect client;
    GetClientRect(client);
    int left = client.Width();
    for (int index = 0; index < kColumnCount; ++index) {
        const Column& column = kColumns[index];
        HDITEM item = {};
        item.mask = HDI_TEXT | HDI_WIDTH | HDI_FORMAT;
        item.pszText = const_cast<wchar_t*>(column.heading);
        item.cxy = column.width ? scaled(column.width) : std::max(left, scaled(kLeastLastWidth));
        item.fmt = HDF_LEFT | HDF_STRING;
        header->SetItem(index, &item);
        left -= scaled(column.width);
    }
}

int CDeviceFinderListCtrl::FindRow(int number) const {
    LVFINDINFO wanted = {};
    wanted.flags = LVFI_PARAM;
    wanted.lParam = number;
    return FindItem(&wanted);
}

int CDeviceFinderListCtrl::AddRow(const std::string& id, const char* name) {
    const int row = InsertItem(GetItemCount(), L"");
    SetItemData(row, static_cast<DWORD_PTR>(ids.Add(id)));
    log.Information("CDeviceFinderListCtrl::AddOrUpdateCamera: New camera: %s(id=%s)", name,
                    id.c_str());
    return row;
}

int CDeviceFinderListCtrl::AddOrUpdateCamera(const PxnCameraInfo& camera,
                                             const DeviceConnection& connection) {
    if (!::IsWindow(m_hWnd)) {
        return -1;
    }
    const char* const name = TextOrEmpty(camera.cameraName);
    const std::string id = TextOrEmpty(camera.cameraIdExtended);
    const int number = ids.Find(id);
    const int row = number == DeviceIds::kNone ? AddRow(id, name) : FindRow(number);
    const auto texts = DeviceRowTexts(camera, connection);
    for (int column = 0; column < kColumnCount; ++column) {
        SetItemText(row, column, WideText(texts[static_cast<std::size_t>(column)]).c_str());
    }
    const UINT image = DeviceStateImage(camera.permittedAccess);
    SetItemState(row, INDEXTOSTATEIMAGEMASK(image) | INDEXTOOVERLAYMASK(image),
                 LVIS_STATEIMAGEMASK | LVIS_OVERLAYMASK);
    if (log) {
        const auto access = [&](std::uint32_t bit, const char* text) {
            return camera.permittedAccess & bit ? text : "";
        };
        log.Information(
            "CDeviceFinderListCtrl::AddOrUpdateCamera: state of camera %s is [%s %s %s]", name,
            access(PxnAccessModeFull, "Full"), access(PxnAccessModeRead, "Read"),
            access(PxnAccessModeUnknown, "Unknown"));
    }
    return row;
}

bool CDeviceFinderListCtrl::RemoveCameraFromList(const std::string& id) {
    const int number = ids.Find(id);
    if (number == DeviceIds::kNone) {
        return false;
    }
    for (int row = FindRow(number); row != -1; row = FindRow(number)) {
        DeleteItem(row);
        log.Information("CDeviceFinderListCtrl::RemoveCameraFromList: camera %s was removed.",
                        id.c_str());
    }
    for (int row = 0; row < GetItemCount(); ++row) {
        const auto data = static_cast<int>(GetItemData(row));
        if (data > number) {
            SetItemData(row, static_cast<DWORD_PTR>(data - 1));
        }
    }
    ids.Remove(number);
    return true;
}

const std::string* CDeviceFinderListCtrl::GetCameraId(int row) const {
    return row >= 0 && row < GetItemCount() ? ids.At(static_cast<int>(GetItemData(row))) : nullptr;
}

void CDeviceFinderListCtrl::SelectRow(int row) {
    SetItemState(row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    EnsureVisible(row, FALSE);
}

void CDeviceFinderListCtrl::NotifyParent(WPARAM what) {
    if (notification) {
        GetParent()->SendMessage(notification, what);
    }
}

void CDeviceFinderListCtrl::OnDoubleClick(NMHDR*, LRESULT*) {
    NotifyParent(kChosen);
}

void CDeviceFinderListCtrl::OnRightClick(NMHDR*, LRESULT*) {
    NotifyParent(kAsked);
}

void CDeviceFinderListCtrl::OnKeyDown(UINT key, UINT repetitions, UINT flags) {
    if (key == VK_RETURN) {
        NotifyParent(kChosen);
        return;
    }
    CListCtrl::OnKeyDown(key, repetitions, flags);
}

// Enter comes here instead of pressing the dialog's default button.
LRESULT CDeviceFinderListCtrl::OnWhichKeys(WPARAM key, LPARAM message) {
    const LRESULT usual = Default();
    return message && key == VK_RETURN ? usual | DLGC_WANTMESSAGE : usual;
}
