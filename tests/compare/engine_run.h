// One engine, one conversation: the lines are given on standard input, which then ends.
#pragma once

#include <string>
#include <vector>

namespace compare {

struct Conversation {
    std::vector<std::string> lines;
    int clock_step = 0;  // of the counting clock; 0: the engines run on real time
};

struct Run {
    std::vector<std::string> output;
    std::vector<std::string> errors;
    std::string end;  // how the process ended: "exit 0", "signal 11", "no end"
    bool out_of_time = false;
    double seconds = 0;  // of processor time
};

// The engine is killed when it has not ended after so much processor time.
Run run_engine(const std::string& program, const Conversation& conversation, double limit_in_seconds);

}  // namespace compare
