#include "app/logic/FormLayout.h"

#include <algorithm>

namespace tavrel::app {

namespace {

constexpr int kGap = 50;
/// Gaps right of the path field, together.
constexpr int kPathMargin = 200;

class Places {
  public:
    Places() {
        for (const ControlEntry& control : ControlTable()) {
            places_.push_back(control.place);
        }
    }

    TwipRect& Of(std::string_view name, int index = kNoIndex) { return places_[ControlPlaceOf(name, index)]; }
    std::vector<TwipRect> Take() { return std::move(places_); }

  private:
    std::vector<TwipRect> places_;
};

int PathWidth(Places& places) {
    const int left = places.Of("Frame1").width - places.Of("txtDBPath", 0).left -
                     places.Of("cmbTblName", 0).width - places.Of("cmdAccess", 0).width -
                     places.Of("cmdCompact", 0).width - kPathMargin;
    return std::max(left, kNarrowestPath);
}

/// The path fields take what width is left; what stands right of them follows.
void PlacePathRows(Places& places) {
    const int pathWidth = PathWidth(places);
    for (int side = 0; side < 2; ++side) {
        places.Of("txtDBPath", side).width = pathWidth;
        int right = places.Of("txtDBPath", 0).Right();
        for (const char* name : {"cmbTblName", "cmdAccess", "cmdCompact"}) {
            TwipRect& place = places.Of(name, side);
            place.left = right + kGap;
            right = place.Right();
        }
    }
}

void PlaceProgressBars(Places& places, int clientWidth, int clientHeight) {
    TwipRect& phase = places.Of("ProgressBar1", 0);
    TwipRect& overall = places.Of("ProgressBar1", 1);
    phase.left = 0;
    phase.width = clientWidth;
    phase.top = clientHeight - 2 * phase.height;
    overall.left = 0;
    overall.width = phase.width;
    overall.top = clientHeight - overall.height;
}

}  // namespace

std::vector<TwipRect> FormLayout(int clientWidth, int clientHeight) {
    Places places;
    TwipRect& frame = places.Of("Frame1");
    frame.left = 0;
    frame.width = clientWidth;
    PlacePathRows(places);
    TwipRect& grid = places.Of("spList");
    grid.left = 0;
    grid.width = clientWidth;
    grid.height = std::max(clientHeight - grid.top, 0);
    PlaceProgressBars(places, clientWidth, clientHeight);
    return places.Take();
}

int Pixels(int twips) {
    const int half = twips < 0 ? -kTwipsPerPixel / 2 : kTwipsPerPixel / 2;
    return (twips + half) / kTwipsPerPixel;
}

}  // namespace tavrel::app
