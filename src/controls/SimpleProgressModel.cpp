#include "controls/SimpleProgressModel.h"

#include <algorithm>
#include <cmath>

void SimpleProgressModel::SetPercentage(int percentage)
{
    percentage_ = static_cast<std::int16_t>(std::clamp(percentage, 0, 100));
    Changed();
}

void SimpleProgressModel::SetFillColour(std::uint32_t colour)
{
    fillColour_ = colour;
    Changed();
}

void SimpleProgressModel::SetBackColour(std::uint32_t colour)
{
    backColour_ = colour;
    Changed();
}

void SimpleProgressModel::SetBorderWidth(std::int16_t width)
{
    borderWidth_ = width;
    Changed();
}

void SimpleProgressModel::Changed()
{
    changed_ = true;
    redraw_();
}

void SimpleProgressModel::Load(const PropertyBag& bag)
{
    const auto value = [&bag](const char* key, std::int32_t fallback) {
        const auto found = bag.find(key);
        return found == bag.end() ? fallback : found->second;
    };
    percentage_ = static_cast<std::int16_t>(std::clamp(value("Percentage", 50), 0, 100));
    fillColour_ = static_cast<std::uint32_t>(value("FillColour", 0xFF0000));
    backColour_ = static_cast<std::uint32_t>(value("BackColour", 0xFFFFFF));
    borderWidth_ = static_cast<std::int16_t>(value("BorderWidth", 15));
    changed_ = false;
    redraw_();
}

void SimpleProgressModel::Save(PropertyBag& bag)
{
    bag["Percentage"] = percentage_;
    bag["FillColour"] = static_cast<std::int32_t>(fillColour_);
    bag["BackColour"] = static_cast<std::int32_t>(backColour_);
    bag["BorderWidth"] = borderWidth_;
    changed_ = false;
}

std::string SimpleProgressModel::Caption() const
{
    return std::to_string(percentage_) + "%";
}

BarRectangle SimpleProgressModel::Fill(int width, int height) const
{
    // nearbyint rounds half to even, as all of the program does.
    const double length = percentage_ / 100.0 * InnerWidth(width);
    const BarRectangle bar{borderWidth_, borderWidth_,
                           static_cast<int>(std::nearbyint(borderWidth_ + length)), height - borderWidth_};
    return bar.IsEmpty() ? BarRectangle{} : bar;
}

int CentredAt(int extent, int textExtent)
{
    return static_cast<int>(std::nearbyint(extent / 2.0 - textExtent / 2.0));
}
