// DotDisplay.h: which dots of a dot-matrix display glow for a message, and how bright that makes each pixel.
// Knows no window. A message with more lines than fit rolls upwards line by line, rests at its end, comes
// back to its beginning and stays there.
#pragma once
#include "controls/DotFont.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class DotDisplay {
public:
    // In dots; room for less than one character counts as room for one.
    void Resize(int across, int down);
    void SetText(std::u16string_view text); // in place of the one before, from its beginning
    void Restart();                         // from the beginning again

    // Milliseconds until Step is due; 0: nothing moves.
    int Delay() const;
    void Step();

    bool IsLit(int x, int y) const; // dots from the upper left corner
    int Across() const { return across_; }
    int Down() const { return down_; }
    // The message as it is laid out, and which of its lines is at the top.
    const std::vector<std::u16string>& Lines() const { return lines_; }
    int TopLine() const;

private:
    void Wrap();
    void Draw();
    int LineCapacity() const;
    int LastOffset() const; // dot rows, of the roll's end

    int across_ = 0, down_ = 0;
    std::u16string text_; // in characters of the font
    std::vector<std::u16string> lines_;
    std::vector<std::uint8_t> lit_; // across_ * down_
    int offset_ = 0;                // dot rows that have rolled away
    bool atRest_ = false;           // the whole message has been shown
};

// Brightness of each pixel for a display drawn with so many pixels from dot to dot.
class DotGlow {
public:
    explicit DotGlow(int pitch);
    // Fills rows of stride bytes; width and height in pixels. The dots stand in the middle.
    void Render(const DotDisplay& display, int width, int height, int stride, std::uint8_t* pixels) const;
    // Pixels at least this bright belong to a dot that glows; halos and the other dots are darker.
    static constexpr std::uint8_t kLit = 200;

private:
    int pitch_, dot_;                // from dot to dot; diameter
    std::vector<std::uint8_t> halo_; // 3 * pitch_ square around a dot
};

// The pitch at which a display of this size is best read: neither dots too coarse for a whole message, nor
// larger than atMost, nor too small to tell apart.
int BestPitch(int width, int height, int atMost);
