#include "Dialog.h"

#include <cstring>
#include <gtest/gtest.h>

#include "Waiting.h"

// The record of a message stands at the start of the page, its text in the second half.
struct RemoteList::Page {
    static constexpr SIZE_T kSize = 4096;
    static constexpr SIZE_T kText = 2048;

    explicit Page(HWND window) {
        process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE,
                              ProcessOf(window));
        memory = static_cast<char*>(
            VirtualAllocEx(process, nullptr, kSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        EXPECT_NE(memory, nullptr);
    }
    ~Page() {
        VirtualFreeEx(process, memory, 0, MEM_RELEASE);
        CloseHandle(process);
    }
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    char* Text() const { return memory + kText; }

    void PutText(const std::string& text) const {
        WriteProcessMemory(process, Text(), text.c_str(), text.size() + 1, nullptr);
    }
    std::string TakeText() const {
        char text[kSize - kText] = "";
        ReadProcessMemory(process, Text(), text, sizeof text - 1, nullptr);
        return text;
    }

    // Sends a message whose lParam is a record, and brings the record back.
    template <typename Record>
    LRESULT Send(HWND window, UINT message, WPARAM parameter, Record& record) const {
        WriteProcessMemory(process, memory, &record, sizeof record, nullptr);
        const LRESULT result =
            SendMessageA(window, message, parameter, reinterpret_cast<LPARAM>(memory));
        ReadProcessMemory(process, memory, &record, sizeof record, nullptr);
        return result;
    }

    HANDLE process = nullptr;
    char* memory = nullptr;
};

RemoteList::RemoteList(HWND list) : list_(list), page_(std::make_shared<Page>(list)) {}

HWND RemoteList::Header() const {
    return reinterpret_cast<HWND>(SendMessageA(list_, LVM_GETHEADER, 0, 0));
}

std::string RemoteList::Title(int column) const {
    HDITEMA item{};
    item.mask = HDI_TEXT;
    item.pszText = page_->Text();
    item.cchTextMax = 256;
    page_->PutText("");
    page_->Send(Header(), HDM_GETITEMA, static_cast<WPARAM>(column), item);
    return page_->TakeText();
}

std::string RemoteList::Cell(int row, int column) const {
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = page_->Text();
    item.cchTextMax = 1024;
    page_->PutText("");
    page_->Send(list_, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), item);
    return page_->TakeText();
}

int RemoteList::WidthOf(const std::string& text) const {
    page_->PutText(text);
    return Ask(list_, LVM_GETSTRINGWIDTHA, 0, reinterpret_cast<LPARAM>(page_->Text()));
}

bool RemoteList::HasArrow(int column) const {
    HDITEMA item{};
    item.mask = HDI_FORMAT;
    page_->Send(Header(), HDM_GETITEMA, static_cast<WPARAM>(column), item);
    return item.fmt & (HDF_SORTUP | HDF_SORTDOWN | HDF_BITMAP);
}

void RemoteList::ClickHeader(int column) const {
    RECT place{};
    page_->Send(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(column), place);
    const LPARAM middle =
        MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    SendMessageA(Header(), WM_LBUTTONDOWN, MK_LBUTTON, middle);
    SendMessageA(Header(), WM_LBUTTONUP, 0, middle);
}

RemoteList Dialog::List() const { return RemoteList(Control(1000)); }

bool Dialog::AwaitEnd() const {
    return WaitFor([this] { return !Open(); }, kPromptLimitMs);
}

bool Dialog::Press(int id) const {
    PostMessageA(window_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                 reinterpret_cast<LPARAM>(Control(id)));
    return AwaitEnd();
}

bool Dialog::Close() const {
    PostMessageA(window_, WM_CLOSE, 0, 0);
    return AwaitEnd();
}
