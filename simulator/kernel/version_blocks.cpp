// Version blocks: a tree of nodes with UTF-16 keys.
//
// A node is its length, the length of its value, the kind of the value (1: text, and its length is
// in characters), its key, the value and the nodes below it, each from a multiple of four on. The
// copy that a caller gets is the tree and, behind it, room for each text in narrow characters:
// three bytes for every two of the tree, so that no text's room overlaps another's.
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "core/last_error.h"
#include "kernel/module_resources.h"
#include "kernel/modules.h"
#include "kernel/narrow_text.h"
#include "winver.h"

namespace {

constexpr WORD kVersionType = 16;
constexpr WORD kVersionId = 1;
constexpr std::size_t kHeaderSize = 6;

std::size_t Aligned4(std::size_t offset) { return (offset + 3) & ~std::size_t{3}; }

WORD WordAt(const std::byte* block, std::size_t offset) {
    WORD value;
    std::memcpy(&value, block + offset, sizeof value);
    return value;
}

std::size_t NarrowRoomAt(std::size_t treeSize, std::size_t offset) {
    return Aligned4(treeSize) + offset / 2 * 3;
}

// Room for the last text's NUL included.
std::size_t CopySize(std::size_t treeSize) { return NarrowRoomAt(treeSize, treeSize) + 1; }

// The text from `start` up to its NUL, or up to `end` if it has none.
std::string TextAt(const std::byte* block, std::size_t start, std::size_t end) {
    std::u16string text;
    for (std::size_t at = start; at + 2 <= end; at += 2) {
        const WORD unit = WordAt(block, at);
        if (unit == 0) break;
        text.push_back(unit);
    }
    return win32::NarrowText(text);
}

struct Node {
    std::size_t start;
    std::size_t end;
    std::size_t value;
    std::size_t valueEnd;
    bool isText;
    std::string key;

    std::size_t FirstChild() const { return Aligned4(valueEnd); }
};

// The node at `start`, which has to lie before `limit`.
std::optional<Node> ReadNode(const std::byte* block, std::size_t start, std::size_t limit) {
    if (start + kHeaderSize > limit) return std::nullopt;
    const std::size_t size = WordAt(block, start);
    if (size < kHeaderSize || size > limit - start) return std::nullopt;
    Node node{
        .start = start, .end = start + size, .value = 0, .valueEnd = 0, .isText = false, .key = {}};
    std::size_t keyEnd = start + kHeaderSize;
    while (keyEnd + 2 <= node.end && WordAt(block, keyEnd) != 0) keyEnd += 2;
    node.key = TextAt(block, start + kHeaderSize, keyEnd);
    node.isText = WordAt(block, start + 4) == 1;
    const std::size_t valueSize = std::size_t{WordAt(block, start + 2)} * (node.isText ? 2 : 1);
    node.value = std::min(Aligned4(keyEnd + 2), node.end);
    node.valueEnd = std::min(node.value + valueSize, node.end);
    return node;
}

std::optional<Node> FindChild(const std::byte* block, const Node& parent, std::string_view key) {
    for (std::size_t at = parent.FirstChild();;) {
        auto child = ReadNode(block, at, parent.end);
        if (!child) return std::nullopt;
        if (lstrcmpiA(child->key.c_str(), std::string(key).c_str()) == 0) return child;
        at = Aligned4(child->end);
    }
}

std::optional<Node> FindNode(const std::byte* block, std::string_view path) {
    auto node = ReadNode(block, 0, WordAt(block, 0));
    while (node && !path.empty()) {
        const std::size_t end = std::min(path.find('\\'), path.size());
        if (end > 0) node = FindChild(block, *node, path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return node;
}

// The tree in the file, as long as `file` lives; its first word is its size and no more than there
// is.
std::span<const std::byte> FindTree(const win32::ResourceFile& file) {
    const auto resource = file.Find(kVersionType, kVersionId);
    if (resource.size() < kHeaderSize) return {};
    return resource.first(std::min<std::size_t>(WordAt(resource.data(), 0), resource.size()));
}

}  // namespace

DWORD GetFileVersionInfoSizeA(LPCSTR path, LPDWORD handle) {
    if (handle) *handle = 0;
    if (win32::MustFail<"GetFileVersionInfoSizeA">()) return 0;
    const win32::ResourceFile file(win32::PosixPath(path).c_str());
    const auto tree = FindTree(file);
    if (tree.empty()) return win32::Fail(ERROR_RESOURCE_DATA_NOT_FOUND, 0u);
    return static_cast<DWORD>(CopySize(tree.size()));
}

BOOL GetFileVersionInfoA(LPCSTR path, DWORD, DWORD size, LPVOID block) {
    if (win32::MustFail<"GetFileVersionInfoA">()) return FALSE;
    const win32::ResourceFile file(win32::PosixPath(path).c_str());
    const auto tree = FindTree(file);
    if (tree.empty()) return win32::Fail(ERROR_RESOURCE_DATA_NOT_FOUND, FALSE);
    if (size < CopySize(tree.size())) return win32::Fail(ERROR_INSUFFICIENT_BUFFER, FALSE);
    std::memset(block, 0, size);
    std::memcpy(block, tree.data(), tree.size());
    const auto treeSize = static_cast<WORD>(tree.size());
    std::memcpy(block, &treeSize, sizeof treeSize);
    return TRUE;
}

BOOL VerQueryValueA(LPCVOID block, LPCSTR subBlock, LPVOID* value, PUINT length) {
    if (win32::MustFail<"VerQueryValueA">()) return FALSE;
    // The caller gets a writable pointer into its own block, and the texts are made in it.
    auto* bytes = static_cast<std::byte*>(const_cast<void*>(block));
    const auto node = FindNode(bytes, subBlock);
    if (!node) return win32::Fail(ERROR_RESOURCE_TYPE_NOT_FOUND, FALSE);
    if (node->isText) {
        const std::string text = TextAt(bytes, node->value, node->valueEnd);
        std::byte* room = bytes + NarrowRoomAt(WordAt(bytes, 0), node->value);
        std::memcpy(room, text.c_str(), text.size() + 1);
        *value = room;
        *length = static_cast<UINT>(text.size() + 1);
    } else {
        *value = bytes + node->value;
        *length = static_cast<UINT>(node->valueEnd - node->value);
    }
    return TRUE;
}
