// The installer's data base of products.
#pragma once

#include "windef.h"

// `product` has room for 39 characters. Both return 0 or an error number.
UINT WINAPI MsiGetProductCodeA(LPCSTR component, LPSTR product);
// `size` is the capacity in characters; it receives the text's length without the final NUL.
UINT WINAPI MsiGetProductInfoA(LPCSTR product, LPCSTR property, LPSTR text, LPDWORD size);
