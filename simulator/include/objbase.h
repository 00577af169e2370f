// COM, as far as a program that opens web pages needs it.
#pragma once

#include "windef.h"
#include "winerror.h"

HRESULT WINAPI CoInitialize(LPVOID reserved);
void WINAPI CoUninitialize();
