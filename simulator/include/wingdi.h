// Drawing into bitmaps in memory: as much as a header arrow needs.
#pragma once

#include "windef.h"

#define PS_SOLID 0

HDC WINAPI CreateCompatibleDC(HDC context);
BOOL WINAPI DeleteDC(HDC context);
HBITMAP WINAPI CreateCompatibleBitmap(HDC context, int width, int height);
HPEN WINAPI CreatePen(int style, int width, COLORREF color);
HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ object);
BOOL WINAPI DeleteObject(HGDIOBJ object);
BOOL WINAPI Polygon(HDC context, const POINT* points, int count);
