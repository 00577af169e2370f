#include "updates/InstalledProduct.h"

#include <windows.h>
#include <msi.h>

#include "updates/VersionInfo.h"

namespace {

constexpr char kAgentComponent[] = "{7F3A9C14-2E6B-4D05-B8A2-61C4E97D3F10}";
constexpr DWORD kProductCodeCapacity = 128;
constexpr DWORD kPropertyCapacity = 4096;

std::string ProductProperty(const char* productCode, const char* property) {
    char text[kPropertyCapacity] = "";
    DWORD length = kPropertyCapacity;
    if (MsiGetProductInfoA(productCode, property, text, &length) != ERROR_SUCCESS) return {};
    return text;
}

}  // namespace

InstalledProduct FindInstalledProduct(const char* file) {
    CVersionInfo version;
    if (version.LoadFile(file)) return {version.GetProductName(), version.GetProductVersion()};
    char productCode[kProductCodeCapacity] = "";
    if (MsiGetProductCodeA(kAgentComponent, productCode) != ERROR_SUCCESS) return {};
    return {ProductProperty(productCode, "InstalledProductName"),
            ProductProperty(productCode, "VersionString")};
}
