// The windows whose controls follow the state of the program's commands.
#pragma once

#include <windows.h>

#include <vector>

template <class T>
class CUpdateUI {
public:
    // The window's child controls take part in updates. Its handle is kept until the object goes.
    void UIAddChildWindowContainer(HWND container) { m_containers.push_back(container); }

protected:
    ~CUpdateUI() = default;

private:
    std::vector<HWND> m_containers;
};
