// MessageFields.h: the header of a message field by field, as RFC 5322 means it and programs send it.
// Readable texts, addresses and dates are made of the values by ReadableText.h, AddressList.h and
// MessageDates.h; modEmailAnalysis.h reads the same as the mail client's list shows it. None of these
// functions can fail: what is no field is passed over.
#pragma once
#include <string>
#include <string_view>
#include <vector>

struct MessageField {
    std::string name;  // lower case, without the colon
    std::string value; // unfolded to one line, without blanks at its ends
};

struct MessageFields {
    std::vector<MessageField> fields; // in the order of the message
    bool ended = false;               // by an empty line; those before the first field do not count
    std::size_t bodyAt = 0;           // where the body begins; the size of the message without one
};

// Lines may end in CR LF, LF or CR.
MessageFields ReadMessageFields(std::string_view message);

// Of the first field of that name, which is in lower case; empty when there is none.
std::string_view FieldValue(const MessageFields& message, std::string_view name);

// Of a parameter behind a value such as multipart/mixed; boundary="...". The name is in lower case; empty
// when there is none.
std::string FieldParameter(std::string_view value, std::string_view name);

// Whether the message, or a part of it, is marked as attachment.
bool HasAttachment(std::string_view message, const MessageFields& fields);

// The line of a text that begins at start, without its end; start moves behind it.
std::string_view TakeLine(std::string_view text, std::size_t& start);

// ASCII letters only.
char LowerLetter(char letter);
bool BeginsWithNoCase(std::string_view text, std::string_view lowerCase);
std::string_view WithoutBlanks(std::string_view text); // at its ends: spaces, tabs, line ends
