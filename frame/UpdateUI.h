// Registers windows whose controls show the state of the program's commands. This program has no
// such controls; the windows are only stored.
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
