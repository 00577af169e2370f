// Drawing into bitmaps in memory: as much as a header arrow needs.
#pragma once

#include "windef.h"

#define PS_SOLID 0

HDC WINAPI CreateCompatibleDC(HDC context);
BOOL WINAPI DeleteDC(HDC context);
// A bitmap of 32 bits a pixel, all black.
HBITMAP WINAPI CreateCompatibleBitmap(HDC context, int width, int height);
HPEN WINAPI CreatePen(int style, int width, COLORREF color);
HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ object);
BOOL WINAPI DeleteObject(HGDIOBJ object);
// Fills with the selected brush and draws the outline with the selected pen.
BOOL WINAPI Polygon(HDC context, const POINT* points, int count);
COLORREF WINAPI GetPixel(HDC context, int x, int y);
