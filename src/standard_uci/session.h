// The conversation with one client: a state machine that hears lines, worker messages and the clock, and acts on its
// surroundings alone. The front gives it the real ones, the tests others.
#pragma once

#include "standard_uci/game.h"
#include "standard_uci/options.h"
#include "standard_uci/shared_page.h"
#include "standard_uci/time_control.h"
#include "standard_uci/worker_protocol.h"

#include <map>

namespace ondrel::standard_uci {

class Surroundings {
public:
    virtual ~Surroundings() = default;
    virtual void write_to_client(const std::string& line) = 0;
    virtual void write_to_worker(const std::string& line) = 0;
    // Ends the worker, if there is one, and starts another. Nothing of the old one is heard any more. If none can be
    // started, Session::worker_ended is called later.
    virtual void renew_worker() = 0;
    // What the present worker shows of its search.
    virtual std::optional<PublishedLine> published_line() = 0;
    virtual std::uint64_t published_nodes() = 0;
    // Milliseconds; Session::time_came is called when the time asked for last has come.
    virtual std::int64_t now() = 0;
    virtual void wake_at(std::int64_t time) = 0;
    virtual void leave() = 0;
};

class Session {
public:
    explicit Session(Surroundings& surroundings);

    void client_said(std::string_view line);
    void client_said_too_much();
    void client_left();
    void worker_said(std::string_view line);
    void worker_ended();
    void time_came();

    [[nodiscard]] bool is_searching() const { return search_.has_value(); }

private:
    // One go, until its bestmove.
    struct Search {
        GoLimits limits;
        Position root;
        std::vector<Move> allowed;
        SearchTask task;
        std::int64_t start = 0;        // of the go
        std::int64_t clock_start = 0;  // of the mover's clock: the go, or the ponderhit
        std::optional<TimeBudget> budget;
        bool has_fixed_time = false;  // the budget is one of movetime
        bool is_pondering = false;
        bool is_endless = false;       // until stop
        bool is_finished = false;      // the worker has nothing more to search
        bool may_stop_at_hit = false;  // as much was searched in the opponent's time as the own would have given
        int workers_lost = 0;
        std::optional<FoundLine> best;
        std::vector<FoundLine> several;  // of a depth that is not yet complete
        bool has_shown = false;
        std::int64_t next_count = 0;  // when the nodes are told next
    };

    // --- Commands ---
    void say(const std::string& line) { around_.write_to_client(line); }
    void complain(const std::string& text) { say("info string " + text); }
    void identify();
    void set_option(const Words& words);
    void begin_new_game();
    void set_position(const Words& words);
    void go(const Words& words);
    void stop();
    void ponder_hit();
    void leave();
    void set_debug(const Words& words);

    // --- The course of a search ---
    void begin_search();
    void order_search();
    void make_worker_ready();
    void plan_waking();
    void finish_if_due();
    void give_answer();
    [[nodiscard]] bool waits_for_client() const;
    [[nodiscard]] bool has_searched_enough() const;
    [[nodiscard]] bool is_past_limits();
    [[nodiscard]] bool is_on_clock() const;
    [[nodiscard]] std::int64_t time_used() const;
    [[nodiscard]] std::int64_t end_of_time() const;
    [[nodiscard]] std::optional<Move> book_move() const;
    [[nodiscard]] std::vector<Move> best_line();
    [[nodiscard]] Move move_at_hand() const;
    void remember(const EngineMove& move);

    // --- What the worker tells ---
    void hear(const FoundLine& line);
    void hear(const MoveBegun& begun);
    void hear(const DepthFinished& finished);
    void hear(const SearchFinished& finished);
    void take(const FoundLine& line);
    void take_published_line();
    void show(const FoundLine& line);
    void show_count();

    Surroundings& around_;
    Options options_;
    Game game_;
    std::optional<Search> search_;
    bool worker_is_ready_ = false;  // it runs, and has been told the options
    bool worker_is_fresh_ = false;  // it has not searched
    bool wants_fresh_worker_ = false;
    bool is_debugging_ = false;
    bool has_left_ = false;
    std::map<std::string, EngineMove> remembered_;  // the move found last, by game
};

}  // namespace ondrel::standard_uci
