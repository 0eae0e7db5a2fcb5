// SimpleProgress.h: a horizontal bar filled to a percentage, which stands in its middle and is its window
// text ("50%").
#pragma once
#include "controls/DrawnControl.h"
#include "controls/SimpleProgressModel.h"

class SimpleProgress : public DrawnControl {
public:
    SimpleProgress();
    SimpleProgress(const SimpleProgress&) = delete; // its properties redraw this one
    SimpleProgress& operator=(const SimpleProgress&) = delete;

    // Created visible.
    void Create(HWND parent, int id, const RECT& place, PaletteSource palette = CurrentPalette);
    // Every set shows at once. In high contrast the user's colours stand in for the two of the bar.
    SimpleProgressModel& Properties() { return *model_; }

private:
    void Redraw();

    std::shared_ptr<SimpleProgressModel> model_; // the window may live longer than this
};
