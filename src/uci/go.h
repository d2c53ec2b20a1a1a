// The clock of a go line. Called by the go wait of the command loop.
#pragma once

namespace ondrel {

// Reads the first clock of the go line `in`, whosever it is, by the count of its digits and its first digit. Leaves
// tempo and, in low time, deep, SEARCH_E, IIDS and EXTRA_EVAL of the search. A line without a clock changes nothing.
void read_clock();

}  // namespace ondrel
