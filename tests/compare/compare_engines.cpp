// Plays two engines the same random conversations and compares what they write.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "compare/conversations.h"
#include "compare/difference.h"
#include "compare/shorten.h"

namespace compare {

namespace {

constexpr const char* usage =
    "usage: compare_engines --engines A B [--seed N] [--first N] [--conversations N | --seconds N]\n"
    "                       [--counting] [--limit SECONDS] [--out DIR] [--replay FILE]\n"
    "A is the judge, the plain engine. --counting: both engines have the clock that counts its readings.\n"
    "Conversation N of a seed is the same everywhere; --first begins with it. --out: where the conversations with a\n"
    "difference are written, as they were and shortened. --replay: one conversation from such a file.\n";

struct Arguments {
    Engines engines;
    std::uint64_t seed = 1;
    int first = 0;
    std::optional<int> conversations;
    std::optional<double> seconds;
    Clock clock = Clock::real;
    std::filesystem::path out = ".";
    std::optional<std::string> replay;
};

Arguments read_arguments(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        const auto value = [&]() -> std::string {
            if (++i >= argc) {
                throw std::invalid_argument(name + " needs a value");
            }
            return argv[i];
        };
        if (name == "--engines") {
            arguments.engines.first = value();
            arguments.engines.second = value();
        } else if (name == "--seed") {
            arguments.seed = std::stoull(value());
        } else if (name == "--first") {
            arguments.first = std::stoi(value());
        } else if (name == "--conversations") {
            arguments.conversations = std::stoi(value());
        } else if (name == "--seconds") {
            arguments.seconds = std::stod(value());
        } else if (name == "--counting") {
            arguments.clock = Clock::counting;
        } else if (name == "--limit") {
            arguments.engines.limit_in_seconds = std::stod(value());
        } else if (name == "--out") {
            arguments.out = value();
        } else if (name == "--replay") {
            arguments.replay = value();
        } else {
            throw std::invalid_argument("unknown argument " + name);
        }
    }
    if (arguments.engines.first.empty()) {
        throw std::invalid_argument("no engines given");
    }
    return arguments;
}

// --- Conversations as files: lines to be written begin "> ", the clock's step stands in a line "# clock step N" ---

void write_conversation(const std::filesystem::path& path, const Conversation& conversation, const std::string& title) {
    std::ofstream file(path);
    file << "# " << title << '\n';
    if (conversation.clock_step != 0) {
        file << "# clock step " << conversation.clock_step << '\n';
    }
    for (const std::string& line : conversation.lines) {
        file << "> " << line << '\n';
    }
}

Conversation read_conversation(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    Conversation conversation;
    const std::string step = "# clock step ";
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("> ", 0) == 0) {
            conversation.lines.push_back(line.substr(2));
        } else if (line.rfind(step, 0) == 0) {
            conversation.clock_step = std::stoi(line.substr(step.size()));
        }
    }
    return conversation;
}

void print_difference(const Difference& difference) {
    std::cout << "  line " << difference.line << "\n  first:  " << difference.first
              << "\n  second: " << difference.second << std::endl;
}

// --- The comparison ---

class Comparison {
public:
    explicit Comparison(Arguments arguments) : arguments_(std::move(arguments)) {}

    // The exit status.
    int run() {
        if (arguments_.replay) {
            compare_one(read_conversation(*arguments_.replay), "replay");
        } else {
            for (int number = arguments_.first; !is_over(number - arguments_.first); ++number) {
                const std::uint64_t seed =
                    Random(arguments_.seed * 1000003ULL + static_cast<std::uint64_t>(number)).next();
                compare_one(random_conversation(seed, arguments_.clock),
                            "seed-" + std::to_string(arguments_.seed) + "-" + std::to_string(number) +
                                (arguments_.clock == Clock::counting ? "-counting" : ""));
                print_progress_now_and_then();
            }
            print_clock_counts();
        }
        if (too_dear_ > 0) {
            std::cout << too_dear_ << " conversations left out: too long for the first engine\n";
        }
        std::cout << conversations_ << " conversations, " << nodes_ << " nodes, " << differences_ << " differences"
                  << std::endl;
        return differences_ > 0 ? 1 : 0;
    }

private:
    using Time = std::chrono::steady_clock;

