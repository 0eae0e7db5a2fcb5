// IndexPage.h: the index of a store as one page for a browser, with all that it needs in it: page/ holds its
// parts. It loads nothing, its policy lets nothing else in, and every text of an e-mail stays text.
// Fails by: the answer.
#pragma once
#include "archive/MailIndex.h"

// Replaces an earlier page at the path; another file of that name is not touched: FileError::exists. made: a
// date, to be shown.
FileError WriteIndexPage(Files& files, const MailIndex& index, const Text& path, const Text& made);

Text IndexPagePath(const Text& store); // where it belongs: links lead from there
Text IndexCsvPath(const Text& store);
