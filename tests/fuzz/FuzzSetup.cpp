#include "FuzzSetup.h"

#include <gtest/gtest.h>

#include <iostream>

void SetUpFuzzing() {
    GTEST_FLAG_SET(break_on_failure, true);
    std::cout.rdbuf(nullptr);
    std::cerr.rdbuf(nullptr);
}
