// An open file of the POSIX system, closed with the object.
#pragma once

#include <unistd.h>

#include <utility>

namespace win32 {

class Descriptor {
public:
    Descriptor() = default;
    // Takes what open() gave, also -1.
    explicit Descriptor(int file) : m_file(file) {}
    Descriptor(Descriptor&& other) noexcept : m_file(std::exchange(other.m_file, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_file, other.m_file);
        return *this;
    }
    ~Descriptor() {
        if (m_file >= 0) close(m_file);
    }

    int Get() const { return m_file; }
    explicit operator bool() const { return m_file >= 0; }

private:
    int m_file = -1;
};

}  // namespace win32
