// SimpleProgress.h: a horizontal bar filled to a percentage, which stands in its middle and is its window
// text ("50%").
#pragma once
#include "controls/DrawnControl.h"
#include "controls/SimpleProgressModel.h"

class SimpleProgress : public DrawnControl {
public:
    void Create(HWND parent, int id, const RECT& place);
    // Every set shows at once.
    SimpleProgressModel& Properties() { return model_; }

private:
    void Redraw();
    void Paint(HDC dc, const RECT& area) const override;

    SimpleProgressModel model_{[this] { Redraw(); }};
};
