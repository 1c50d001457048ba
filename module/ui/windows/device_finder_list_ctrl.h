// device_finder_list_ctrl.h - the device finder's list of cameras
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"
#include "ui/device_ids.h"

#include <afxcmn.h>

#include <string>

namespace pyxen {
struct DeviceConnection;
}

/// A list view in report mode with one row a camera. A row's item data is the camera's number.
class CDeviceFinderListCtrl : public CListCtrl {
    DECLARE_DYNAMIC(CDeviceFinderListCtrl)
public:
    /// Sets the columns and the state images up. `newLog` may be null.
    void Initialise(pyxen::Logger newLog);
    /// The message that the parent is sent when the user asks for something: its wParam is
    /// kChosen or kAsked.
    void SetNotification(UINT message) { notification = message; }

    static constexpr WPARAM kChosen = 0; ///< a double click or the Enter key
    static constexpr WPARAM kAsked = 1;  ///< a right click

    /// Shows the camera in its row, or in a new last one; answers the row, -1 without a window.
    int AddOrUpdateCamera(const PxnCameraInfo& camera, const pyxen::DeviceConnection& connection);
    /// False when the camera is not listed.
    bool RemoveCameraFromList(const std::string& id);
    /// The identifier of the camera in a row; null when there is no such row.
    const std::string* GetCameraId(int row) const;
    void SelectRow(int row);
    /// -1 when no row is selected.
    int GetSelectedRow() const { return GetNextItem(-1, LVNI_SELECTED); }

protected:
    void OnDoubleClick(NMHDR*, LRESULT*);
    void OnRightClick(NMHDR*, LRESULT*);
    void OnKeyDown(UINT key, UINT repetitions, UINT flags);
    LRESULT OnWhichKeys(WPARAM key, LPARAM message);

    DECLARE_MESSAGE_MAP()

private:
    void SetColumns();
    int FindRow(int number) const;
    int AddRow(const std::string& id, const char* name);
    void NotifyParent(WPARAM what);

    pyxen::Logger log;
    UINT notification = 0;
    pyxen::DeviceIds ids;
    CImageList stateImages;
};
