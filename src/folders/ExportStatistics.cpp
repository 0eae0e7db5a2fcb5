#include "folders/ExportStatistics.h"

#include "text/DayCount.h"
#include "text/Numbers.h"

#include <cmath>

int Percentage(std::int64_t part, std::int64_t whole)
{
    if (whole <= 0) return 100;
    return static_cast<int>(RoundHalfEven(static_cast<double>(part) / static_cast<double>(whole) * 100.0));
}

Text DurationText(double seconds)
{
    constexpr double kLongest = 32767; // a 16-bit number of seconds
    const double whole = RoundHalfEven(seconds);
    if (!(whole >= 0 && whole <= kLongest)) return u"-:-:-";
    return FormatDate(DateFromSeconds(static_cast<std::int64_t>(whole)), kTimeFormat);
}

void ExportStatistics::Show(RunView& view, std::int32_t id, double now)
{
    const bool single = count <= 1;
    view.ShowPercentage(Bar::currentFolder, single ? 100 : Percentage(id, count - 1));
    const auto elapsed = static_cast<double>(SecondsOf(now) - SecondsOf(startTime));
    const double remaining = (count - 1) - id;
    if (elapsed > 0) {
        rate = processed / elapsed;
        const double rounded = RoundHalfEven(rate * 1000.0) / 1000.0;
        view.ShowStatistic(Statistic::perSecond, ShortestText(static_cast<float>(rounded)) + u" / second");
    }
    view.ShowStatistic(Statistic::time, single ? u"-:-:-" : DurationText(elapsed / processed * remaining));
    view.ShowStatistic(Statistic::count, DecimalText(id + 1) + u" out of " + DecimalText(count));
    view.ShowStatistic(Statistic::left, DecimalText(count - (id + 1)));
}

void ExportStatistics::ShowTotals(RunView& view, std::int32_t saved, std::int32_t toSave) const
{
    const std::int32_t left = toSave - saved;
    view.ShowStatistic(Statistic::totalLeft, DecimalText(left));
    if (rate > 0) view.ShowStatistic(Statistic::totalTime, DurationText(left / rate));
    view.ShowPercentage(Bar::allFolders, Percentage(saved, toSave));
}
