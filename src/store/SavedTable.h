// SavedTable.h: the table of exported e-mails, as a new database gets it.
#pragma once
#include "jet/Creator.h"

// A subject may have any length; a CRC text has at most 8 characters.
inline NewTable SavedTable()
{
    return {u"saved",
            {{u"efolder", NewColumnType::text, 255},
             {u"esubject", NewColumnType::memo, 0},
             {u"ecrc", NewColumnType::text, 8}}};
}
