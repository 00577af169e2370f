// Numbers of the applet's resources, for the resource script and for the code.
#pragma once

// Dialogs
#define IDD_MAINDLG 101
#define IDD_UPDATES 259

// Controls of IDD_UPDATES
#define IDC_RESULT_LIST 1000
#define IDC_INTRO 1001
#define IDC_LIST_LABEL 65535

// Menu and commands. No menu item has ID_EXIT; other programs send it. The numbers are part of the
// interface, do not correct.
#define IDR_TRAYMENU 128
#define ID_DISPLAY_HEALTH 32778
#define ID_ABOUT 32779
#define ID_EXIT 32780
#define ID_REASSESS 32781

// The first of four icons, one for each health state
#define IDI_HEALTH 128

// Strings. IDS_HEALTH_TIP and IDS_HEALTH_BALLOON are the first of four, one for each health state.
#define IDS_HEALTH_TIP 128
#define IDS_HEALTH_BALLOON 144
#define IDS_HEALTH_TITLE 148
#define IDS_PAGE_ABOUT 149
#define IDS_PAGE_HEALTH 150
#define IDS_AVAILABLE_COLUMNS 240
#define IDS_AVAILABLE_TIP 256
#define IDS_AVAILABLE_BALLOON 257
#define IDS_PRODUCT 258
#define IDS_INSTALLED_TIP 259
#define IDS_INSTALLED_BALLOON 260
#define IDS_INSTALLED_INTRO 261
#define IDS_AVAILABLE_INTRO 262
#define IDS_INSTALLED_CAPTION 265
#define IDS_INSTALLED_LABEL 266
#define IDS_AVAILABLE_LABEL 267
#define IDS_AVAILABLE_CAPTION 268
#define IDS_OK 269
#define IDS_REBOOT_QUESTION 270
#define IDS_FAILED_TIP 271
#define IDS_FAILED_BALLOON 272
#define IDS_FAILED_CAPTION 273
#define IDS_FAILED_LABEL 274
#define IDS_FAILED_INTRO 275
#define IDS_INSTALLED_COLUMNS 384
#define IDS_FAILED_COLUMNS 400
