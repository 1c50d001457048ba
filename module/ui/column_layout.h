// column_layout.h - the widths and the sideways scrolling of a column tree
#pragma once

#include <array>

namespace pyxen {

/// Widths in pixels of the name and the value column in a view of that width.
std::array<int, 2> SplitColumnWidths(int viewWidth, int scrollBarWidth);

/// True when a click at `x` hits a row's name that starts at `textLeft`.
bool IsOnColumnText(int x, int textLeft, int textWidth);

/// How far header and tree are shifted to the left, in pixels.
class ColumnScroll {
public:
    enum class Step { kLineLeft, kLineRight, kPageLeft, kPageRight, kToThumb, kLeftEnd, kRightEnd };

    int GetOffset() const { return offset; }
    /// Takes one step of the scroll bar; `thumb` counts for `kToThumb` only. True when the offset
    /// changed.
    bool Take(Step step, int thumb, int columnsWidth, int clientWidth);
    /// Keeps the offset within the columns after a change of the widths.
    void Fit(int columnsWidth, int clientWidth);

private:
    int offset = 0;
};

} // namespace pyxen
