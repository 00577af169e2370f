// An attribute of an XML element: a name and a value, UTF-8.
#pragma once

#include <string>

class hlxConfAttribute {
public:
    // A null leaves that string empty.
    explicit hlxConfAttribute(const char* name = nullptr, const char* value = nullptr)
        : m_name(name ? name : ""), m_value(value ? value : "") {}
    hlxConfAttribute(const hlxConfAttribute&) = default;
    hlxConfAttribute& operator=(const hlxConfAttribute&) = default;
    hlxConfAttribute(hlxConfAttribute&&) = default;
    hlxConfAttribute& operator=(hlxConfAttribute&&) = default;
    virtual ~hlxConfAttribute() = default;

    void SetName(const char* name) { m_name = name; }
    void SetValue(const char* value) { m_value = value; }

    std::string m_name;
    std::string m_value;
};
