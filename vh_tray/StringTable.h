// Texts from the program's string table.
#pragma once

#include <windows.h>

#include <string>

// Puts string `id` into `text`. A string that is missing or empty leaves it alone and gives false.
bool LoadText(UINT id, std::string& text);
