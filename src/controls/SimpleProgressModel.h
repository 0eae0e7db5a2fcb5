// SimpleProgressModel.h: what a progress bar holds and where it draws, without a window.
#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <string>

// Property values of one control by name, as a form keeps them.
using PropertyBag = std::map<std::string, std::int32_t>;

// Whole pixels; right and bottom lie outside. Empty when right <= left or bottom <= top.
struct BarRectangle {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool IsEmpty() const { return right <= left || bottom <= top; }
};

class SimpleProgressModel {
public:
    // redraw is called after every set and after loading.
    explicit SimpleProgressModel(std::function<void()> redraw) : redraw_(std::move(redraw)) {}

    std::int16_t Percentage() const { return percentage_; }
    void SetPercentage(int percentage); // clamped to 0..100
    std::uint32_t FillColour() const { return fillColour_; }
    void SetFillColour(std::uint32_t colour); // 0x00BBGGRR, as all colours here
    std::uint32_t BackColour() const { return backColour_; }
    void SetBackColour(std::uint32_t colour);
    std::int16_t BorderWidth() const { return borderWidth_; }
    void SetBorderWidth(std::int16_t width); // pixels between the control's edge and the bar

    // Keys "Percentage", "FillColour", "BackColour", "BorderWidth"; one that is missing takes its default.
    void Load(const PropertyBag& bag);
    void Save(PropertyBag& bag);
    bool IsChanged() const { return changed_; } // a property was set since the last Load or Save

    std::string Caption() const; // "50%"
    // Width between the margins for a control of this width; negative when the margins meet.
    int InnerWidth(int width) const { return width - 2 * borderWidth_; }
    // The filled part; empty at 0 per cent and when the margins meet.
    BarRectangle Fill(int width, int height) const;

private:
    void Changed();

    std::function<void()> redraw_;
    std::int16_t percentage_ = 50;
    std::uint32_t fillColour_ = 0xFF0000;
    std::uint32_t backColour_ = 0xFFFFFF;
    std::int16_t borderWidth_ = 15;
    bool changed_ = false;
};

// Left or top edge that centres a text of this extent.
int CentredAt(int extent, int textExtent);
