// Feeds the reader of version resources: a file of any of the three kinds, whatever its bytes say.
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>
#include <windows.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = "/dev/shm/fuzz-version-" + std::to_string(getpid());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    DWORD handle = 0;
    const DWORD blockSize = GetFileVersionInfoSizeA(path.c_str(), &handle);
    std::vector<char> block(blockSize);
    if (blockSize && GetFileVersionInfoA(path.c_str(), handle, blockSize, block.data())) {
        for (const char* query :
             {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo\\040904B0\\ProductName"}) {
            void* value = nullptr;
            UINT length = 0;
            // What is handed out lies within the block: reading it all must be sound.
            if (VerQueryValueA(block.data(), query, &value, &length) && length)
                (void)std::string(static_cast<const char*>(value), length);
        }
    }
    unlink(path.c_str());
    return 0;
}
