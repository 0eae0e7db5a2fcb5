// SortPrefix.h: the beginning of a text as a number, to be compared first: texts themselves lie all over the
// memory.
#pragma once
#include "text/Text.h"

// Numbers that differ stand in the order of the texts, unit by unit and without regard to case. Equal ones
// say nothing: of texts in Latin-1 they are the same for eight units.
std::uint64_t SortPrefix(TextView text);
