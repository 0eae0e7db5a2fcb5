#include "app/Form1Images.h"

#include "controls/OrbPalette.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

constexpr COLORREF kClear = RGB(255, 0, 255); // drawn nowhere: becomes transparent
constexpr COLORREF kOutline = RGB(84, 90, 100);
constexpr COLORREF kWhite = RGB(255, 255, 255);
const Text kKeys[] = {u"root", u"other", u"envelope", u"green", u"yellow", u"red"};

// Draws on a grid of 16 by 16, whatever the size.
struct Pen16 {
    HDC dc;
    int size;
    int At(int sixteenth) const { return (sixteenth * size + 8) / 16; }
    int Line() const { return std::max(1, size / 16); }

    // With an outline of its own colour.
    template <class Shape>
    void Filled(COLORREF fill, COLORREF outline, const Shape& shape) const
    {
        const HPEN pen = CreatePen(PS_SOLID, Line(), outline);
        const HBRUSH brush = CreateSolidBrush(fill);
        const HGDIOBJ oldPen = SelectObject(dc, pen);
        const HGDIOBJ oldBrush = SelectObject(dc, brush);
        shape();
        SelectObject(dc, oldBrush);
        SelectObject(dc, oldPen);
        DeleteObject(brush);
        DeleteObject(pen);
    }
    std::vector<POINT> Scaled(std::vector<POINT> corners) const
    {
        for (POINT& corner : corners) corner = {At(corner.x), At(corner.y)};
        return corners;
    }
    void Polygon(const std::vector<POINT>& corners, COLORREF fill, COLORREF outline = kOutline) const
    {
        const std::vector<POINT> scaled = Scaled(corners);
        Filled(fill, outline, [&] { ::Polygon(dc, scaled.data(), static_cast<int>(scaled.size())); });
    }
    void Disc(int left, int top, int right, int bottom, COLORREF fill, COLORREF outline) const
    {
        Filled(fill, outline, [&] { Ellipse(dc, At(left), At(top), At(right), At(bottom)); });
    }
    void Bar(int left, int top, int right, int bottom, COLORREF fill) const
    {
        FillWith(dc, {At(left), At(top), At(right), At(bottom)}, fill);
    }
    void Stroke(const std::vector<POINT>& points, COLORREF colour) const
    {
        const HPEN pen = CreatePen(PS_SOLID, std::max(2, size / 9), colour);
        const HGDIOBJ oldPen = SelectObject(dc, pen);
        const std::vector<POINT> scaled = Scaled(points);
        Polyline(dc, scaled.data(), static_cast<int>(scaled.size()));
        SelectObject(dc, oldPen);
        DeleteObject(pen);
    }
};

void DrawRoot(const Pen16& pen) // a letter tray
{
    pen.Polygon({{3, 2}, {12, 2}, {14, 9}, {14, 13}, {1, 13}, {1, 9}}, RGB(186, 206, 232));
    pen.Polygon({{1, 9}, {5, 9}, {6, 11}, {9, 11}, {10, 9}, {14, 9}, {14, 13}, {1, 13}}, RGB(120, 156, 204));
}

void DrawFolder(const Pen16& pen)
{
    pen.Polygon({{1, 3}, {6, 3}, {7, 5}, {14, 5}, {14, 13}, {1, 13}}, RGB(247, 214, 120));
}

void DrawEnvelope(const Pen16& pen, COLORREF paper)
{
    pen.Polygon({{0, 3}, {14, 3}, {14, 12}, {0, 12}}, paper);
    pen.Polygon({{0, 3}, {14, 3}, {7, 8}}, paper);
}

// All saved: a disc with a tick. Some: a diamond, half of it filled. None: a square with an exclamation mark.
// Told apart without their colours too.
void DrawGreen(const Pen16& pen)
{
    constexpr COLORREF kGreen = RGB(28, 138, 56);
    DrawEnvelope(pen, RGB(214, 240, 214));
    pen.Disc(6, 6, 16, 16, kGreen, kGreen);
    pen.Stroke({{8, 11}, {10, 13}, {14, 8}}, kWhite);
}

void DrawYellow(const Pen16& pen)
{
    constexpr COLORREF kDark = RGB(150, 100, 0);
    DrawEnvelope(pen, RGB(255, 244, 200));
    pen.Polygon({{10, 5}, {15, 10}, {10, 15}, {5, 10}}, kWhite, kDark);
    pen.Polygon({{10, 5}, {10, 15}, {5, 10}}, RGB(244, 180, 0), kDark);
}

void DrawRed(const Pen16& pen)
{
    constexpr COLORREF kRed = RGB(196, 36, 36);
    DrawEnvelope(pen, RGB(250, 220, 216));
    pen.Polygon({{7, 7}, {15, 7}, {15, 15}, {7, 15}}, kRed, kRed);
    pen.Bar(10, 8, 12, 12, kWhite);
    pen.Bar(10, 13, 12, 15, kWhite);
}

void Draw(const Pen16& pen, const Text& key)
{
    if (key == u"root")
        DrawRoot(pen);
    else if (key == u"other")
        DrawFolder(pen);
    else if (key == u"envelope")
        DrawEnvelope(pen, kWhite);
    else if (key == u"green")
        DrawGreen(pen);
    else if (key == u"yellow")
        DrawYellow(pen);
    else
        DrawRed(pen);
}

} // namespace

HIMAGELIST MakeTreeImages(int size)
{
    const int count = static_cast<int>(std::size(kKeys));
    const HIMAGELIST images = ImageList_Create(size, size, ILC_COLOR24 | ILC_MASK, count, 0);
    const HDC screen = GetDC(nullptr);
    const HDC dc = CreateCompatibleDC(screen);
    for (const Text& key : kKeys) {
        const HBITMAP bitmap = CreateCompatibleBitmap(screen, size, size);
        const HGDIOBJ oldBitmap = SelectObject(dc, bitmap);
        const RECT whole = {0, 0, size, size};
        const HBRUSH clear = CreateSolidBrush(kClear);
        FillRect(dc, &whole, clear);
        DeleteObject(clear);
        Draw({dc, size}, key);
        SelectObject(dc, oldBitmap); // a bitmap that is selected cannot be added
        ImageList_AddMasked(images, bitmap, kClear);
        DeleteObject(bitmap);
    }
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return images;
}

int TreeImage(const Text& key)
{
    const auto found = std::find(std::begin(kKeys), std::end(kKeys), key);
    return found == std::end(kKeys) ? 1 : static_cast<int>(found - std::begin(kKeys));
}
