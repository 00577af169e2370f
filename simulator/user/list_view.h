// The state of the report list view and its header.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "user/window.h"

#include <commctrl.h>

namespace user {

struct HeaderItem {
    std::string text;
    int width = 0;
    int format = HDF_STRING;
    HBITMAP bitmap = nullptr;
};

struct HeaderState : ControlState {
    std::vector<HeaderItem> items;
};

struct Row {
    std::vector<std::string> cells;  // no more than were set
    LPARAM parameter = 0;
    UINT state = 0;  // LVIS_...

    const std::string& Cell(int column) const;
};

struct ListViewState : ControlState {
    HWND header = nullptr;
    DWORD extendedStyle = 0;
    std::deque<std::unique_ptr<Row>> rows;
};

// Every character of the lists' font is this wide, in pixels.
constexpr int kCharacterWidth = 6;

}  // namespace user
