// Runs part of a test in a process of its own, since a process binds its logging library only once.
#pragma once

#include "tests/Testing.h"

// Runs `statements` in a child that then ends as a program does, and checks what it printed on stderr.
#define EXPECT_CHILD_PRINTS(statements, matcher)                                                             \
    EXPECT_EXIT(                                                                                             \
        {                                                                                                    \
            std::setbuf(stderr, nullptr); /* the library writes past the buffer */                           \
            statements;                                                                                      \
            std::exit(0);                                                                                    \
        },                                                                                                   \
        testing::ExitedWithCode(0), matcher)
