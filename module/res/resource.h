/* resource.h - numbers of the module's dialog templates, controls and icons */
#pragma once

namespace pyxen {

/* Device finder */
#define IDD_DEVICE_FINDER 7000
#define IDC_DEVICE_LIST 7000

/* Feature control */
#define IDD_FEATURE_CONTROL 7001
#define IDC_FEATURE_CLOSE 7001
#define IDC_DESCRIPTION_FRAME 7002
#define IDC_DESCRIPTION 7003
#define IDC_ATTRIBUTE_TREE 4108
#define IDC_VALUE_CONTAINER 4109

/* Value editors; their width is in dialog units */
#define VALUE_FORM_WIDTH 150
#define IDD_CMD_VALUE 7004
#define IDC_CMD_RUN 7005
#define IDD_ENUM_VALUE 7006
#define IDC_ENUM_LIST 7007
#define IDD_FLOAT_VALUE 7008
#define IDD_ANY_VALUE 7009
#define IDC_FLOAT_EDIT 7010
#define IDD_STRING_VALUE 7011
#define IDC_ANY_EDIT 7012
#define IDD_SINT_VALUE 7013
#define IDC_ANY_LIST 7014
#define IDC_ANY_SECOND_LIST 7015
#define IDC_ANY_SLIDER 7017
#define IDC_STRING_EDIT 7018
#define IDC_SINT_SLIDER 7020
#define IDC_SINT_EDIT 7022
#define IDC_VALUE_NAME 7024
#define IDC_VALUE_APPLY 7026
#define IDC_VALUE_REVERT 7030
#define IDC_VALUE_UNIT 7031

/* Serial configuration */
#define IDD_SERIAL_CONFIG 7034
#define IDC_SERIAL_BYTE_SIZE 7035
#define IDC_SERIAL_BAUD 7036
#define IDC_SERIAL_STOP_BITS 7037
#define IDC_SERIAL_DELAY 7038
#define IDC_SERIAL_PORTS 7039
#define IDC_SERIAL_PARITY 7044

/* Icons */
#define IDI_CAMERA_FREE 7019
#define IDI_CAMERA_IN_USE 7021
#define IDI_VALUE_APPLY 7025
#define IDI_VALUE_REVERT 7027
#define IDI_FEATURE_CONTROL 7029
#define IDI_DEVICE_FINDER 7032

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif

} // namespace pyxen
