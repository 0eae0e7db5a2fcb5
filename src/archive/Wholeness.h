// Wholeness.h: whether the bytes of a file are a whole e-mail.
#pragma once
#include "mail/MessageFields.h"
#include "text/Text.h"

enum class Wholeness { whole, empty, cutShort, noHeaders };

// why: what gives a cut away, without a full stop. No cut can be seen in a text without parts.
Wholeness WholenessOf(std::string_view message, const MessageFields& fields, Text& why);
