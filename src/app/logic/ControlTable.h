// Every control of the window: name, kind, texts and designed place.  The one table from which the window is
// made.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tavrel::app {

/// A place in twips (1/1440 inch), relative to the parent.
struct TwipRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    [[nodiscard]] int Right() const { return left + width; }
    bool operator==(const TwipRect&) const = default;
};

inline constexpr int kTwipsPerPixel = 15;

/// The client area as designed.
inline constexpr TwipRect kDesignedClient = {0, 0, 13065, 10650};

enum class ControlKind {
    Panel,
    FaceButton,  ///< a button with a face of its own colour
    Button,
    PasswordField,
    PathField,
    TableBox,
    ProductList,
    OptionBox,
    Grid,
    MessageField,
    ProgressBar
};

inline constexpr int kNoIndex = -1;

struct ControlEntry {
    std::string_view name;
    int index;  ///< kNoIndex: no control array
    ControlKind kind;
    std::string_view caption;  ///< or the text of a field
    std::string_view toolTip;
    std::string_view accessibleName;  ///< empty: the caption says enough
    TwipRect place;                   ///< relative to Frame1 when `framed`
    bool framed;
};

/// In the order in which people read the window, which is the tab order.
std::span<const ControlEntry> ControlTable();

/// Where the control's line stands in the table.  REQUIRES: there is such a control.
std::size_t ControlPlaceOf(std::string_view name, int index = kNoIndex);

/// "cmdComp", "txtDBPath_0".
std::string ObjectName(const ControlEntry& control);

}  // namespace tavrel::app
