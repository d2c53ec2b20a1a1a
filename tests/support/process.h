// The engine as a process of its own, the way an interface meets it.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

// What came of a process that has ended.
struct Outcome {
    std::string output;      // all of standard output
    std::string error;       // all of standard error
    int exit_code = -1;      // -1 if killed by a signal or by the time limit
    int signal = 0;          // the signal that ended it, 0 for none
    bool timed_out = false;  // did not end within the limit and was killed

    [[nodiscard]] std::vector<std::string> lines() const;            // of the output
    [[nodiscard]] int count_starting(std::string_view start) const;  // output lines that begin so
};

// Starts the built engine, writes the input, closes it and waits for the end.
Outcome run_engine(std::string_view input, std::chrono::milliseconds limit = std::chrono::seconds(60));

// A live engine: lines are written and read one at a time.
class EngineProcess {
public:
    EngineProcess();
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    void write(std::string_view line) const;  // with a line end
    void close_input();
    // The next output line without its end; false when none comes within the limit or the output has ended.
    bool read(std::string& line, std::chrono::milliseconds limit = std::chrono::seconds(30));
    // Waits for the end of the process and returns its exit code, -1 for a signal or when the limit is over.
    int wait_for_exit(std::chrono::milliseconds limit = std::chrono::seconds(30));
    // Its memory in use in kB, -1 if that cannot be had.
    [[nodiscard]] int kilobytes_in_use() const;

private:
    int pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string unread_;
};

}  // namespace tests
