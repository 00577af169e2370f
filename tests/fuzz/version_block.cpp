// Feeds the reader of version resources: a file of any of the three kinds, whatever its bytes say.
#include <unistd.h>
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace {

// Whether all that is handed out lies within the version block of a file with these bytes.
bool VersionQueriesStayWithin(std::span<const std::byte> bytes) {
    static const std::string path = "/dev/shm/version-" + std::to_string(getpid());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    std::vector<char> block(GetFileVersionInfoSizeA(path.c_str(), nullptr));
    bool allWithin = true;
    if (GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())) {
        for (const char* query :
             {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo\\040904B0\\ProductVersion"}) {
            void* value = nullptr;
            UINT length = 0;
            if (VerQueryValueA(block.data(), query, &value, &length) && length)
                allWithin &= static_cast<char*>(value) + length <= block.data() + block.size();
        }
    }
    unlink(path.c_str());
    return allWithin;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (!VersionQueriesStayWithin(std::as_bytes(std::span(data, size)))) std::abort();
    return 0;
}
