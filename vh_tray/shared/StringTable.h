// Texts from the program's string table.
#pragma once

#include <windows.h>

#include <string>

// Loads string `id` into `text`. False, with `text` unchanged, if the string is missing or empty.
bool LoadText(UINT id, std::string& text);
