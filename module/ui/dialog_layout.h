// dialog_layout.h - where the parts of the feature control dialog stand
#pragma once

namespace pyxen {

/// In pixels of the dialog's client area; right and bottom are outside.
struct LayoutRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool operator==(const LayoutRect&) const = default;
};

/// The tree fills the upper left and the editors' pane stands beside it; the description keeps to
/// the lower edge and stretches with the width, and so does the Close button to its corner.
class FeatureDialogLayout {
public:
    struct Places {
        LayoutRect tree;
        LayoutRect container;
        LayoutRect frame;
        LayoutRect description;
        LayoutRect close;
    };

    /// What the template says. `paneWidth` is the width of the editors' pane at the template's
    /// size, and the panes are never made smaller than `leastPaneWidth` and `leastPaneHeight`.
    struct Template {
        int width = 0;
        int height = 0;
        LayoutRect frame;
        LayoutRect description;
        LayoutRect close;
        int paneWidth = 0;
        int leastPaneWidth = 0;
        int leastPaneHeight = 0;
    };

    /// Captures margins and shares.
    explicit FeatureDialogLayout(const Template& newTemplate) : from(newTemplate) {}

    /// The places for a client size. A text that is higher than its place takes height from the
    /// panes above, as far as these can spare it; where they cannot, its place holds whole lines.
    /// Where the panes are too low, the text's place gives them height, down to one line.
    Places Compute(int width, int height, int textHeight, int lineHeight) const;
    /// How wide the description is at that width.
    int DescriptionWidth(int width) const { return from.description.Width() + width - from.width; }

private:
    Template from;
};

} // namespace pyxen
