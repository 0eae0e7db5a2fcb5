#include "app/Form1Images.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

constexpr COLORREF kClear = RGB(255, 0, 255); // drawn nowhere: becomes transparent
constexpr COLORREF kOutline = RGB(84, 90, 100);
const Text kKeys[] = {u"root", u"other", u"envelope", u"green", u"yellow", u"red"};

struct Pen16 {
    HDC dc;
    int size;
    int At(int sixteenth) const { return (sixteenth * size + 8) / 16; }

    void Polygon(std::vector<POINT> corners, COLORREF fill) const
    {
        for (POINT& corner : corners) corner = {At(corner.x), At(corner.y)};
        const HPEN pen = CreatePen(PS_SOLID, std::max(1, size / 16), kOutline);
        const HBRUSH brush = CreateSolidBrush(fill);
        const HGDIOBJ oldPen = SelectObject(dc, pen);
        const HGDIOBJ oldBrush = SelectObject(dc, brush);
        ::Polygon(dc, corners.data(), static_cast<int>(corners.size()));
        SelectObject(dc, oldBrush);
        SelectObject(dc, oldPen);
        DeleteObject(brush);
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
    pen.Polygon({{1, 4}, {14, 4}, {14, 12}, {1, 12}}, paper);
    pen.Polygon({{1, 4}, {14, 4}, {8, 9}, {7, 9}}, paper);
}

void Draw(const Pen16& pen, const Text& key)
{
    if (key == u"root")
        DrawRoot(pen);
    else if (key == u"other")
        DrawFolder(pen);
    else if (key == u"envelope")
        DrawEnvelope(pen, RGB(255, 255, 255));
    else if (key == u"green")
        DrawEnvelope(pen, RGB(120, 200, 110));
    else if (key == u"yellow")
        DrawEnvelope(pen, RGB(250, 214, 70));
    else
        DrawEnvelope(pen, RGB(226, 92, 80));
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
