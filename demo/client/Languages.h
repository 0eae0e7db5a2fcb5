// Languages.h: what the client calls its columns, panes, buttons and menus in each language that it speaks.
#pragma once
#include <span>

struct Language {
    const wchar_t* name; // as the command line has it
    const wchar_t *from, *subject, *to, *received, *sent;
    const wchar_t *folders, *folderList;
    const wchar_t *saveMessageAs, *save, *cancel, *fileName, *saveAsType, *mailFiles;
    const wchar_t *file, *saveAs, *exit;
};

std::span<const Language> Languages(); // the first is English
