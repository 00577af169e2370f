// The report list view and its header.
#pragma once

#include "winuser.h"

typedef struct tagINITCOMMONCONTROLSEX {
    DWORD dwSize;
    DWORD dwICC;
} INITCOMMONCONTROLSEX;

#define ICC_LISTVIEW_CLASSES 0x00000001

BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* classes);

#define WC_LISTVIEWA "SysListView32"
#define WC_LISTVIEW WC_LISTVIEWA
#define WC_HEADERA "SysHeader32"

// Header
typedef struct _HD_ITEMA {
    UINT mask;
    int cxy;
    LPSTR pszText;
    HBITMAP hbm;
    int cchTextMax;
    int fmt;
    LPARAM lParam;
    int iImage;
    int iOrder;
    UINT type;
    void* pvFilter;
    UINT state;
} HDITEMA;

typedef struct tagNMHEADERA {
    NMHDR hdr;
    int iItem;
    int iButton;
    HDITEMA* pitem;
} NMHEADERA;

#define HDI_WIDTH 0x0001
#define HDI_TEXT 0x0002
#define HDI_FORMAT 0x0004
#define HDI_BITMAP 0x0010

#define HDF_LEFT 0x0000
#define HDF_SORTDOWN 0x0200
#define HDF_SORTUP 0x0400
#define HDF_IMAGE 0x0800
#define HDF_BITMAP_ON_RIGHT 0x1000
#define HDF_BITMAP 0x2000
#define HDF_STRING 0x4000

#define HDM_FIRST 0x1200
#define HDM_GETITEMCOUNT (HDM_FIRST + 0)
#define HDM_INSERTITEMA (HDM_FIRST + 1)
#define HDM_GETITEMA (HDM_FIRST + 3)
#define HDM_SETITEMA (HDM_FIRST + 4)

#define HDN_FIRST (0U - 300U)
#define HDN_ITEMCLICKA (HDN_FIRST - 2)
#define HDN_ITEMCLICKW (HDN_FIRST - 22)

// List view
typedef struct tagLVITEMA {
    UINT mask;
    int iItem;
    int iSubItem;
    UINT state;
    UINT stateMask;
    LPSTR pszText;
    int cchTextMax;
    int iImage;
    LPARAM lParam;
    int iIndent;
    int iGroupId;
    UINT cColumns;
    UINT* puColumns;
    int* piColFmt;
    int iGroup;
} LVITEMA;

typedef struct tagLVCOLUMNA {
    UINT mask;
    int fmt;
    int cx;
    LPSTR pszText;
    int cchTextMax;
    int iSubItem;
    int iImage;
    int iOrder;
    int cxMin;
    int cxDefault;
    int cxIdeal;
} LVCOLUMNA;

typedef struct tagNMLISTVIEW {
    NMHDR hdr;
    int iItem;
    int iSubItem;
    UINT uNewState;
    UINT uOldState;
    UINT uChanged;
    POINT ptAction;
    LPARAM lParam;
} NMLISTVIEW;

typedef int(CALLBACK* PFNLVCOMPARE)(LPARAM, LPARAM, LPARAM);

#define LVS_REPORT 0x0001
#define LVS_SINGLESEL 0x0004
#define LVS_SHOWSELALWAYS 0x0008
#define LVS_ALIGNLEFT 0x0800
#define LVS_EX_FULLROWSELECT 0x00000020
#define LVS_EX_DOUBLEBUFFER 0x00010000

#define LVCF_FMT 0x0001
#define LVCF_WIDTH 0x0002
#define LVCF_TEXT 0x0004
#define LVCF_SUBITEM 0x0008
#define LVCFMT_LEFT 0x0000

#define LVIF_TEXT 0x00000001
#define LVIF_PARAM 0x00000004
#define LVIF_STATE 0x00000008
#define LVIS_FOCUSED 0x0001
#define LVIS_SELECTED 0x0002

#define LVM_FIRST 0x1000
#define LVM_GETITEMCOUNT (LVM_FIRST + 4)
#define LVM_GETITEMA (LVM_FIRST + 5)
#define LVM_SETITEMA (LVM_FIRST + 6)
#define LVM_INSERTITEMA (LVM_FIRST + 7)
#define LVM_DELETEALLITEMS (LVM_FIRST + 9)
#define LVM_GETSTRINGWIDTHA (LVM_FIRST + 17)
#define LVM_ENSUREVISIBLE (LVM_FIRST + 19)
#define LVM_INSERTCOLUMNA (LVM_FIRST + 27)
#define LVM_SETCOLUMNWIDTH (LVM_FIRST + 30)
#define LVM_GETHEADER (LVM_FIRST + 31)
#define LVM_SETITEMSTATE (LVM_FIRST + 43)
#define LVM_GETITEMTEXTA (LVM_FIRST + 45)
#define LVM_SORTITEMS (LVM_FIRST + 48)
#define LVM_SETEXTENDEDLISTVIEWSTYLE (LVM_FIRST + 54)
#define LVM_GETEXTENDEDLISTVIEWSTYLE (LVM_FIRST + 55)

#define LVN_FIRST (0U - 100U)
#define LVN_DELETEITEM (LVN_FIRST - 3)
#define LVN_DELETEALLITEMS (LVN_FIRST - 4)
