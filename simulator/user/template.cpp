#include "user/template.h"

#include <cstring>
#include <span>

#include "kernel/module_resources.h"
#include "kernel/narrow_text.h"

namespace user {
namespace {

// Reads little-endian words of a resource one after the other. Past the end it returns zeros and is
// no longer good.
class Reader {
public:
    explicit Reader(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    bool Good() const { return m_good; }

    WORD Word() { return Number<WORD>(); }
    DWORD Double() { return Number<DWORD>(); }
    int Short() { return static_cast<std::int16_t>(Word()); }

    UnitRect Place() {
        const int x = Short(), y = Short(), width = Short(), height = Short();
        return {x, y, width, height};
    }

    // Wide text up to its terminator, as narrow text.
    std::string Text() {
        std::u16string text;
        while (const WORD unit = Word()) text.push_back(static_cast<char16_t>(unit));
        return win32::NarrowText(text);
    }

    std::string Text(std::size_t length) {
        std::u16string text;
        while (length-- && m_good) text.push_back(static_cast<char16_t>(Word()));
        return win32::NarrowText(text);
    }

    // A number or a text, as templates name classes, menus and pictures.
    std::variant<WORD, std::string> Name() {
        constexpr WORD kNumberFollows = 0xFFFF;
        const std::size_t start = m_at;
        if (Word() == kNumberFollows) return Word();
        m_at = start;
        return Text();
    }

    void Skip(std::size_t count) {
        m_good = m_good && count <= m_bytes.size() - m_at;
        m_at = m_good ? m_at + count : m_bytes.size();
    }

    void Align() { Skip(std::min((4 - m_at % 4) % 4, m_bytes.size() - m_at)); }

private:
    template <class T>
    T Number() {
        T number{};
        if (m_good && m_bytes.size() - m_at >= sizeof number) {
            std::memcpy(&number, m_bytes.data() + m_at, sizeof number);
            m_at += sizeof number;
        } else {
            m_good = false;
        }
        return number;
    }

    std::span<const std::byte> m_bytes;
    std::size_t m_at = 0;
    bool m_good = true;
};

std::span<const std::byte> Resource(HINSTANCE module, LPCSTR type, LPCSTR name) {
    if (!IS_INTRESOURCE(name)) return {};
    return win32::FindModuleResource(module, LOWORD(type), LOWORD(name));
}

void SkipFont(Reader& reader, bool extended) {
    reader.Word();                 // points
    if (extended) reader.Skip(4);  // weight, italic, character set
    reader.Text();
}

ControlTemplate ReadControl(Reader& reader, bool extended) {
    ControlTemplate control{};
    reader.Align();
    if (extended) {
        reader.Skip(4);  // help id
        control.exStyle = reader.Double();
        control.style = reader.Double();
    } else {
        control.style = reader.Double();
        control.exStyle = reader.Double();
    }
    control.place = reader.Place();
    control.id = extended ? static_cast<LONG>(reader.Double()) : LONG{reader.Word()};
    control.className = reader.Name();
    const auto text = reader.Name();
    if (const auto* words = std::get_if<std::string>(&text)) control.text = *words;
    reader.Skip(reader.Word());  // creation data
    return control;
}

// The header of an extended template begins with a version and a signature in place of the style.
DialogTemplate ReadDialog(Reader& reader, std::span<const std::byte> bytes) {
    constexpr DWORD kExtended = 0xFFFF0001;
    const bool extended = Reader(bytes).Double() == kExtended;
    DialogTemplate dialog{};
    if (extended) {
        reader.Skip(8);  // version, signature, help id
        dialog.exStyle = reader.Double();
        dialog.style = reader.Double();
    } else {
        dialog.style = reader.Double();
        dialog.exStyle = reader.Double();
    }
    const WORD controls = reader.Word();
    dialog.place = reader.Place();
    reader.Name();  // menu
    reader.Name();  // class
    dialog.caption = reader.Text();
    if (dialog.style & DS_SETFONT) SkipFont(reader, extended);
    for (WORD i = 0; i < controls && reader.Good(); ++i)
        dialog.controls.push_back(ReadControl(reader, extended));
    return dialog;
}

// The deepest nesting of popups that is read.
constexpr int kMenuDepth = 16;

std::vector<MenuItemTemplate> ReadMenuItems(Reader& reader, int depth) {
    std::vector<MenuItemTemplate> items;
    bool last = depth == kMenuDepth;
    while (!last && reader.Good()) {
        MenuItemTemplate item{};
        item.flags = reader.Word();
        last = item.flags & MF_END;
        if (!(item.flags & MF_POPUP)) item.id = reader.Word();
        item.text = reader.Text();
        if (item.flags & MF_POPUP) item.items = ReadMenuItems(reader, depth + 1);
        items.push_back(std::move(item));
    }
    return items;
}

}  // namespace

std::optional<DialogTemplate> LoadDialogTemplate(HINSTANCE module, LPCSTR name) {
    const auto bytes = Resource(module, RT_DIALOG, name);
    Reader reader(bytes);
    DialogTemplate dialog = ReadDialog(reader, bytes);
    if (!reader.Good()) return std::nullopt;
    return dialog;
}

std::optional<std::vector<MenuItemTemplate>> LoadMenuTemplate(HINSTANCE module, LPCSTR name) {
    Reader reader(Resource(module, RT_MENU, name));
    const WORD version = reader.Word();
    reader.Skip(reader.Word());  // to the first item
    auto items = ReadMenuItems(reader, 0);
    if (!reader.Good() || version != 0) return std::nullopt;
    return items;
}

// Strings lie in blocks of 16, each with its length before it.
std::string LoadText(HINSTANCE module, UINT id) {
    constexpr UINT kBlock = 16;
    Reader reader(
        win32::FindModuleResource(module, LOWORD(RT_STRING), static_cast<WORD>(id / kBlock + 1)));
    for (UINT i = 0; i < id % kBlock; ++i) reader.Skip(std::size_t{2} * reader.Word());
    const WORD length = reader.Word();
    std::string text = reader.Text(length);
    return reader.Good() ? text : std::string();
}

}  // namespace user
