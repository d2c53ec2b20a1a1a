// The worker: a process that searches what the front orders, one search after the other, until it is ended.
#pragma once

#include <string>

namespace ondrel::standard_uci {

// Reads orders from standard input, answers on standard output, and shows its progress on the page of this name.
int run_worker(const std::string& number_of_parent, const std::string& page_name);

}  // namespace ondrel::standard_uci
