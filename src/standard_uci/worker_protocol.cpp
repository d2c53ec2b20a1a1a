#include "standard_uci/worker_protocol.h"

#include "standard_uci/score.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace ondrel::standard_uci {
namespace {

// A score travels as the bits of its float, so that it arrives as it was.
std::string bits_of(float score) { return std::to_string(std::bit_cast<std::uint32_t>(score)); }

float score_of(std::int64_t bits) { return std::bit_cast<float>(static_cast<std::uint32_t>(bits)); }

struct WriteMessage {
    std::string operator()(const FoundLine& x) const {
        std::string text = "found";
        const std::array<std::string, 9> fields{std::to_string(x.rank),
                                                std::to_string(x.depth),
                                                std::to_string(x.deepest_ply),
                                                std::to_string(x.hashfull),
                                                bits_of(x.score),
                                                std::to_string(x.is_upper_bound ? 1 : 0),
                                                std::to_string(x.is_hidden ? 1 : 0),
                                                std::to_string(x.nodes),
                                                std::to_string(x.serial)};
        for (const std::string& field : fields) {
            text += ' ' + field;
        }
        return text + ' ' + joined(x.moves);
    }
    std::string operator()(const MoveBegun& x) const {
        return "begun " + std::to_string(x.depth) + ' ' + std::to_string(x.number) + ' ' + x.move;
    }
    std::string operator()(const DepthFinished& x) const { return "depth " + std::to_string(x.depth); }
    std::string operator()(const SearchFinished&) const { return "finished"; }
};

// The numbers behind the first word, as many as are wanted; nothing, if there are not so many.
template <std::size_t count>
std::optional<std::array<std::int64_t, count>> numbers_in(const Words& words) {
    std::array<std::int64_t, count> numbers{};
    for (std::size_t k = 0; k < count; ++k) {
        const auto number = k + 1 < words.size() ? number_in(words[k + 1]) : std::nullopt;
        if (!number) {
            return std::nullopt;
        }
        numbers[k] = *number;
    }
    return numbers;
}

std::optional<WorkerMessage> read_found(const Words& words) {
    constexpr std::size_t fields = 9;
    const auto n = numbers_in<fields>(words);
    if (!n || words.size() < fields + 2 || !is_score(score_of((*n)[4]))) {
        return std::nullopt;
    }
    const auto field = [&](std::size_t k) { return static_cast<int>((*n)[k]); };
    return FoundLine{.rank = field(0),
                     .depth = field(1),
                     .deepest_ply = field(2),
                     .hashfull = field(3),
                     .score = score_of((*n)[4]),
                     .is_upper_bound = field(5) != 0,
                     .is_hidden = field(6) != 0,
                     .nodes = static_cast<std::uint64_t>((*n)[7]),
                     .serial = static_cast<std::uint32_t>((*n)[8]),
                     .moves = Words(words.begin() + fields + 1, words.end())};
}

}  // namespace

std::string line_of(const EngineSetting& setting) {
    return "option " + setting.name + (setting.value.empty() ? "" : " value " + setting.value);
}

std::vector<std::string> lines_of(const SearchTask& task) {
    return {task.position_line, "allow " + joined(task.allowed),
            "search " + std::to_string(task.depth_limit) + ' ' + std::to_string(task.lines) + ' ' +
                std::to_string(task.engine_clock) + ' ' + std::to_string(task.to_the_limit ? 1 : 0)};
}

std::optional<std::variant<EngineSetting, SearchTask>> OrderReader::read(std::string_view line) {
    const Words words = words_of(line);
    if (words.empty()) {
        return std::nullopt;
    }
    if (words[0] == "option") {
        auto [name, value] = name_and_value(Words(words.begin() + 1, words.end()));
        return EngineSetting{std::move(name), std::move(value)};
    }
    if (words[0] == "position") {
        task_.position_line = line;
    } else if (words[0] == "allow") {
        task_.allowed.assign(words.begin() + 1, words.end());
    } else if (const auto n = numbers_in<4>(words); words[0] == "search" && n) {
        task_.depth_limit = static_cast<int>((*n)[0]);
        task_.lines = static_cast<int>((*n)[1]);
        task_.engine_clock = (*n)[2];
        task_.to_the_limit = (*n)[3] != 0;
        return task_;
    }
    return std::nullopt;
}

std::string line_of(const WorkerMessage& message) { return std::visit(WriteMessage{}, message); }

std::optional<WorkerMessage> read_worker_message(std::string_view line) {
    const Words words = words_of(line);
    if (words.empty()) {
        return std::nullopt;
    }
    if (words[0] == "found") {
        return read_found(words);
    }
    if (const auto n = numbers_in<2>(words); words[0] == "begun" && n && words.size() == 4) {
        return MoveBegun{static_cast<int>((*n)[0]), static_cast<int>((*n)[1]), words[3]};
    }
    if (const auto n = numbers_in<1>(words); words[0] == "depth" && n) {
        return DepthFinished{static_cast<int>((*n)[0])};
    }
    if (words[0] == "finished") {
        return SearchFinished{};
    }
    return std::nullopt;
}

}  // namespace ondrel::standard_uci
