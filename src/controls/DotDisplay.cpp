#include "controls/DotDisplay.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr int kCell = kGlyphWidth + 1;       // a character and the gap behind it
constexpr int kLinePitch = kGlyphHeight + 2; // a line and the gap below it
constexpr int kColumnsWanted = 32;

constexpr int kRestMs = 1800;    // time to read a line before it rolls away
constexpr int kRollMs = 30;      // a dot row
constexpr int kEndRestMs = 4000; // at the end

constexpr std::uint8_t kUnlit = 22;        // of a dot that does not glow
constexpr int kHalo = 64, kMostHalo = 120; // beside one dot; where the halos of many meet

constexpr int kRoundFrom = 4; // diameter from which a dot lacks its corners

std::size_t LineBreak(std::u16string_view rest, std::size_t columns)
{
    const std::size_t newLine = rest.find_first_of(u"\r\n");
    if (std::min(newLine, rest.size()) <= columns) return std::min(newLine, rest.size());
    const std::size_t blank = rest.rfind(u' ', columns);
    if (blank != std::u16string_view::npos && blank > 0) return blank;
    const std::size_t separator = rest.rfind(u'\\', columns - 1); // of a path: stays on its line
    return separator == std::u16string_view::npos ? columns : separator + 1;
}

} // namespace

void DotDisplay::Resize(int across, int down)
{
    across_ = std::max(across, kGlyphWidth);
    down_ = std::max(down, kGlyphHeight);
    Wrap();
}

void DotDisplay::SetText(std::u16string_view text)
{
    text_ = Displayable(text);
    Wrap();
}

void DotDisplay::Restart()
{
    offset_ = 0;
    atRest_ = false;
    Draw();
}

void DotDisplay::Wrap()
{
    if (across_ == 0) return; // not laid out yet
    const auto columns = static_cast<std::size_t>((across_ + 1) / kCell);
    lines_.clear();
    for (std::u16string_view rest = text_; !rest.empty();) {
        const std::size_t end = LineBreak(rest, columns);
        lines_.emplace_back(rest.substr(0, rest.substr(0, end).find_last_not_of(u' ') + 1));
        rest.remove_prefix(end);
        if (rest.starts_with(u' '))
            rest.remove_prefix(std::min(rest.find_first_not_of(u' '), rest.size()));
        else if (rest.starts_with(u"\r\n"))
            rest.remove_prefix(2);
        else if (rest.starts_with(u'\r') || rest.starts_with(u'\n'))
            rest.remove_prefix(1);
    }
    Restart();
}

int DotDisplay::LineCapacity() const
{
    return std::max(1, (down_ + kLinePitch - kGlyphHeight) / kLinePitch);
}

int DotDisplay::LastOffset() const
{
    return std::max(0, static_cast<int>(lines_.size()) - LineCapacity()) * kLinePitch;
}

int DotDisplay::TopLine() const
{
    return (offset_ + kLinePitch - 1) / kLinePitch;
}

int DotDisplay::Delay() const
{
    if (atRest_ || LastOffset() == 0) return 0;
    if (offset_ == LastOffset()) return kEndRestMs;
    return offset_ % kLinePitch == 0 ? kRestMs : kRollMs;
}

void DotDisplay::Step()
{
    if (Delay() == 0) return;
    atRest_ = offset_ == LastOffset();
    offset_ = atRest_ ? 0 : offset_ + 1;
    Draw();
}

bool DotDisplay::IsLit(int x, int y) const
{
    if (x < 0 || y < 0 || x >= across_ || y >= down_) return false;
    return lit_[static_cast<std::size_t>(y * across_ + x)] != 0;
}

