#include "compare/shorten.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace compare {

namespace {

class Shortener {
public:
    Shortener(Conversation conversation, const std::function<bool(const Conversation&)>& fails, int left)
        : best_(std::move(conversation)), fails_(fails), left_(left) {}

    Conversation run() {
        for (bool shorter = true; shorter && left_ > 0;) {
            shorter = drop_blocks_of_lines();
            shorter = lower_depths() || shorter;
            shorter = drop_last_moves() || shorter;
        }
        return best_;
    }

private:
    Conversation best_;
    const std::function<bool(const Conversation&)>& fails_;
    int left_;

    bool take_if_fails(const Conversation& candidate) {
        if (left_ <= 0) {
            return false;
        }
        --left_;
        if (!fails_(candidate)) {
            return false;
        }
        best_ = candidate;
        return true;
    }

    bool take_if_fails_with(std::size_t line, const std::string& text) {
        Conversation candidate = best_;
        candidate.lines[line] = text;
        return take_if_fails(candidate);
    }

    // Large blocks first, from the end.
    bool drop_blocks_of_lines() {
        bool shorter = false;
        for (std::size_t size = std::max<std::size_t>(best_.lines.size() / 2, 1); size > 0; size /= 2) {
            for (std::size_t end = best_.lines.size(); end >= size && end > 0; --end) {
                Conversation candidate = best_;
                const auto last = candidate.lines.begin() + static_cast<std::ptrdiff_t>(end);
                candidate.lines.erase(last - static_cast<std::ptrdiff_t>(size), last);
                if (take_if_fails(candidate)) {
                    shorter = true;
                    end = std::min(end, best_.lines.size() + 1);
                }
            }
        }
        return shorter;
    }

    bool lower_depths() {
        bool shorter = false;
        const std::string deep = "setoption name Deep value ";
        for (std::size_t i = 0; i < best_.lines.size(); ++i) {
            while (best_.lines[i].rfind(deep, 0) == 0 && best_.lines[i].back() > '0') {
                const char lower = static_cast<char>(best_.lines[i].back() - 1);
                if (!take_if_fails_with(i, deep + lower)) {
                    break;
                }
                shorter = true;
            }
        }
        return shorter;
    }

    // The last word of a list of moves, as long as four letters or more precede it there.
    static std::string without_last_word(const std::string& line) {
        const auto list = line.find(" moves ");
        const auto blank = line.find_last_of(' ');
        return list != std::string::npos && blank > list + 6 ? line.substr(0, blank) : line;
    }

    bool drop_last_moves() {
        bool shorter = false;
        for (std::size_t i = 0; i < best_.lines.size(); ++i) {
            for (int words = 16; words > 0; words /= 2) {
                for (;;) {
                    std::string text = best_.lines[i];
                    for (int k = 0; k < words; ++k) {
                        text = without_last_word(text);
                    }
                    if (text == best_.lines[i] || !take_if_fails_with(i, text)) {
                        break;
                    }
                    shorter = true;
                }
            }
        }
        return shorter;
    }
};

}  // namespace

Conversation shorten(const Conversation& conversation, const std::function<bool(const Conversation&)>& fails,
                     int most_candidates) {
    return Shortener(conversation, fails, most_candidates).run();
}

}  // namespace compare
