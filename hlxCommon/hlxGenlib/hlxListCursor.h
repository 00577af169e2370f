// The three lookups that elements and attributes share: a walk through a sequence with a cursor
// that the caller can go on from. The sequence and the cursor belong to the caller.
#pragma once

#include <cstddef>
#include <cstdint>

// A cursor is an index, so that it survives appends; this one is behind the last item.
constexpr std::size_t HLX_CURSOR_AT_END = SIZE_MAX;

// Copies the first item that `matches`, from `start` on, and leaves the cursor on it; false with
// the cursor at the end and the target untouched if there is none.
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