    Arguments arguments_;
    Time::time_point begin_ = Time::now();
    Time::time_point last_progress_ = begin_;
    int conversations_ = 0, too_dear_ = 0, differences_ = 0;
    std::int64_t nodes_ = 0;
    ClockCounts clock_;

    static double since(Time::time_point time) { return std::chrono::duration<double>(Time::now() - time).count(); }

    bool is_over(int begun) const {
        if (arguments_.conversations) {
            return begun >= *arguments_.conversations;
        }
        return since(begin_) >= arguments_.seconds.value_or(60);
    }

    void compare_one(const Conversation& conversation, const std::string& name) {
        const Verdict verdict = compare_on(arguments_.engines, conversation);
        if (verdict.too_dear) {
            ++too_dear_;
            return;
        }
        ++conversations_;
        nodes_ += verdict.nodes;
        clock_.searches += verdict.clock.searches;
        clock_.hard_stops += verdict.clock.hard_stops;
        clock_.soft_stops += verdict.clock.soft_stops;
        clock_.extensions += verdict.clock.extensions;
        clock_.refused_extensions += verdict.clock.refused_extensions;
        if (verdict.difference) {
            ++differences_;
            tell_difference(conversation, name, verdict);
        }
    }

    void tell_difference(const Conversation& conversation, const std::string& name, const Verdict& verdict) const {
        std::filesystem::create_directories(arguments_.out);
        const auto path = arguments_.out / (name + ".txt");
        write_conversation(path, conversation, name);
        std::cout << "difference: " << name << ", " << path.string() << "\n";
        print_difference(*verdict.difference);

        Engines quick = arguments_.engines;
        quick.limit_in_seconds = std::min(quick.limit_in_seconds, 3 + 2 * verdict.seconds_of_judge);
        const std::function<bool(const Conversation&)> fails = [&](const Conversation& candidate) {
            return compare_on(quick, candidate).difference.has_value();
        };
        const Conversation shortened = shorten(conversation, fails, 300);
        const auto short_path = arguments_.out / (name + "-short.txt");
        write_conversation(short_path, shortened, name + ", shortened");
        std::cout << "shortened to " << shortened.lines.size() << " lines: " << short_path.string() << "\n";
        if (const Verdict last = compare_on(quick, shortened); last.difference) {
            print_difference(*last.difference);
        }
    }

    void print_progress_now_and_then() {
        if (since(last_progress_) < 10) {
            return;
        }
        last_progress_ = Time::now();
        std::cout << conversations_ << " conversations, " << nodes_ << " nodes, " << differences_ << " differences, "
                  << static_cast<int>(since(begin_)) << " s";
        if (arguments_.clock == Clock::counting) {
            std::cout << "; of " << clock_.searches << " searches " << clock_.hard_stops << " stopped hard, "
                      << clock_.soft_stops << " soft, " << clock_.extensions << " extended";
        }
        std::cout << std::endl;
    }

    void print_clock_counts() const {
        if (arguments_.clock == Clock::counting) {
            std::cout << "of " << clock_.searches << " searches " << clock_.hard_stops << " stopped hard, "
                      << clock_.soft_stops << " soft, " << clock_.extensions << " extended, "
                      << clock_.refused_extensions << " refused an extension for want of time\n";
        }
    }
};

}  // namespace

}  // namespace compare

int main(int argc, char** argv) {
    try {
        return compare::Comparison(compare::read_arguments(argc, argv)).run();
    } catch (const std::exception& error) {
        std::cerr << "compare_engines: " << error.what() << '\n' << compare::usage;
        return 2;
    }
}
