// The resources of the sample Control Panel applet.
#define IDS_CAPTION 103

#define IDD_SHEET 200
#define IDD_HEALTH 201
#define IDD_ABOUT 202

#define IDC_HEALTH 301
#define IDC_ABOUT 302
