#include "Assistant.h"

#include <windows.h>

#include <cstdio>

#include "Waiting.h"

namespace {

constexpr DWORD kRequestLimitMs = 15000;

std::string Folder() {
    char path[MAX_PATH] = "";
    GetEnvironmentVariableA("VH_E2E_ASSISTANT", path, MAX_PATH);
    return path;
}

bool Exists(const std::string& path) {
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace

bool AssistantIsThere() { return !Folder().empty(); }

bool AskAssistant(const std::string& request) {
    if (!AssistantIsThere()) return false;
    const std::string note = Folder() + "\\request";
    const std::string draft = note + ".draft";
    FILE* file = std::fopen(draft.c_str(), "wb");
    if (!file) return false;
    std::fprintf(file, "%s\n", request.c_str());
    std::fclose(file);
    // The request file appears complete, and the assistant deletes it when it has carried it out.
    if (!MoveFileExA(draft.c_str(), note.c_str(), MOVEFILE_REPLACE_EXISTING)) return false;
    return WaitFor([&] { return !Exists(note); }, kRequestLimitMs) && !Exists(note + ".refused");
}
