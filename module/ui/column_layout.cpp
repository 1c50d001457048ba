// column_layout.cpp - the widths and the sideways scrolling of a column tree
#include "ui/column_layout.h"

#include <algorithm>

namespace pyxen {

namespace {

constexpr int kLine = 15;
constexpr int kTextMargins = 6;

} // namespace

std::array<int, 2> SplitColumnWidths(int viewWidth, int scrollBarWidth) {
    const int usable = std::max(viewWidth - scrollBarWidth, 0);
    const int first = usable * 6 / 10;
    return {first, usable - first};
}

bool IsOnColumnText(int x, int textLeft, int textWidth) {
    return x >= textLeft && x < textLeft + textWidth + kTextMargins;
}

bool ColumnScroll::Take(Step step, int thumb, int columnsWidth, int clientWidth) {
    const int before = offset;
    switch (step) {
    case Step::kLineLeft:
        offset -= kLine;
        break;
    case Step::kLineRight:
        offset += kLine;
        break;
    case Step::kPageLeft:
        offset -= clientWidth;
        break;
    case Step::kPageRight:
        offset += clientWidth;
        break;
    case Step::kToThumb:
        offset = thumb;
        break;
    case Step::kLeftEnd:
        offset = 0;
        break;
    case Step::kRightEnd:
        offset = columnsWidth - clientWidth;
        break;
    }
    Fit(columnsWidth, clientWidth);
    return offset != before;
}

void ColumnScroll::Fit(int columnsWidth, int clientWidth) {
    offset = std::clamp(offset, 0, std::max(columnsWidth - clientWidth, 0));
}

} // namespace pyxen
