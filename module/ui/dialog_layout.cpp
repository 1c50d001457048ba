// dialog_layout.cpp - where the parts of the feature control dialog stand
#include "ui/dialog_layout.h"

#include <algorithm>
#include <cstdint>

namespace pyxen {

FeatureDialogLayout::Places FeatureDialogLayout::Compute(int width, int height, int textHeight,
                                                         int lineHeight) const {
    const int moreWidth = width - from.width;
    const int moreHeight = height - from.height;
    const auto atBottom = [&](const LayoutRect& rect) {
        return LayoutRect{rect.left, rect.top + moreHeight, rect.right + moreWidth,
                          rect.bottom + moreHeight};
    };
    Places places;
    places.frame = atBottom(from.frame);
    places.description = atBottom(from.description);
    places.close = atBottom(from.close);
    places.close.left += moreWidth;

    const int margin = from.frame.left;
    const int wanted = std::max(textHeight - from.description.Height(), 0);
    // Negative where the panes lack height: the description gives it, down to one line.
    const int spare = places.frame.top - 2 * margin - from.leastPaneHeight;
    const int least = std::min(lineHeight - from.description.Height(), 0);
    const int growth = std::max(std::min(wanted, spare), least);
    places.frame.top -= growth;
    places.description.top -= growth;
    if (textHeight > places.description.Height() && lineHeight > 0) {
        places.description.top += places.description.Height() % lineHeight;
    }

    const int right = places.frame.right;
    const int innerBefore = from.frame.right - 2 * margin;
    const int inner = std::max(right - 2 * margin, 0);
    const int paneShare = static_cast<int>(inner * std::int64_t{from.paneWidth} / innerBefore);
    const int paneWidth = std::min(std::max(paneShare, from.leastPaneWidth), inner);
    const int bottom = std::max(places.frame.top - margin, margin);
    places.container = {right - paneWidth, margin, right, bottom};
    places.tree = {margin, margin, std::max(places.container.left - margin, margin), bottom};
    return places;
}

} // namespace pyxen
