#include "plain/questions.h"

#include "plain/board.h"
#include "plain/eval.h"

namespace plain {

// --- The rules of chess ---

Situation start_situation() { return {start_position(), {}, white}; }

static std::string text_of(Move m) {
    return {static_cast<char>('a' + m.a), static_cast<char>('1' + m.b), static_cast<char>('a' + m.c),
            static_cast<char>('1' + m.d)};
}

// Ply 1 serves as the board to play on.
static void set_ply(const Situation& situation) {
    Ply& ply = tree.ply[1];
    ply.tabd = situation.board;
    ply.flags = situation.flags;
    ply.joga_com_b_deep = situation.to_move;
    ply.pp_D = false;
}

Situation play(const Situation& situation, const std::string& move) {
    const Move m{move[0] - 'a', move[1] - '1', move[2] - 'a', move[3] - '1'};
    const bool is_pawn = size_of(man_on(situation.board, m.a, m.b)) == peao;
    set_ply(situation);
    init_tabuleiro_ply(1, m);
    Situation after{tree.ply[1].tabd, tree.ply[1].flags, other(situation.to_move)};
    if (is_pawn && move.size() == 5) {
        const int piece = move[4] == 'r' ? torre : move[4] == 'b' ? bispo : move[4] == 'n' ? cavalo : dama;
        put(after.board, m.c, m.d, code(situation.to_move, piece));
    }
    return after;
}

bool is_king_attacked(const Board& board, Colour c) { return king_attacked(board, c); }

static void add_if_legal(std::vector<std::string>& moves, const Situation& situation, Move m) {
    if (!on_board(m.c, m.d) || is_of(situation.to_move, man_on(situation.board, m.c, m.d))) {
        return;
    }
    const std::string text = text_of(m);
    if (king_attacked(play(situation, text).board, situation.to_move)) {
        return;
    }
    const bool is_pawn = size_of(man_on(situation.board, m.a, m.b)) == peao;
    if (is_pawn && m.d == rank_of(situation.to_move, 7)) {
        for (const char letter : {'q', 'r', 'b', 'n'}) {
            moves.push_back(text + letter);
        }
    } else {
        moves.push_back(text);
    }
}

static void add_pawn_moves(std::vector<std::string>& moves, const Situation& situation, int f, int r) {
    const Colour c = situation.to_move;
    const Board& board = situation.board;
    const int next = r + ahead(c);
    for (const int file : {f + 1, f - 1}) {
        if (!on_board(file, next)) {
            continue;
        }
        const bool passant =
            r == rank_of(c, 4) && man_on(board, file, next) == 0 && situation.flags.double_step[other(c)][file];
        if (passant || is_of(other(c), man_on(board, file, next))) {
            add_if_legal(moves, situation, {f, r, file, next});
        }
    }
    if (on_board(f, next) && man_on(board, f, next) == 0) {
        add_if_legal(moves, situation, {f, r, f, next});
        if (r == rank_of(c, 1) && man_on(board, f, next + ahead(c)) == 0) {
            add_if_legal(moves, situation, {f, r, f, next + ahead(c)});
        }
    }
}

static void add_castlings(std::vector<std::string>& moves, const Situation& situation, int f, int r) {
    const Colour c = situation.to_move;
    if (f != 4 || r != rank_of(c, 0) || is_attacked(situation.board, f, r, other(c))) {
        return;
    }
    for (const Castling side : {Castling::short_side, Castling::long_side}) {
        set_ply(situation);
        if (!castling_is_open(c, 1, side)) {
            continue;
        }
        verifica_roque(c, 1, side);
        if (!tree.R) {
            moves.push_back(text_of(castling_move(c, side)));
        }
    }
}

template <typename Steps>
static void add_steps(std::vector<std::string>& moves, const Situation& situation, int f, int r, const Steps& steps,
                      bool rays) {
    for (const Step s : steps) {
        for (int to_f = f + s.file, to_r = r + s.rank; on_board(to_f, to_r); to_f += s.file, to_r += s.rank) {
            add_if_legal(moves, situation, {f, r, to_f, to_r});
            if (!rays || man_on(situation.board, to_f, to_r) != 0) {
                break;
            }
        }
    }
}

std::vector<std::string> legal_moves(const Situation& situation) {
    std::vector<std::string> moves;
    for (int f = 0; f < 8; ++f) {
        for (int r = 0; r < 8; ++r) {
            const int man = man_on(situation.board, f, r);
            if (!is_of(situation.to_move, man)) {
                continue;
            }
            switch (size_of(man)) {
                case peao: add_pawn_moves(moves, situation, f, r); break;
                case cavalo: add_steps(moves, situation, f, r, knight_jumps, false); break;
                case bispo: add_steps(moves, situation, f, r, bishop_rays, true); break;
                case torre: add_steps(moves, situation, f, r, rook_rays, true); break;
                case dama: add_steps(moves, situation, f, r, queen_rays, true); break;
                default: add_steps(moves, situation, f, r, king_steps, false); add_castlings(moves, situation, f, r);
            }
        }
    }
    return moves;
}

std::string fen_of(const Situation& situation) {
    std::string text;
    for (int r = 7; r >= 0; --r) {
        int empty = 0;
        const auto write_empty = [&] {
            if (empty > 0) {
                text += static_cast<char>('0' + empty);
            }
            empty = 0;
        };
        for (int f = 0; f < 8; ++f) {
            const int man = man_on(situation.board, f, r);
            if (man == 0) {
                ++empty;
                continue;
            }
            write_empty();
            int kind = 0;
            while (pieces_by_name[kind] != size_of(man)) {
                ++kind;
            }
            text += (man > 0 ? "PNBRQK" : "pnbrqk")[kind];
        }
        write_empty();
        text += r > 0 ? "/" : " ";
    }
    text += situation.to_move == white ? "w " : "b ";
    std::string rights, passant;
    for (const Colour c : {white, black}) {
        if (!situation.flags.R_jm[c] && !situation.flags.T_h_jm[c]) {
            rights += c == white ? 'K' : 'k';
        }
        if (!situation.flags.R_jm[c] && !situation.flags.T_a_jm[c]) {
            rights += c == white ? 'Q' : 'q';
        }
        for (int f = 0; f < 8; ++f) {
            if (situation.flags.double_step[c][f]) {
                passant = {static_cast<char>('a' + f), c == white ? '3' : '6'};
            }
        }
    }
    return text + (rights.empty() ? "-" : rights) + " " + (passant.empty() ? "-" : passant) + " 0 1";
}

// --- Evaluation ---

LeafJudgement judge_leaf_board(const Board& board, Colour own, Colour stm) {
    tree.tab2 = board;
    verifica_rei(white);
    verifica_rei(black);
    if (own == stm) {
        extra_eval(own);
    } else {
        extra_evall(own);
    }
    return {tree.extraeval, tree.EMPAT};
}

RootMoveJudgement judge_root_move(Move m) {
    const Colour c = root.joga_com_b;
    init_tabuleiro2(m);
    verifica_rei(c);
    verifica_xeque(c);
    verifica_estrategia(c);
    return {!tree.Y, root.XEQUE, root.ATAQUE, root.ESTRATEGIA, root.extraevalll};
}

}  // namespace plain
