# Windows, messages, controls, tray and shell.
target_sources(posix_win32 PRIVATE
    machine/journal.cpp
    src/user/common_controls.cpp
    src/user/controls.cpp
    src/user/desk.cpp
    src/user/dialogs.cpp
    src/user/drawing.cpp
    src/user/header.cpp
    src/user/icons.cpp
    src/user/list_view.cpp
    src/user/menus.cpp
    src/user/message_box.cpp
    src/user/messages.cpp
    src/user/system.cpp
    src/user/template.cpp
    src/user/tray.cpp
    src/user/window_table.cpp
    src/user/windows.cpp)

# The desktop as its user has it: for tests and for the terminal, never for the applet.
add_library(posix_desktop STATIC
    desktop/hands.cpp
    desktop/looks.cpp
    desktop/session.cpp)
target_link_libraries(posix_desktop PUBLIC posix_machine)
house_warnings(posix_desktop)

# Libraries that a program on the desktop loads, such as the agent's applet, find the Win32 API in the
# program: it keeps all of it, and open.
target_link_options(posix_desktop INTERFACE
    -rdynamic LINKER:--whole-archive,$<TARGET_FILE:posix_win32>,--no-whole-archive)

add_subdirectory(desktop/terminal)
