// The fixture of the tests that look at single nodes.
#pragma once

#include "support/scripted.h"

#include <gtest/gtest.h>

namespace tests {

// A fresh process whose searches leave out what shortens or repeats a node's run.
class BareSearch : public testing::Test {
protected:
    void SetUp() override {
        fresh_process();
        bare_search();
    }
};

}  // namespace tests
