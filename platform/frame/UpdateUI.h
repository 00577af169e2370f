// The place where a window says that its controls follow the state of the program's commands. This
// program has no such commands: its windows are only noted.
#pragma once

#include <windows.h>

#include <vector>

template <class T>
class CUpdateUI {
public:
    void UIAddChildWindowContainer(HWND container) { m_containers.push_back(container); }

protected:
    ~CUpdateUI() = default;

private:
    std::vector<HWND> m_containers;
};
