// CodePage1252.h: Windows' code page 1252 as a fixed table, for systems without ANSI code pages.
// The five bytes that the published table leaves undefined (81, 8D, 8F, 90, 9D) are the control characters
// of the same number, both ways, as in Windows. Nothing is fitted: each unit that the page lacks becomes one
// "?", so a character outside the basic plane becomes two.
#pragma once
#include "platform/CodePage.h"

struct CodePage1252 : CodePage {
    std::string ToAnsi(TextView text) override;
    Text FromAnsi(std::string_view bytes) override;
    Text FromUtf8Bytes(std::string_view bytes) override; // U+FFFD for each maximal bad part
};
