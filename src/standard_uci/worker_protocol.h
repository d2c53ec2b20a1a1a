// The private lines between front and worker. The front orders a search, the worker tells what it finds in exact
// numbers; both sides write and read by these routines alone.
#pragma once

#include "standard_uci/engine_port.h"
#include "standard_uci/words.h"

#include <variant>

namespace ondrel::standard_uci {

// --- From the front: an option at any time between searches, or a search in three lines ---

struct EngineSetting {
    std::string name;
    std::string value;  // empty for a button
};

struct SearchTask {
    std::string position_line;
    std::vector<EngineMove> allowed;
    int depth_limit = deepest_depth;
    bool to_the_limit = false;  // this depth is asked for: a mate found before does not end the search
    int lines = 1;
    std::int64_t engine_clock = 0;
};

std::string line_of(const EngineSetting& setting);
std::vector<std::string> lines_of(const SearchTask& task);

// Puts the lines of a search together again.
class OrderReader {
public:
    // Nothing while the line is but a part of an order.
    std::optional<std::variant<EngineSetting, SearchTask>> read(std::string_view line);

private:
    SearchTask task_;
};

// --- From the worker ---

struct FoundLine {
    int rank = 1;  // among several lines
    int depth = 0;
    int deepest_ply = 0;
    int hashfull = 0;
    float score = 0;
    bool is_upper_bound = false;
    bool is_hidden = false;  // not to be shown unless it is all there is
    std::uint64_t nodes = 0;
    std::uint32_t serial = 0;
    std::vector<EngineMove> moves;
};

struct MoveBegun {
    int depth = 0;
    int number = 0;
    EngineMove move;
};

struct DepthFinished {
    int depth = 0;
};

struct SearchFinished {};

using WorkerMessage = std::variant<FoundLine, MoveBegun, DepthFinished, SearchFinished>;

std::string line_of(const WorkerMessage& message);

// Nothing, if the line is none of a worker.
std::optional<WorkerMessage> read_worker_message(std::string_view line);

}  // namespace ondrel::standard_uci
