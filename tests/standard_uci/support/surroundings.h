// A session's world without processes: a clock that the test moves, a worker whose part the test plays, and all that
// was written.
#pragma once

#include "standard_uci/session.h"

#include <limits>
#include <string>
#include <vector>

namespace standard_uci_test {

using Lines = std::vector<std::string>;
using namespace ondrel::standard_uci;  // NOLINT(google-build-using-namespace): the tests speak of nothing else

class FakeSurroundings : public Surroundings {
public:
    static constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();

    void write_to_client(const std::string& line) override { to_client.push_back(line); }
    void write_to_worker(const std::string& line) override { to_worker.push_back(line); }
    void renew_worker() override {
        ++workers;
        to_worker.clear();
        published = {};
        nodes = 0;
    }
    std::optional<PublishedLine> published_line() override { return published; }
    std::uint64_t published_nodes() override { return nodes; }
    std::int64_t now() override { return time; }
    void wake_at(std::int64_t at) override { waking = at; }
    void leave() override { has_left = true; }

    Lines to_client;
    Lines to_worker;  // since the present one was started
    int workers = 0;
    PublishedLine published{};
    std::uint64_t nodes = 0;
    std::int64_t time = 1000;
    std::int64_t waking = never;
    bool has_left = false;
};

// A session in them, with what a test does to it.
struct Conversation {
    FakeSurroundings around;
    Session session{around};

    // What the client is told for these lines.
    Lines say(const Lines& lines) {
        around.to_client.clear();
        for (const std::string& line : lines) {
            session.client_said(line);
        }
        return std::exchange(around.to_client, {});
    }
    Lines worker_says(const Lines& lines) {
        around.to_client.clear();
        for (const std::string& line : lines) {
            session.worker_said(line);
        }
        return std::exchange(around.to_client, {});
    }
    // Lets the time run; the session is woken when it asked to be.
    Lines pass(std::int64_t milliseconds) {
        around.to_client.clear();
        const std::int64_t end = around.time + milliseconds;
        while (around.waking <= end) {
            around.time = std::max(around.time, std::exchange(around.waking, FakeSurroundings::never));
            session.time_came();
        }
        around.time = end;
        return std::exchange(around.to_client, {});
    }
};

inline FoundLine found(std::uint32_t serial, int depth, float score, std::vector<EngineMove> moves) {
    FoundLine line;
    line.serial = serial;
    line.depth = line.deepest_ply = depth;
    line.score = score;
    line.nodes = serial * 100;
    line.moves = std::move(moves);
    return line;
}

inline std::string found_line(std::uint32_t serial, int depth, float score, std::vector<EngineMove> moves) {
    return line_of(found(serial, depth, score, std::move(moves)));
}

// The lines that begin so.
inline Lines only(const Lines& lines, std::string_view start) {
    Lines result;
    for (const std::string& line : lines) {
        if (line.starts_with(start)) {
            result.push_back(line);
        }
    }
    return result;
}

}  // namespace standard_uci_test
