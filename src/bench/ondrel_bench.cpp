// ondrel-bench: holds a fixed set of conversations with the engine, nearly all without the clock, and shows the nodes, the
// speed and a signature. The signature is of every line that the engine writes, so that a change which is to leave the
// search alone must leave the signature as it was.
#include "bench/cases.h"

#include "uci/command_loop.h"
#include "uci/process.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>

namespace {

using namespace ondrel;
using bench_clock = std::chrono::steady_clock;

// FNV-1a of all lines so far.
class Signature {
public:
    void add(std::string_view text) {
        for (const char x : text) {
            sum_ = (sum_ ^ static_cast<unsigned char>(x)) * 0x100000001B3U;
        }
    }
    [[nodiscard]] std::uint64_t sum() const { return sum_; }

private:
    std::uint64_t sum_ = 0xCBF29CE484222325U;
};

// The line without what the clock has put there; empty for a line that is the clock's alone.
std::string without_clock(std::string line) {
    constexpr std::string_view field = " time ";
    if (line.starts_with("info nps")) {
        return {};
    }
    if (const auto at = line.find(field); at != std::string::npos) {
        const auto end = line.find(' ', at + field.size());
        line.erase(at, end == std::string::npos ? std::string::npos : end - at);
    }
    return line;
}

constexpr std::string_view no_clock = "99999999";

// The lines of one step; `clock` is what its go line hands over.
std::string lines_of_step(std::string_view step, std::string& clock) {
    constexpr std::string_view clock_step = "clock ";
    if (step.starts_with(clock_step)) {
        clock = step.substr(clock_step.size());
        return {};
    }
    if (step.starts_with("fen ") || step.starts_with("startpos")) {
        return "position " + std::string(step) + "\ngo wtime " + clock + " btime " + clock + "\n";
    }
    const auto equals = step.find('=');
    std::string line = "setoption name " + std::string(step.substr(0, equals));
    if (equals != std::string_view::npos) {
        line += " value " + std::string(step.substr(equals + 1));
    }
    return line + "\n";
}

std::string conversation_of(const BenchCase& x) {
    constexpr std::string_view separator = "; ";
    std::string lines = "setoption name Time control value false\n";
    std::string clock(no_clock);
    for (std::string_view rest = x.steps; !rest.empty();) {
        const auto end = std::min(rest.find(separator), rest.size());
        lines += lines_of_step(rest.substr(0, end), clock);
        rest.remove_prefix(std::min(end + separator.size(), rest.size()));
    }
    return lines;
}

// Holds the conversation and returns what the engine has written.
std::string hold_conversation(const BenchCase& x) {
    std::istringstream from(conversation_of(x));
    std::ostringstream to;
    auto* const input = std::cin.rdbuf(from.rdbuf());
    auto* const output = std::cout.rdbuf(to.rdbuf());
    std::cin.clear();
    begin_process();
    run_command_loop();
    std::cin.rdbuf(input);
    std::cout.rdbuf(output);
    return to.str();
}

// Nodes of the searches whose lines these are: each tells its own in its last line.
std::uint64_t nodes_told(const std::string& line) {
    constexpr std::string_view field = " nodes ";
    const auto at = line.find(field);
    return at == std::string::npos || line.find(" currmove ") != std::string::npos
               ? 0
               : std::stoull(line.substr(at + field.size()));
}

// What the lines of a conversation come to.
struct Outcome {
    std::uint64_t nodes = 0;
    std::string reply;
};

// Adds the lines to the signature.
Outcome sign(const std::string& text, Signature& signature) {
    std::istringstream from(text);
    Outcome outcome;
    for (std::string line; std::getline(from, line); outcome.reply = line) {
        if (const std::string kept = without_clock(line); !kept.empty()) {
            signature.add(kept);
            signature.add("\n");
            outcome.nodes += nodes_told(kept);
        }
    }
    return outcome;
}

// The lines of each conversation, with an empty line behind each, for who would play them to an engine.
void show_all(bool quick_only) {
    for (const BenchCase& x : bench_cases) {
        if (!quick_only || x.quick) {
            std::printf("%s\n", conversation_of(x).c_str());
        }
    }
}

void run_all(bool quick_only) {
    Signature signature;
    std::uint64_t total = 0;
    std::chrono::duration<double> total_time{};
    int number = 0;
    for (const BenchCase& x : bench_cases) {
        ++number;
        if (quick_only && !x.quick) {
            continue;
        }
        const auto before = bench_clock::now();
        const std::string text = hold_conversation(x);
        const std::chrono::duration<double> time = bench_clock::now() - before;
        const Outcome outcome = sign(text, signature);
        total += outcome.nodes;
        total_time += time;
        std::printf("%2d %10llu nodes %8.3f s  %-15s  %.100s\n", number, static_cast<unsigned long long>(outcome.nodes),
                    time.count(), outcome.reply.c_str(), x.steps.data());
        std::fflush(stdout);
    }
    const double seconds = total_time.count();
    std::printf("Time: %.3f s\n", seconds);
    std::printf("Speed: %.0f nodes/s\n", seconds > 0 ? static_cast<double>(total) / seconds : 0.0);
    std::printf("Bench: %llu %016llx\n", static_cast<unsigned long long>(total),
                static_cast<unsigned long long>(signature.sum()));
}

}  // namespace

int main(int count, char** arguments) {
    bool quick_only = false;
    bool show = false;
    for (int k = 1; k < count; ++k) {
        if (std::strcmp(arguments[k], "quick") == 0) {
            quick_only = true;
        } else if (std::strcmp(arguments[k], "show") == 0) {
            show = true;
        } else {
            std::fprintf(stderr, "usage: ondrel-bench [quick] [show]\n");
            return 2;
        }
    }
    show ? show_all(quick_only) : run_all(quick_only);
    return 0;
}
