// ExportStatistics.h: the figures of a running export.
#pragma once
#include "folders/RunView.h"

#include <cstdint>

// Share of a whole in per cent, rounded half to even; 100 when there is no whole to share.
int Percentage(std::int64_t part, std::int64_t whole);

// Whole seconds as "hh:nn:ss"; "-:-:-" beyond 32767, and for what is no number.
Text DurationText(double seconds);

struct ExportStatistics {
    double startTime = 0;       // day count
    std::int32_t count = 0;     // e-mails in the list
    std::int32_t processed = 0; // e-mails handled in this call, the current one included
    double rate = 0;            // e-mails a second, from the last round in which a second had passed

    // Before e-mail `id` is handled.
    void Show(RunView& view, std::int32_t id, double now);
    void ShowTotals(RunView& view, std::int32_t saved, std::int32_t toSave) const;
};
