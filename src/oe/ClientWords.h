// ClientWords.h: the words of the client's own language by which its windows, buttons and columns are known.
// Window classes are not among them: they are the same in every language.
#pragma once
#include "text/Text.h"

#include <array>

// Letter case never matters.
struct ClientWords {
    // Captions of windows, or parts of them that no other window of the class has.
    Text folderPane, folderTree, saveDialog;
    Text saveButton;                        // in the Save dialog, with the mark of its mnemonic
    Text noButton, cancelButton, okButton;  // in the Save dialog and in boxes, without
    Text saveAsLetters;                     // capitals that, typed with Alt, choose "Save As" from the menu
    Text from, subject, received, sent, to; // titles of the list's columns

    std::array<TextView, 5> ColumnTitles() const { return {from, subject, received, sent, to}; }
};

inline const ClientWords kEnglishWords = {
    .folderPane = u"Folders",
    .folderTree = u"Folder List",
    .saveDialog = u"Save Message As",
    .saveButton = u"&Save",
    .noButton = u"No",
    .cancelButton = u"Cancel",
    .okButton = u"OK",
    .saveAsLetters = u"FA",
    .from = u"From",
    .subject = u"Subject",
    .received = u"Received",
    .sent = u"Sent",
    .to = u"To",
};
