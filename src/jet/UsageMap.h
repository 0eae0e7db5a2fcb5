// UsageMap.h: sets of pages as the file keeps them: the pages of a table, those with room, those in use.
// A map is a row on a page of maps: a bitmap behind its first page's number, or, once that is too short,
// a list of bitmap pages.
// Fails by: DatabaseError for a map that cannot be followed.
#pragma once
#include "jet/DataPage.h"

#include <vector>

namespace jet {

// All pages of the map, ascending. Every one lies inside the file.
std::vector<PageNumber> PagesOf(PageFile& file, RowId map);

inline constexpr RowId kFreePages{1, 0}; // the map in which a 1 means free, also for pages beyond its end

// Throws when the map could not take every page that the file may come to have: other programs know forms
// that AddToMap does not.
void NeedExtensible(PageFile& file, RowId map);
bool IsPageFree(PageFile& file, PageNumber page); // by the map of free pages, which must be extensible

// Puts a page into a map or takes it out. A table's map that does not reach the page is moved there if it
// is empty and becomes a list of bitmap pages otherwise; taking out what it does not reach does nothing.
void AddToMap(WriteSet& writes, RowId map, PageNumber page, Phase phase);
void TakeFromMap(WriteSet& writes, RowId map, PageNumber page, Phase phase);

// Takes every page that the operation adds, those this call adds included, out of the map of free pages.
void MarkFreshPagesUsed(WriteSet& writes);

std::string NewUsageMap(std::size_t bytes = 69); // an empty one; 69 bytes reach 512 pages

} // namespace jet
