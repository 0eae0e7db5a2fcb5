#include "controls/DotFont.h"

#include <cstddef>
#include <cstring>

namespace {

// Characters side by side, as they are seen.
struct Sheet {
    const char16_t* characters;
    const char* rows[kGlyphHeight];
};

// clang-format off
constexpr Sheet kSheets[] = {
    {u" !\"#$%&'()*+,-./",
     {"..... ..#.. .#.#. .#.#. ..#.. ##..# .##.. ..#.. ...#. .#... ..... ..... ..... ..... ..... ....#",
      "..... ..#.. .#.#. .#.#. .#### ##..# #..#. ..#.. ..#.. ..#.. ..#.. ..#.. ..... ..... ..... ....#",
      "..... ..#.. .#.#. ##### #.#.. ...#. #.#.. .#... .#... ...#. #.#.# ..#.. ..... ..... ..... ...#.",
      "..... ..#.. ..... .#.#. .###. ..#.. .#... ..... .#... ...#. .###. ##### ..... .###. ..... ..#..",
      "..... ..#.. ..... ##### ..#.# .#... #.#.# ..... .#... ...#. #.#.# ..#.. ..#.. ..... ..... .#...",
      "..... ..... ..... .#.#. ####. #..## #..#. ..... ..#.. ..#.. ..#.. ..#.. ..#.. ..... .##.. #....",
      "..... ..#.. ..... .#.#. ..#.. #..## .##.# ..... ...#. .#... ..... ..... .#... ..... .##.. #...."}},
    {u"0123456789:;<=>?",
     {".###. ..#.. .###. ##### ...#. ##### ..##. ##### .###. .###. ..... ..... ...#. ..... .#... .###.",
      "#...# .##.. #...# ...#. ..##. #.... .#... ....# #...# #...# .##.. .##.. ..#.. ..... ..#.. #...#",
      "#..## ..#.. ....# ..#.. .#.#. ####. #.... ...#. #...# #...# .##.. .##.. .#... ##### ...#. ....#",
      "#.#.# ..#.. ..##. ...#. #..#. ....# ####. ..#.. .###. .#### ..... ..... #.... ..... ....# ...#.",
      "##..# ..#.. .#... ....# ##### ....# #...# .#... #...# ....# .##.. .##.. .#... ##### ...#. ..#..",
      "#...# ..#.. #.... #...# ...#. #...# #...# .#... #...# ...#. .##.. ..#.. ..#.. ..... ..#.. .....",
      ".###. .###. ##### .###. ...#. .###. .###. .#... .###. .##.. ..... .#... ...#. ..... .#... ..#.."}},
    {u"@ABCDEFGHIJKLMNO",
     {".###. .###. ####. .###. ###.. ##### ##### .###. #...# .###. ..### #...# #.... #...# #...# .###.",
      "#...# #...# #...# #...# #..#. #.... #.... #...# #...# ..#.. ...#. #..#. #.... ##.## ##..# #...#",
      "#.### #...# #...# #.... #...# #.... #.... #.... #...# ..#.. ...#. #.#.. #.... #.#.# ##..# #...#",
      "#.#.# ##### ####. #.... #...# ####. ####. #.### ##### ..#.. ...#. ##... #.... #.#.# #.#.# #...#",
      "#.### #...# #...# #.... #...# #.... #.... #...# #...# ..#.. ...#. #.#.. #.... #...# #..## #...#",
      "#.... #...# #...# #...# #..#. #.... #.... #...# #...# ..#.. #..#. #..#. #.... #...# #..## #...#",
      ".###. #...# ####. .###. ###.. ##### #.... .###. #...# .###. .##.. #...# ##### #...# #...# .###."}},
    {u"PQRSTUVWXYZ[\\]^_",
     {"####. .###. ####. .###. ##### #...# #...# #...# #...# #...# ##### .###. #.... .###. ..#.. .....",
      "#...# #...# #...# #...# ..#.. #...# #...# #...# #...# #...# ....# .#... #.... ...#. .#.#. .....",
      "#...# #...# #...# #.... ..#.. #...# #...# #...# .#.#. .#.#. ...#. .#... .#... ...#. #...# .....",
      "####. #...# ####. .###. ..#.. #...# #...# #.#.# ..#.. ..#.. ..#.. .#... ..#.. ...#. ..... .....",
      "#.... #.#.# #.#.. ....# ..#.. #...# #...# #.#.# .#.#. ..#.. .#... .#... ...#. ...#. ..... .....",
      "#.... #..#. #..#. #...# ..#.. #...# .#.#. ##.## #...# ..#.. #.... .#... ....# ...#. ..... .....",
      "#.... .##.# #...# .###. ..#.. .###. ..#.. #...# #...# ..#.. ##### .###. ....# .###. ..... #####"}},
    {u"`abcdefghijklmno",
     {".#... ..... #.... ..... ....# ..... ..##. ..... #.... ..#.. ...#. .#... .##.. ..... ..... .....",
      "..#.. ..... #.... ..... ....# ..... .#..# ..... #.... ..... ..... .#... ..#.. ..... ..... .....",
      "...#. .###. ####. .#### .#### .###. .#... .#### ####. .##.. ..##. .#..# ..#.. ##.#. ####. .###.",
      "..... ....# #...# #.... #...# #...# ###.. #...# #...# ..#.. ...#. .#.#. ..#.. #.#.# #...# #...#",
      "..... .#### #...# #.... #...# ##### .#... .#### #...# ..#.. ...#. .##.. ..#.. #.#.# #...# #...#",
      "..... #...# #...# #.... #...# #.... .#... ....# #...# ..#.. #..#. .#.#. ..#.. #.#.# #...# #...#",
      "..... .#### ####. .#### .#### .###. .#... .###. #...# .###. .##.. .#..# .###. #.#.# #...# .###."}},
    {u"pqrstuvwxyz{|}~",
     {"..... ..... ..... ..... .#... ..... ..... ..... ..... ..... ..... ...#. ..#.. .#... .....",
      "..... ..... ..... ..... .#... ..... ..... ..... ..... ..... ..... ..#.. ..#.. ..#.. .....",
      "####. .#### #.##. .#### ###.. #...# #...# #...# #...# #...# ##### ..#.. ..#.. ..#.. .#...",
      "#...# #...# ##..# #.... .#... #...# #...# #...# .#.#. #...# ...#. .#... ..#.. ...#. #.#.#",
      "####. .#### #.... .###. .#... #...# #...# #.#.# ..#.. .#### ..#.. ..#.. ..#.. ..#.. ...#.",
      "#.... ....# #.... ....# .#..# #...# .#.#. #.#.# .#.#. ....# .#... ..#.. ..#.. ..#.. .....",
      "#.... ....# #.... ####. ..##. .#### ..#.. .#.#. #...# .###. ##### ...#. ..#.. .#... ....."}},
    {u"\u25A1\u00DF\u00C6\u00E6\u00D8\u00F8\u00D0\u00F0\u00DE\u00FE",
     {"##### .##.. .#### ..... .#### ..... .##.. #.#.. #.... #....",
      "#...# #..#. #.#.. ..... #..## ..... .#.#. .#... ####. #....",
      "#...# #..#. #.#.. ##.#. #.#.# .#### .#..# #.#.. #...# ####.",
      "#...# #.#.. ##### ..#.# #.#.# #..## ###.# ...#. #...# #...#",
      "#...# #..#. #.#.. .#### #.#.# #.#.# .#..# .#### ####. ####.",
      "#...# #...# #.#.. #.#.. ##..# ##..# .#.#. #...# #.... #....",
      "##### #.##. #.### .#### ####. ####. .##.. .###. #.... #...."}},
    {u"\u00A3\u20AC\u00A7\u00B0\u00A1\u00BF\u00AB\u00BB\u00D7\u00F7",
     {"..##. ..##. .###. .##.. ..#.. ..#.. ..... ..... ..... .....",
      ".#..# .#..# #.... #..#. ..... ..... ..#.# #.#.. ..... ..#..",
      ".#... ###.. .##.. #..#. ..#.. ..#.. .#.#. .#.#. .#.#. .....",
      "###.. .#... #..#. .##.. ..#.. .#... #.#.. ..#.# ..#.. #####",
      ".#... ###.. .##.. ..... ..#.. #.... .#.#. .#.#. .#.#. .....",
      ".#... .#..# ...#. ..... ..#.. #...# ..#.# #.#.. ..... ..#..",
      "##### ..##. ###.. ..... ..#.. .###. ..... ..... ..... ....."}},
};
// clang-format on

constexpr char16_t kBox = u'\u25A1';

// Letter and mark of each character from U+00C0 to U+017F; blanks for those that are not made of two.
constexpr char16_t kFirstComposed = 0xC0;
constexpr const char* kComposed = "A`A'A^A~A:Ao  C,E`E'E^E:I`I'I^I:  N~O`O'O^O~O:    U`U'U^U:Y'    "
                                  "a`a'a^a~a:ao  c,e`e'e^e:i`i'i^i:  n~o`o'o^o~o:    u`u'u^u:y'  y:"
                                  "A-a-A(a(A;a;C'c'C^c^C.c.CvcvDvdvD/d/E-e-E(e(E.e.E;e;EvevG^g^G(g("
                                  "G.g.G,g,H^h^H/h/I~i~I-i-I(i(I;i;I.i=    J^j^K,k,k=L'l'L,l,LvlvL."
                                  "l.L/l/N'n'N,n,Nvnvn=N,n,O-o-O(o(O\"o\"    R'r'R,r,RvrvS's'S^s^S,s,"
                                  "SvsvT,t,TvtvT/t/U~u~U-u-U(u(UouoU\"u\"U;u;W^w^Y^y^Y:Z'z'Z.z.Zvzvs=";

// Marks above a letter take the two upper rows, marks below it the lowest.
struct Mark {
    char name;
    std::uint8_t upper, lower;
};
constexpr Mark kMarksAbove[] = {
    {'`', 0b01000, 0b00100},  // grave
    {'\'', 0b00010, 0b00100}, // acute
    {'^', 0b00100, 0b01010},  // circumflex
    {'~', 0b01101, 0b10110},  // tilde
    {':', 0b01010, 0b00000},  // diaeresis
    {'o', 0b01110, 0b01010},  // ring, closed by the letter
    {'-', 0b01110, 0b00000},  // macron
    {'v', 0b01010, 0b00100},  // caron
    {'(', 0b10001, 0b01110},  // breve
    {'.', 0b00100, 0b00000},  // dot
    {'"', 0b00101, 0b01010},  // double acute
};
constexpr Mark kMarksBelow[] = {
    {',', 0b00100, 0b01100}, // cedilla
    {';', 0b00010, 0b00011}, // ogonek
};
constexpr std::uint8_t kStroke = 0b01100; // "/": through the middle row

// What else is common in messages, names and subjects.
constexpr struct {
    char16_t character;
    const char16_t* written;
} kWritten[] = {
    {u'\t', u" "},       {u'\u00A0', u" "},   {u'\u00A2', u"c"},   {u'\u00A5', u"Y"},  {u'\u00A6', u"|"},
    {u'\u00A8', u"\""},  {u'\u00A9', u"(c)"}, {u'\u00AA', u"a"},   {u'\u00AD', u"-"},  {u'\u00AE', u"(R)"},
    {u'\u00AF', u"-"},   {u'\u00B1', u"+-"},  {u'\u00B2', u"2"},   {u'\u00B3', u"3"},  {u'\u00B4', u"'"},
    {u'\u00B5', u"u"},   {u'\u00B7', u"."},   {u'\u00B8', u","},   {u'\u00B9', u"1"},  {u'\u00BA', u"o"},
    {u'\u00BC', u"1/4"}, {u'\u00BD', u"1/2"}, {u'\u00BE', u"3/4"}, {u'\u0132', u"IJ"}, {u'\u0133', u"ij"},
    {u'\u0152', u"OE"},  {u'\u0153', u"oe"},  {u'\u2010', u"-"},   {u'\u2011', u"-"},  {u'\u2012', u"-"},
    {u'\u2013', u"-"},   {u'\u2014', u"-"},   {u'\u2015', u"-"},   {u'\u2018', u"'"},  {u'\u2019', u"'"},
    {u'\u201A', u","},   {u'\u201C', u"\""},  {u'\u201D', u"\""},  {u'\u201E', u"\""}, {u'\u2020', u"+"},
    {u'\u2022', u"*"},   {u'\u2026', u"..."}, {u'\u2030', u"%o"},  {u'\u2039', u"<"},  {u'\u203A', u">"},
    {u'\u2116', u"No"},  {u'\u2122', u"TM"},  {u'\u2190', u"<-"},  {u'\u2192', u"->"}, {u'\u2212', u"-"},
};

bool FindDrawn(char16_t character, Glyph& glyph)
{
    for (const Sheet& sheet : kSheets) {
        const std::size_t at = std::u16string_view(sheet.characters).find(character);
        if (at == std::u16string_view::npos) continue;
        for (std::size_t row = 0; row < glyph.size(); ++row) {
            const char* dots = sheet.rows[row] + at * (kGlyphWidth + 1);
            glyph[row] = 0;
            for (int x = 0; x < kGlyphWidth; ++x)
                glyph[row] = static_cast<std::uint8_t>(glyph[row] << 1 | (dots[x] == '#'));
        }
        return true;
    }
    return false;
}

// A letter as high as the small ones are, in five rows from the one named.
Glyph Lowered(const Glyph& letter, std::size_t first)
{
    constexpr std::size_t kTall[] = {0, 1, 3, 4, 6}, kSmall[] = {2, 3, 4, 5, 6};
    Glyph low = {};
    for (std::size_t i = 0; i < 5; ++i) low[first + i] = letter[letter[0] | letter[1] ? kTall[i] : kSmall[i]];
    return low;
}

bool FindComposed(char16_t character, Glyph& glyph)
{
    if (character < kFirstComposed) return false;
    const std::size_t at = static_cast<std::size_t>(character - kFirstComposed) * 2;
    if (at >= std::strlen(kComposed) || kComposed[at] == ' ') return false;
    const char letter = kComposed[at], name = kComposed[at + 1];
    if (!FindDrawn(static_cast<char16_t>(letter), glyph)) return false;
    if (letter == 'i' || letter == 'j') glyph[0] = glyph[1] = 0; // the mark takes the dot's place
    for (const Mark& mark : kMarksAbove) {
        if (mark.name != name) continue;
        glyph = Lowered(glyph, 2);
        if (letter == 'o') { // lower still, or it would be a capital
            glyph[3] = glyph[2];
            glyph[2] = 0;
        }
        glyph[0] = mark.upper;
        glyph[1] = mark.lower;
    }
    for (const Mark& mark : kMarksBelow) {
        if (mark.name != name) continue;
        glyph = Lowered(glyph, 0);
        glyph[5] = mark.upper;
        glyph[6] = mark.lower;
    }
    if (name == '/') glyph[3] |= kStroke;
    return true;
}

bool IsControl(char16_t character)
{
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

} // namespace

Glyph GlyphOf(char16_t character)
{
    Glyph glyph = {};
    if (IsControl(character) || FindDrawn(character, glyph) || FindComposed(character, glyph)) return glyph;
    FindDrawn(kBox, glyph);
    return glyph;
}

std::u16string Displayable(std::u16string_view text)
{
    std::u16string shown;
    shown.reserve(text.size());
    for (const char16_t character : text) {
        if (character >= 0xDC00 && character <= 0xDFFF && !shown.empty() && shown.back() == kBox) continue;
        const bool leads = character >= 0xD800 && character <= 0xDBFF;
        const char16_t* written = nullptr;
        for (const auto& entry : kWritten)
            if (entry.character == character) written = entry.written;
        if (written)
            shown += written;
        else
            shown += leads ? kBox : character;
    }
    return shown;
}
