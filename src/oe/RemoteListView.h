// RemoteListView.h: reads and drives the client's message list, a list view of another process.
// Fails by: nothing is thrown. What was not answered is no value, never 0: a client that is silent or gone
// says neither "no e-mails" nor "the first row".
#pragma once
#include "oe/OeClient.h"

#include <optional>

// An operation of its own: it waits for the client to be free.
std::optional<std::int32_t> ListItemCount(OeClient& client);
// The others belong to an operation.
std::optional<std::int32_t> ListColumnCount(OeClient& client); // 0 without a header
std::optional<std::int32_t> SelectedIndex(OeClient& client);   // first selected row, -1 when none
std::optional<std::int32_t> SelectedCount(OeClient& client);

// Fills client.columns and columnsKnown. Kept: a list of a single column yields no titles, and neither does
// one whose titles are all empty. False when the list has no columns, or the order or a title was asked for
// and not answered: nothing that is read by titles is to be trusted then.
bool ReadListColumns(OeClient& client);
// Column index by title in any letter case, the leftmost of several; -1 when there is none. Kept: 0 for every
// title while no columns are known.
int ColumnIndexByTitle(const OeClient& client, TextView title);

// The row's texts by column index, each at most 128 characters, and one more that is empty as a rule; empty
// texts for a negative row. No texts at all without a header, and when one of a column could not be read:
// with a part of its details an e-mail would pass for another.
std::vector<Text> ReadItemTexts(OeClient& client, std::int32_t item);

// The same without asking how many columns the list has, `count`; of some of them alone, the other texts are
// empty.
struct ColumnChoice {
    std::vector<std::uint32_t> columns; // one at least
    std::size_t count;
};
ColumnChoice AllColumns(std::size_t count); // and the one beyond
std::vector<Text> ReadItemTexts(OeClient& client, std::int32_t item, const ColumnChoice& choice);

enum class OtherItems { keep, clear };
// Selects and focuses a row. Kept: does nothing when as many rows are selected as the row's number says.
void SelectListItem(OeClient& client, std::int32_t item, OtherItems others);
// Selects and focuses the row, and no other. Whether it was not so.
bool SelectOnly(OeClient& client, std::int32_t item);
// LVIS_FOCUSED (1) and LVIS_SELECTED (2) of one row, or of all with item -1; then scrolls the row into view.
void SetListItemState(OeClient& client, std::int32_t item, std::uint32_t state);
