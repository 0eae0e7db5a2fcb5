// Where the controls stand, at any size of the window and of the user's font.
#include "app/Form1Controls.h"
#include "controls/OrbTab.h"

namespace {

constexpr int kTreeShare = 40; // percent of the height to spare; the tab pages get the rest
constexpr int kWishedWidth = 24, kWishedHeight = 96; // dialog units more than at the smallest

} // namespace

SIZE Form1Controls::SmallestClient() const
{
    const Extent form = SmallestExtent(onForm);
    return {units_.Across(form.width), units_.Down(form.height)};
}

SIZE Form1Controls::WishedClient() const
{
    const Extent form = SmallestExtent(onForm);
    return {units_.Across(form.width + kWishedWidth), units_.Down(form.height + kWishedHeight)};
}

void Form1Controls::ArrangeIn(ControlId parent) const
{
    RECT area = {};
    GetClientRect(parent == onForm ? GetParent(At(nTab)) : At(parent), &area);
    const Extent smallest = SmallestExtent(parent);
    const int wider = static_cast<int>(area.right) - units_.Across(smallest.width);
    const int higher = static_cast<int>(area.bottom) - units_.Down(smallest.height);
    // On a screen that is too low for all the tree alone gives way.
    const int treeShare = isBusy_ ? 0 : higher < 0 ? 100 : kTreeShare;
    const auto moved = [](int growth, int percent) { return growth * percent / 100; };
    const auto down = [&](int percent) { return moved(higher, percent == kWithTree ? treeShare : percent); };
    HDWP moves = BeginDeferWindowPos(kControls);
    for (const ControlRow& row : ControlRows()) {
        const Place& place = row.place;
        if (row.parent != parent || row.kind == Kind::page || place.width == 0) continue;
        const int left = units_.Across(place.left) + moved(wider, row.growth.left);
        const int top = units_.Down(place.top) + down(row.growth.top);
        const int right = units_.Across(place.left + place.width) + moved(wider, row.growth.right);
        const int bottom = units_.Down(place.top + place.height) + down(row.growth.bottom);
        if (moves)
            moves = DeferWindowPos(moves, At(row.id), nullptr, left, top, right - left, bottom - top,
                                   SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (moves) EndDeferWindowPos(moves);
}

void Form1Controls::Arrange() const
{
    ArrangeIn(onForm);
    const RECT page = OrbTab(At(nTab)).Inside();
    for (const ControlId frame : fraTabs) {
        SetWindowPos(At(frame), nullptr, page.left, page.top, page.right - page.left, page.bottom - page.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
        ArrangeIn(frame);
    }
    ArrangeIn(fraStats);
}
