#include "uci/process.h"

#include "base/options.h"
#include "base/ply_stack.h"
#include "board/game.h"
#include "eval/context.h"
#include "eval/leaf.h"
#include "eval/mobility.h"
#include "eval/root_trial.h"
#include "eval/strategy.h"
#include "eval/tables.h"
#include "eval/weights.h"
#include "memory/game_memory.h"
#include "memory/shallow_tables.h"
#include "search/child_trial.h"
#include "search/noted_leaves.h"
#include "search/observers.h"
#include "search/root_routines.h"
#include "search/state.h"
#include "uci/book.h"
#include "uci/command_line.h"

namespace ondrel {

// By lifetime. The settings come first: the state of a search begins with them.
void begin_process() {
    options = Options{};
    command = CommandLine{};
    process = Process{};
    observers = Observers{};
    game = Game{};
    clear_game_memory();

    root = RootPosition{};
    own_book = Book{};
    tables = PositionalTables{};

    game_line = GameLine{};
    search = Search{};
    bounds = Bounds{};
    slots = Slots{};
    weights = LeafWeights{};
    renew_context();
    clear_shallow_tables();

    pass = Pass{};
    visits = Visits{};
    move_class = MoveClass{};
    root_trial = RootTrial{};
    liberty = LibertyTest{};

    root_move = RootMove{};
    tree = Tree{};
    ply = {};
    noted.is_noted = {};
    trial = Trial{};
    strange_trials = StrangeTrials{};
    judgement = Judgement{};
}

}  // namespace ondrel
