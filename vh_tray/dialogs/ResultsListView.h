// The lists of installed updates and of failed downloads. The buffers for a time, 256 and 512
// bytes, are part of the interface, do not correct.
#pragma once

#include "dialogs/SortListView.h"

// Name, version, time, result.
class CInstallResultsListView
    : public CSortListViewCtrlImpl<CInstallResultsListView, CListViewCtrlT<CWindow>> {
    static constexpr SortKind kSortKinds[] = {SortKind::TextNoCase, SortKind::TextNoCase,
                                              SortKind::Custom, SortKind::Custom};

public:
    static constexpr ResultColumns kColumns{kSortKinds, 2, 3, 256};
};

// File name, time, reason.
class CDownloadResultsListView
    : public CSortListViewCtrlImpl<CDownloadResultsListView, CListViewCtrlT<CWindow>> {
    static constexpr SortKind kSortKinds[] = {SortKind::TextNoCase, SortKind::Custom,
                                              SortKind::Custom};

public:
    static constexpr ResultColumns kColumns{kSortKinds, 1, 2, 512};
};
