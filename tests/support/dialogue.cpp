#include "support/dialogue.h"

#include "uci/command_loop.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <streambuf>

namespace tests {
namespace {

// Standard input and output taken over for a time.
class Redirection {
public:
    Redirection(std::streambuf* input, std::streambuf* output)
        : cin_(std::cin.rdbuf(input)), cout_(std::cout.rdbuf(output)) {
        std::cin.clear();
    }
    ~Redirection() {
        std::cin.rdbuf(cin_);
        std::cout.rdbuf(cout_);
    }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;

private:
    std::streambuf* cin_;
    std::streambuf* cout_;
};

// Gives out one line at a time, and takes what was written before each.
class LineByLine : public std::streambuf {
public:
    LineByLine(const std::vector<Spoken>& spoken, std::ostringstream& output) : spoken_(spoken), output_(output) {}

    std::vector<Lines> answers() {
        collect();
        return {answers_.begin() + 1, answers_.end()};  // the first stands before the first line
    }

protected:
    int_type underflow() override {
        if (next_ == spoken_.size()) {
            return traits_type::eof();
        }
        collect();
        const Spoken& spoken = spoken_[next_];
        ++next_;
        spoken.on_request();
        line_ = spoken.line + '\n';
        setg(line_.data(), line_.data(), line_.data() + line_.size());
        return traits_type::to_int_type(*gptr());
    }

private:
    void collect() {
        std::istringstream written(output_.str());
        output_.str({});
        Lines& lines = answers_.emplace_back();
        for (std::string line; std::getline(written, line);) {
            lines.push_back(line);
        }
    }

    const std::vector<Spoken>& spoken_;
    std::ostringstream& output_;
    std::size_t next_ = 0;
    std::string line_;
    std::vector<Lines> answers_;
};

}  // namespace

std::vector<Lines> dialogue(const std::vector<Spoken>& spoken) {
    std::ostringstream output;
    LineByLine input(spoken, output);
    const Redirection redirection(&input, output.rdbuf());
    ondrel::run_command_loop();
    return input.answers();
}

std::string with_input(std::string_view input, const std::function<void()>& routine) {
    std::istringstream from{std::string(input)};
    std::ostringstream to;
    const Redirection redirection(from.rdbuf(), to.rdbuf());
    routine();
    return to.str();
}

int count_starting(const Lines& lines, std::string_view start) {
    return static_cast<int>(
        std::ranges::count_if(lines, [start](const std::string& line) { return line.starts_with(start); }));
}

int count_holding(const Lines& lines, std::string_view text) {
    return static_cast<int>(
        std::ranges::count_if(lines, [text](const std::string& line) { return line.find(text) != std::string::npos; }));
}

}  // namespace tests
