// The three lookups that elements and attributes share. A cursor stores where the next lookup
// continues. The caller owns the sequence and the cursor.
#pragma once

#include <cstddef>
#include <cstdint>

// A cursor is an index, so that it survives appends; this value is the end.
constexpr std::size_t HLX_CURSOR_AT_END = SIZE_MAX;

// Copies the first item that `matches`, from `start` on, and sets the cursor to it. If there is
// none, returns false, sets the cursor to the end and does not change the target.
template <class Items, class Matches>
bool hlx_findFrom(const Items& items, std::size_t start, Matches matches, std::size_t& cursor,
                  typename Items::value_type& target) {
    for (cursor = start; cursor < items.size(); ++cursor) {
        if (!matches(items[cursor])) continue;
        target = items[cursor];
        return true;
    }
    cursor = HLX_CURSOR_AT_END;
    return false;
}

template <class Items>
bool hlx_getFirst(const Items& items, std::size_t& cursor, typename Items::value_type& target) {
    return hlx_findFrom(
        items, 0, [](const auto&) { return true; }, cursor, target);
}

template <class Items>
bool hlx_getNext(const Items& items, std::size_t& cursor, typename Items::value_type& target) {
    if (cursor == HLX_CURSOR_AT_END) return false;
    return hlx_findFrom(
        items, cursor + 1, [](const auto&) { return true; }, cursor, target);
}