void DotDisplay::Draw()
{
    lit_.assign(static_cast<std::size_t>(across_) * static_cast<std::size_t>(down_), 0);
    const int columns = (across_ + 1) / kCell;
    const int left = (across_ - (columns * kCell - 1)) / 2;
    // In the middle, however few lines there are.
    const int shown = std::clamp(static_cast<int>(lines_.size()), 1, LineCapacity());
    const int height = shown * kLinePitch - (kLinePitch - kGlyphHeight);
    const int top = (down_ - height) / 2;
    for (std::size_t line = 0; line < lines_.size(); ++line) {
        const int y0 = static_cast<int>(line) * kLinePitch - offset_;
        if (y0 <= -kGlyphHeight || y0 >= height) continue;
        for (std::size_t column = 0; column < lines_[line].size(); ++column) {
            const Glyph glyph = GlyphOf(lines_[line][column]);
            const int x0 = left + static_cast<int>(column) * kCell;
            for (int y = std::max(0, -y0); y < kGlyphHeight && y0 + y < height; ++y)
                for (int x = 0; x < kGlyphWidth; ++x)
                    lit_[static_cast<std::size_t>((top + y0 + y) * across_ + x0 + x)] =
                        glyph[static_cast<std::size_t>(y)] >> (kGlyphWidth - 1 - x) & 1;
        }
    }
}

DotGlow::DotGlow(int pitch) : pitch_(pitch), dot_(std::max(1, pitch - std::max(1, pitch / 4)))
{
    const int side = 3 * pitch_;
    const double centre = pitch_ + dot_ / 2.0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const double across = x + 0.5 - centre, down = y + 0.5 - centre;
            const double distance = std::sqrt(across * across + down * down);
            const double share = std::max(0.0, 1.0 - distance / (1.5 * pitch_));
            halo_.push_back(static_cast<std::uint8_t>(kHalo * share * share));
        }
    }
}

void DotGlow::Render(const DotDisplay& display, int width, int height, int stride, std::uint8_t* pixels) const
{
    std::fill(pixels, pixels + static_cast<std::ptrdiff_t>(stride) * height, std::uint8_t{0});
    const int left = (width - display.Across() * pitch_ + pitch_ - dot_) / 2;
    const int top = (height - display.Down() * pitch_ + pitch_ - dot_) / 2;
    const int side = 3 * pitch_;
    for (int row = 0; row < display.Down(); ++row) {
        for (int column = 0; column < display.Across(); ++column) {
            if (!display.IsLit(column, row)) continue;
            const int x0 = left + (column - 1) * pitch_, y0 = top + (row - 1) * pitch_;
            const int xEnd = std::min(side, width - x0), yEnd = std::min(side, height - y0);
            for (int y = std::max(0, -y0); y < yEnd; ++y) {
                std::uint8_t* line = pixels + static_cast<std::ptrdiff_t>(y0 + y) * stride;
                const std::uint8_t* halo = halo_.data() + y * side;
                for (int x = std::max(0, -x0); x < xEnd; ++x)
                    line[x0 + x] = static_cast<std::uint8_t>(std::min(kMostHalo, line[x0 + x] + halo[x]));
            }
        }
    }
    // The dots upon the halos: those among many that glow are the brightest.
    for (int row = 0; row < display.Down(); ++row) {
        for (int column = 0; column < display.Across(); ++column) {
            const bool lit = display.IsLit(column, row);
            const int x0 = left + column * pitch_, y0 = top + row * pitch_;
            for (int y = std::max(0, y0); y < std::min(height, y0 + dot_); ++y) {
                std::uint8_t* line = pixels + static_cast<std::ptrdiff_t>(y) * stride;
                const int corner = dot_ >= kRoundFrom && (y == y0 || y == y0 + dot_ - 1) ? 1 : 0;
                for (int x = std::max(0, x0 + corner); x < std::min(width, x0 + dot_ - corner); ++x)
                    line[x] = static_cast<std::uint8_t>(lit ? std::min(255, kLit + line[x] / 2)
                                                            : std::max<int>(kUnlit, line[x]));
            }
        }
    }
}

int BestPitch(int width, int height, int atMost)
{
    const int fits = std::min({atMost, height / (kGlyphHeight + 1), width / (kColumnsWanted * kCell)});
    return std::max(std::min(2, height / kGlyphHeight), std::max(1, fits));
}
