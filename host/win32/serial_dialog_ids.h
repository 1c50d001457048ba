// serial_dialog_ids.h - ids shared by the dialog resource and its code
#pragma once

#define IDD_SERIAL_PORT 101
#define IDC_PORT 1001
#define IDC_BAUD 1002
#define IDC_PARITY 1003
#define IDC_BYTE_SIZE 1004
#define IDC_STOP_BITS 1005
