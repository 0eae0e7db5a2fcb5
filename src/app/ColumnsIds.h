// ColumnsIds.h: the box that asks what the list's columns are, as resource and program call it.
#pragma once

#define ID_COLUMNS 5
// The choices, in the order of the columns that are asked for.
#define ID_FIRST_COLUMN 101
