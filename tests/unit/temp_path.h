// A file of a test's own in the folder for temporary files, gone when the test ends.
#pragma once

class TempPath {
public:
    explicit TempPath(const std::string& name)
        : m_path(testing::TempDir() + "hlx-" + std::to_string(GetCurrentProcessId()) + "-" + name) {
        std::remove(c_str());
    }
    ~TempPath() { std::remove(c_str()); }
    TempPath(const TempPath&) = delete;
    TempPath& operator=(const TempPath&) = delete;

    const char* c_str() const { return m_path.c_str(); }

    void Write(const std::string& text) const { std::ofstream(m_path, std::ios::binary) << text; }

    std::string Text() const {
        std::ifstream file(m_path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::string m_path;
};
