// Gives a test program a registry of its own, which goes when the program ends.
#include <stdlib.h>

#include <filesystem>
#include <string>

namespace {

struct PrivateRegistry {
    std::string folder = (std::filesystem::temp_directory_path() / "registry-XXXXXX").string();

    PrivateRegistry() { setenv("WIN32_REGISTRY", mkdtemp(folder.data()), 1); }
    ~PrivateRegistry() {
        std::error_code error;
        std::filesystem::remove_all(folder, error);
    }
} g_registry;

}  // namespace
