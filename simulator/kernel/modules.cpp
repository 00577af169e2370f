// The program, the libraries that it loads, and the resources of both.
#include "kernel/modules.h"

#include <dlfcn.h>
#include <link.h>
#include <strings.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <list>
#include <mutex>
#include <optional>

#include "core/last_error.h"
#include "kernel/module_resources.h"

namespace win32 {
namespace {

namespace fs = std::filesystem;

struct Module {
    std::string path;
    void* library = nullptr;  // null: the program, or a module of the subset
    std::vector<BuiltinFunction> functions = {};
    int references = 0;
    std::optional<ResourceFile> resources = {};

    HMODULE Handle() { return reinterpret_cast<HMODULE>(this); }
    bool IsBuiltin() const { return !functions.empty(); }
};

struct ModuleTable {
    std::recursive_mutex mutex;  // a library may load another one while it is loaded
    std::list<Module> modules;

    // The program is the first one.
    ModuleTable() { modules.push_back({.path = fs::read_symlink("/proc/self/exe").string()}); }

    Module* Find(HMODULE handle) {
        if (!handle) return &modules.front();
        for (Module& module : modules)
            if (module.Handle() == handle) return &module;
        return nullptr;
    }

    Module* FindBuiltin(const std::string& name) {
        for (Module& module : modules)
            if (module.IsBuiltin() && !strcasecmp(module.path.c_str(), name.c_str()))
                return &module;
        return nullptr;
    }
};

ModuleTable& Table() {
    static ModuleTable& table = *new ModuleTable;
    return table;
}

std::string FileOf(void* library, const std::string& path) {
    link_map* map = nullptr;
    if (dlinfo(library, RTLD_DI_LINKMAP, &map) == 0 && map->l_name && *map->l_name)
        return map->l_name;
    return path;
}

void* OpenLibrary(const ModuleTable& table, const std::string& path) {
    if (path.find('/') == std::string::npos) {
        const fs::path beside = fs::path(table.modules.front().path).parent_path() / path;
        if (void* library = dlopen(beside.c_str(), RTLD_NOW | RTLD_LOCAL)) return library;
    }
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace

std::string PosixPath(std::string_view path) {
    std::string result(path);
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

void RegisterBuiltinModule(std::string_view name,
                           std::initializer_list<BuiltinFunction> functions) {
    ModuleTable& table = Table();
    const std::lock_guard guard(table.mutex);
    table.modules.push_back({.path = std::string(name), .functions = functions});
}

std::size_t LibraryReferences() {
    ModuleTable& table = Table();
    const std::lock_guard guard(table.mutex);
    std::size_t references = 0;
    for (const Module& module : table.modules)
        references += static_cast<std::size_t>(module.references);
    return references;
}

std::span<const std::byte> FindModuleResource(HMODULE handle, WORD type, WORD id) {
    ModuleTable& table = Table();
    const std::lock_guard guard(table.mutex);
    Module* module = table.Find(handle);
    if (!module) return {};
    if (!module->resources) module->resources.emplace(module->path.c_str());
    return module->resources->Find(type, id);
}

}  // namespace win32

HMODULE LoadLibraryA(LPCSTR name) {
    if (win32::MustFail<"LoadLibraryA">()) return nullptr;
    if (!name || !*name) return win32::Fail(ERROR_INVALID_PARAMETER, HMODULE{});
    const std::string path = win32::PosixPath(name);
    win32::ModuleTable& table = win32::Table();
    const std::lock_guard guard(table.mutex);
    if (win32::Module* builtin = table.FindBuiltin(path)) {
        ++builtin->references;
        return builtin->Handle();
    }
    void* library = win32::OpenLibrary(table, path);
    if (!library) return win32::Fail(ERROR_MOD_NOT_FOUND, HMODULE{});
    for (win32::Module& module : table.modules) {
        if (module.library != library) continue;
        ++module.references;
        return module.Handle();
    }
    table.modules.push_back(
        {.path = win32::FileOf(library, path), .library = library, .references = 1});
    return table.modules.back().Handle();
}

BOOL FreeLibrary(HMODULE handle) {
    win32::ModuleTable& table = win32::Table();
    const std::lock_guard guard(table.mutex);
    win32::Module* module = handle ? table.Find(handle) : nullptr;
    if (!module) return win32::Fail(ERROR_MOD_NOT_FOUND, FALSE);
    if (module->references == 0) return TRUE;  // the program, which stays
    const bool isLast = --module->references == 0;
    if (!module->library) return TRUE;
    dlclose(module->library);
    if (isLast) table.modules.remove_if([&](const win32::Module& each) { return &each == module; });
    return TRUE;
}

FARPROC GetProcAddress(HMODULE handle, LPCSTR name) {
    if (win32::MustFail<"GetProcAddress">()) return nullptr;
    win32::ModuleTable& table = win32::Table();
    const std::lock_guard guard(table.mutex);
    win32::Module* module = table.Find(handle);
    if (!module) return win32::Fail(ERROR_MOD_NOT_FOUND, FARPROC{});
    for (const win32::BuiltinFunction& function : module->functions)
        if (!std::strcmp(function.name, name)) return function.address;
    void* address = module->IsBuiltin()
                        ? nullptr
                        : dlsym(module->library ? module->library : RTLD_DEFAULT, name);
    if (!address) return win32::Fail(ERROR_PROC_NOT_FOUND, FARPROC{});
    return reinterpret_cast<FARPROC>(address);
}

HMODULE GetModuleHandleA(LPCSTR name) {
    if (win32::MustFail<"GetModuleHandleA">()) return nullptr;
    win32::ModuleTable& table = win32::Table();
    const std::lock_guard guard(table.mutex);
    if (!name) return table.modules.front().Handle();
    const std::string path = win32::PosixPath(name);
    if (win32::Module* builtin = table.FindBuiltin(path)) return builtin->Handle();
    for (win32::Module& module : table.modules)
        if (module.path == path || win32::fs::path(module.path).filename() == path)
            return module.Handle();
    return win32::Fail(ERROR_MOD_NOT_FOUND, HMODULE{});
}

DWORD GetModuleFileNameA(HMODULE handle, LPSTR path, DWORD size) {
    if (win32::MustFail<"GetModuleFileNameA">()) return 0;
    win32::ModuleTable& table = win32::Table();
    const std::lock_guard guard(table.mutex);
    const win32::Module* module = table.Find(handle);
    if (!module) return win32::Fail(ERROR_MOD_NOT_FOUND, 0u);
    if (size == 0) return win32::Fail(ERROR_INSUFFICIENT_BUFFER, 0u);
    const std::size_t length = std::min<std::size_t>(module->path.size(), size - 1);
    std::memcpy(path, module->path.data(), length);
    path[length] = '\0';
    if (length < module->path.size()) return win32::Fail(ERROR_INSUFFICIENT_BUFFER, size);
    return static_cast<DWORD>(length);
}
