// Conversations with ondrel-uci behind its seam, its worker and its clock played by the input as well. Whatever is said,
// each go has one bestmove, none comes before it, and the session ends when the client leaves.
//
// A line that begins with '<' is said by the worker, one with '+' lets as many milliseconds pass, '!' is the end of the
// worker, '#' puts a line on the page; every other line is the client's.
#include "standard_uci/support/surroundings.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace standard_uci_test;

void demand(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

bool is_move(std::string_view text) {
    return text == "0000" || (text.size() >= 4 && text[0] >= 'a' && text[0] <= 'h' && text[3] >= '1' && text[3] <= '8');
}

class Play {
public:
    void hear(const std::string& text) {
        switch (text.empty() ? '\0' : text[0]) {
            case '<': c_.session.worker_said(std::string_view(text).substr(1)); break;
            case '+': pass(number_in(text.substr(1)).value_or(1)); break;
            case '!': c_.session.worker_ended(); break;
            case '#': publish(text.substr(1)); break;
            default: client_line(text); break;
        }
        count_answers();
    }

    void end() {
        c_.session.client_left();
        count_answers();
        demand(asked_ == answered_, "each go has its answer at the end");
        demand(c_.around.has_left, "the session leaves with its client");
    }

private:
    static constexpr std::int64_t longest_pass = 5000;

    void client_line(const std::string& text) {
        const auto command = read_command(text);
        if (command && !c_.around.has_left) {
            asked_ += command->verb == Verb::go ? 1 : 0;
        }
        c_.session.client_said(text);
    }

    void pass(std::int64_t milliseconds) {
        for (const std::string& heard : c_.pass(std::clamp<std::int64_t>(milliseconds, 0, longest_pass))) {
            c_.around.to_client.push_back(heard);
        }
    }

    void publish(const std::string& text) {
        PublishedLine& line = c_.around.published;
        line.serial += 1;
        line.length = static_cast<std::uint32_t>(text.size());
        line.depth = static_cast<int>(text.size());
        for (std::size_t k = 0; k < text.size() && k / 4 < line.moves.size(); ++k) {
            line.moves[k / 4][k % 4] = text[k];
        }
        c_.around.nodes += text.size();
    }

    void count_answers() {
        for (const std::string& line : only(std::exchange(c_.around.to_client, {}), "bestmove ")) {
            ++answered_;
            demand(is_move(words_of(line).at(1)), "an answer is a move");
        }
        demand(asked_ - answered_ == (c_.session.is_searching() ? 1 : 0), "one answer for each go that is over");
    }

    Conversation c_;
    int asked_ = 0;
    int answered_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Play play;
    std::string line;
    for (std::size_t k = 0; k < size; ++k) {
        if (data[k] == '\n') {
            play.hear(std::exchange(line, {}));
        } else {
            line += static_cast<char>(data[k]);
        }
    }
    play.hear(line);
    play.end();
    return 0;
}
