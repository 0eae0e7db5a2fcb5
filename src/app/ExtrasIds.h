// ExtrasIds.h: the box of the extras, as resource and program call it.
#pragma once

#define ID_EXTRAS 3
#define ID_EXTRAS_PANE 4
#define ID_EXTRAS_HINT 101
// Of the first extra's check box or field; the others follow.
#define ID_FIRST_EXTRA 1000
