// The three lookups that elements and attributes share: a walk through a list with a cursor that
// the caller can go on from. The list and the cursor belong to the caller.
#pragma once

#include <list>

template <class Item>
bool hlx_getFirst(const std::list<Item>& items, typename std::list<Item>::const_iterator& cursor,
                  Item& target) {
    cursor = items.begin();
    if (cursor == items.end()) return false;
    target = *cursor;
    return true;
}

template <class Item>
bool hlx_getNext(const std::list<Item>& items, typename std::list<Item>::const_iterator& cursor,
                 Item& target) {
    if (cursor == items.end() || ++cursor == items.end()) return false;
    target = *cursor;
    return true;
}

// Always starts anew, and leaves the cursor on the first item that `matches`, or at the end.
template <class Item, class Matches>
bool hlx_find(const std::list<Item>& items, typename std::list<Item>::const_iterator& cursor,
              Matches matches, Item& target) {
    for (cursor = items.begin(); cursor != items.end(); ++cursor) {
        if (!matches(*cursor)) continue;
        target = *cursor;
        return true;
    }
    return false;
}
