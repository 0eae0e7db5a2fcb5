// Json.h: texts as JSON has them.
#pragma once
#include "text/Text.h"

// In quotes, as UTF-8; a lone surrogate becomes its \u escape.
std::string JsonText(TextView text);
