// Case.h: a row of most tables: why it is there, what is given, and what comes of it.
#pragma once

template <class Given, class Want = Given>
struct Case {
    const char* why;
    Given given;
    Want want;
};
