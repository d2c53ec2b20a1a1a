// Position lines: the FEN, the move list, and the preparation of the search, the position searched by nobody. Each line
// meets what the lines before it have left.
#include "fuzzing.h"

#include "board/attacks.h"
#include "board/game.h"
#include "search/score_windows.h"
#include "search/state.h"
#include "uci/command_line.h"
#include "uci/position.h"

namespace {

using namespace ondrel;

void check_position() {
    for (const std::int8_t x : tab) {
        fuzz::require(x == no_piece || std::ranges::count(piece_order, value_of(x)) == 1, "a man of no kind");
    }
    fuzz::require(game.joga_com_b == 0 || game.joga_com_b == 1, "joga_com_b");
    fuzz::require(game_line.nb >= 1 && game_line.nb <= 100000, "nb");
    const Move m = game.abcd;
    fuzz::require(on_board(m.from_file, m.from_rank) && on_board(m.to_file, m.to_rank), "a square outside the board");
    for (const Colour c : {white, black}) {
        fuzz::require(root.npecas[c] >= 0 && root.npecas[c] <= squares, "men");
        fuzz::require(root.material_a[c] >= 0 && root.material_a[c] <= squares * rei, "material");
    }
    fuzz::require(search.deep >= 0 && search.deep <= 9, "deep");
    fuzz::require(search.HASH_MEM == (command.in.size() < search.inn.size() ? 1 : 0), "HASH_MEM");
}

void replay(const std::string& line) {
    command.in = line;
    command.joga_c_ob = is_line_from_start() ? 1 : 0;
    command.joga_c_fen = command.joga_c_ob ? 0 : 1;
    read_position();
    const Colour own = side_to_search();
    prepare_search(own);
    set_score_windows(own);
    check_position();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    ondrel::begin_process();
    // The first byte says what the other lines of a conversation could have said.
    options.CHESS_960 = data[0] % 2;
    options.OwnBook = data[0] / 2 % 2;
    for (const std::string& line : fuzz::lines_of(data + 1, size - 1)) {
        replay(line);
    }
    return 0;
}
