// Cuts what arrives in pieces of any size into lines. The front keeps one for the client and one for each worker.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace ondrel::standard_uci {

class LineSplitter {
public:
    explicit LineSplitter(std::size_t longest) : longest_(longest) {}

    // Calls `take` for each line that has ended, without its line end, and `refuse` for one that is too long.
    template <class Take, class Refuse>
    void feed(std::string_view piece, Take take, Refuse refuse) {
        for (auto k = piece.find('\n'); k != std::string_view::npos; k = piece.find('\n')) {
            keep(piece.substr(0, k));
            piece.remove_prefix(k + 1);
            finish(take, refuse);
        }
        keep(piece);
    }

    // The last line may lack its end.
    template <class Take, class Refuse>
    void end(Take take, Refuse refuse) {
        if (!line_.empty() || is_too_long_) {
            finish(take, refuse);
        }
    }

private:
    void keep(std::string_view piece) {
        is_too_long_ = is_too_long_ || line_.size() + piece.size() > longest_;
        if (!is_too_long_) {
            line_ += piece;
        }
    }

    template <class Take, class Refuse>
    void finish(Take take, Refuse refuse) {
        const std::string line = std::exchange(line_, {});
        if (std::exchange(is_too_long_, false)) {
            refuse();
        } else {
            take(line.ends_with('\r') ? std::string_view(line).substr(0, line.size() - 1) : std::string_view(line));
        }
    }

    std::size_t longest_;
    std::string line_;
    bool is_too_long_ = false;
};

}  // namespace ondrel::standard_uci
