#!/usr/bin/env python3
"""Breaks rules of the engine one at a time and tells what notices: the signature of the quick bench, or a unit test.

usage: tools/break_rules.py [--only PATTERN] [--list] [--no-tests]

Works on a copy of the source tree in build/breaks, which it builds there; the tree itself is not touched. Each break is
a text of a source file, however its lines are broken, and what to put in its place; a text that does not stand exactly
once in its file stops the script. The last line says how many breaks were noticed and how many survived. A break that cannot change what the
engine does carries the reason instead, and must survive.
"""
import argparse, os, re, shutil, subprocess, sys, time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
COPY = os.path.join(ROOT, 'build', 'breaks')
FLAGS = '-O1'
TEST_SECONDS = 120

NODE, ONE, REPLIES = 'src/search/node.h', 'src/search/ply_one.cpp', 'src/search/ply_one_replies.h'
WINDOWS, FILTERS, TIME = 'src/search/windows.h', 'src/search/filters.h', 'src/search/for_a_time.h'
ROOTR, SCHEDULE, TABLE = 'src/search/root_routines.cpp', 'src/search/schedule.cpp', 'src/search/ply_table.h'
STATE, SCORE, WALKS = 'src/search/state.h', 'src/search/score_windows.cpp', 'src/search/move_walks.h'
VALUE, NOTED = 'src/search/leaf_value.h', 'src/search/noted_leaves.h'
CONTEXT, PAWNS = 'src/eval/context.cpp', 'src/eval/pawn_terms.cpp'
LEAF, ESTIMATE, JUDGEMENT = 'src/eval/leaf.h', 'src/eval/estimate.cpp', 'src/eval/judgement.cpp'
WEIGHTS, STRATEGY, TRIAL = 'src/eval/weights.h', 'src/eval/strategy.cpp', 'src/eval/root_trial.cpp'
PREPARATION, WALK = 'src/eval/preparation.cpp', 'src/eval/walk.h'
SHALLOW, GAME = 'src/memory/shallow_tables.cpp', 'src/memory/game_memory.cpp'
LEGALITY, APPLY, CASTLING = 'src/board/legality.h', 'src/board/apply.h', 'src/board/castling.h'
REPETITION, POSITION, REPORT = 'src/board/repetition.cpp', 'src/uci/position.cpp', 'src/uci/report.cpp'
NUMERIC, CHILD = 'src/base/numeric.h', 'src/search/child_trial.h'

# name, file, text, what stands in its place [, why nothing can change]
BREAKS = [
    # --- castling at the root, classes, visits
    ('a visit owed is forgotten at every pass', ROOTR, 'visits.by_move = {}; }', 'visits = {}; }'),
    ('a visit owed is forgotten at the end of a search', SCHEDULE, '    iterate<c>();\n    make_owed_visit<c>();', '    iterate<c>();\n    visits.owed = no_move;'),
    ('no visit is owed at all', ROOTR, '    visits.owed = m;\n', ''),
    ('castling makes no owed visit', ROOTR, '    make_owed_visit<c>();\n    // White', '    // White'),
    ('white long castling with check is judged by its own side', ROOTR, 'c == white && r.ch ? short_side : k', 'k'),
    ('a class is kept over a search', ROOTR, 'visits.by_move = {}; }', '}'),
    ('the draw branch does not read pempate anew', ROOTR, '        if (trial.Y) {  // as the deeper search has left it, like pempate below\n            return false;\n        }', '        return false;'),
    ('the draw branch does not read Y', ROOTR, '        if (trial.Y) {  // as the deeper search has left it, like pempate below\n            return false;\n        }', ''),
    ('a root move as good as the best takes over', ROOTR, 'if (v > search.E) {', 'if (v >= search.E) {'),
    ('the root stops above its limit only', ROOTR, 'bounds.alfa[0] >= bounds.MAXcut[0]', 'bounds.alfa[0] > bounds.MAXcut[0]'),
    ('castling at the root weighs nothing', ROOTR, '    pass.roque[c] = ply_table[0].castling;\n', ''),
    ('root repetition is not asked for', ROOTR, '        verifica_empate(Repeats::root_move);\n', ''),
    # --- the iteration
    ('the draw score is never raised', SCHEDULE, '        search.emp += one_pawn;\n', ''),
    ('the draw score is raised after a capture too', SCHEDULE, ' && game_line.peca == 0) {', ') {'),
    ('the window step is the wide one always', SCHEDULE, 'search.DEEP9 ? narrow : wide', 'wide'),
    ('a mate of the build pass is not reopened', SCHEDULE, '    reopen_after_mate();\n    run_pass', '    run_pass'),
    ('curr is not cleared at a depth', SCHEDULE, '        search.curr = 0;\n        step_window();', '        step_window();'),
    ('a single move is searched on', SCHEDULE, 'if (search.curr == 1 &&', 'if (search.curr == -1 &&'),
    ('the shallow tables are not cleared before the first depth', SCHEDULE, '    if (options.HASHf) {\n        clear_shallow_chain(c);\n    }\n    search.curr', '    search.curr'),
    ('limits are not restored before a pass', SCHEDULE, '    bounds.MAXcut = bounds.MAXcutt;\n    pass', '    pass'),
    ('slots are cleared between depths', SCHEDULE, '        search.deep += 2;\n', '        search.deep += 2;\n        slots.aa_dd.fill(no_move);\n'),
    ('capture slots are cleared between passes', SCHEDULE, '    prepare_root();\n    const float opponent', '    slots.aag_ddg.fill(no_move);\n    prepare_root();\n    const float opponent'),
    ('the deepest plies keep the limits of mates', SCHEDULE, 'n % 2 == 0 ? last_filtered - 1 : last_filtered', 'n'),
    ('the build pass asks for repetition', SCHEDULE, 'run_pass<c>(PassKind::all_moves, false);', 'run_pass<c>(PassKind::all_moves, true);'),
    # --- a node: what may answer
    ('a hit is not taken', NODE, '            value<P::even>(n) = *known;\n            return;', '            count_rule(Rule::scan_hits);'),
    ('ply 3 builds by depth', NODE, 'search.HASHf && (n == 3 || search.deep >= row.scan_deep)', 'search.HASHf && search.deep >= row.scan_deep',
     'at ply 3 the row says 3, and a node of a smaller deep has returned before'),
    ('the key forgets the scout pass', NODE, 'root_move.PVSm, root_move.PVSm2};', 'root_move.PVSm, 0};'),
    ('the key of ply 5 forgets alfa4', NODE, 'std::max(highest_alfa, bounds.alfa[4])', 'highest_alfa'),
    ('the store is skipped after a refutation by Amr', NODE, '    if (!settled) {\n        run_with_retries<c>(n, m);\n    }\n    if (keeps &&', '    if (!settled && run_with_retries<c>(n, m)) {\n        return;\n    }\n    if (keeps &&'),
    ('ply 2 does not look for repetition', NODE, '        verifica_empate(Repeats::reply);\n', ''),
    ('ply 2 takes one repetition for a draw', REPETITION, 'who == Repeats::root_move ? 1 : 2', '1'),
    ('the scout pass of ply 2 settles at its width', NODE, 'bounds.alfa[n] > bounds.beta[1] - ScoutLimits::width', 'bounds.alfa[n] >= bounds.beta[1] - ScoutLimits::width'),
    ('the scout pass of ply 2 forgets MAXcutt1', NODE, ' || bounds.alfa[n] <= -bounds.MAXcutt[1]) {', ') {'),
    ('the scout pass of ply 2 is twice as wide', TIME, 'width = 1.0F', 'width = 2.0F'),
    ('a mate of the IID pass at ply 2 is searched on', NODE, '(iid_pass<c>(n, m) && bounds.alfa[n] <= -least_mate)', '(iid_pass<c>(n, m) && false)'),
    # --- null move, IID, reductions
    ('HASHf is not restored', TIME, '        search.HASHf = HASHf_;\n', ''),
    ('deep is not restored', TIME, '        search.deep = deep_;\n', ''),
    ('neutral bounds are not neutral', TIME, '            value<P::even>(k) = start_value<P::even>;\n', ''),
    ('the null window lies on the bound', NODE, 'null_window = 0.001', 'null_window = 0.0'),
    ('the null move takes a mate', NODE, '(P::even ? v < least_mate : v > -least_mate) && crosses', 'crosses'),
    ('the null move wants one man less', NODE, 'least_men_of_passer = 5', 'least_men_of_passer = 4'),
    ('the null move wants one man more of the mover', NODE, 'least_men_of_mover = 3', 'least_men_of_mover = 4'),
    ('odd plies make no null move in a SCANT pass', NODE, '((!P::even && pass.SCANT) || has_value_above(n))', 'has_value_above(n)'),
    ('the IID pass is a ply deeper', NODE, 'iid_reduction = 4', 'iid_reduction = 2'),
    ('the sixth child is the first reduced', NODE, 'late_child = 5', 'late_child = 6'),
    ('the fifth child tries Amr', NODE, 'last_early_child = 4', 'last_early_child = 5'),
    ('a reduced move that cuts is not searched again', NODE, '        if (!cuts_parent(n)) {\n            return false;\n        }', '        return false;'),
    ('reductions go on after one has failed', NODE, '        tree.LmrT[n] = 1;\n', ''),
    ('Amr goes on after one has failed', NODE, '        tree.AmrT[n] = 1;\n', ''),
    ('a checking move is reduced', NODE, 'tree.curr_N[n] >= late_child && !gives_check<c>(n, m)', 'tree.curr_N[n] >= late_child'),
    ('pawns are reduced', NODE, ' && ply[n - 1].tabd[m.from()] != code(c, peao) &&\n           ply[n - 1].tabd[m.to()] == no_piece && tree', ' &&\n           ply[n - 1].tabd[m.to()] == no_piece && tree'),
    ('reduced runs of ply 5 use the tables', NODE, 'return n <= 5;', 'return n <= 4;'),
    ('crossing a bound takes more than reaching it', NODE, 'even ? v >= bounds.beta[k] : v <= bounds.alfa[k]', 'even ? v > bounds.beta[k] : v < bounds.alfa[k]'),
    # --- leaves
    ('the gate stops pawn moves', NODE, ' || before[m.from()] == code(c, peao) || gives_check', ' || gives_check'),
    ('the gate stops checks', NODE, ' || gives_check<c>(n, m)) {\n        return false;\n    }\n    count_rule(Rule::gate)', ') {\n        return false;\n    }\n    count_rule(Rule::gate)'),
    ('the lazy test judges a leaf on its margin', VALUE, '!(v > limit - piecesac) : !(v < limit + piecesac)', '!(v >= limit - piecesac) : !(v <= limit + piecesac)'),
    ('estimates are trusted too far', LEAF, 'estimate_slack = 0.01F', 'estimate_slack = -0.05F'),
    ('estimates are trusted to the last bit', LEAF, 'estimate_slack = 0.01F', 'estimate_slack = 0.0F'),
    ('ply 4 trusts estimates', NOTED, 'first_estimated_ply = 6', 'first_estimated_ply = 4'),
    ('notes reach ply 5', NOTED, 'last_exact_ply = 5', 'last_exact_ply = 4'),
    ('a comparison with a noted value is never too close', NOTED, 'if (slack != 0 && is_close', 'if (slack < 0 && is_close'),
    ('a note outlives its value', NODE, '    forget_note(n + 1);\n', ''),
    ('a noted value goes up as it is', NOTED, '} else if (!parent_can_do_with_estimate(n)) {', '} else if (false) {'),
    ('a null move hands up what is noted', NODE, '        settle(child);\n', ''),
    ('kept leaves outlive their context', CONTEXT, '        ++context.stamp;\n', ''),
    ('pawn terms forget the kings', PAWNS, ' || x.king != king', ''),
    ('a dead draw is judged', VALUE, '    if (judgement.EMPAT) {', '    if (false) {'),
    ('en passant costs the victim', VALUE, 'worth_of_en_passant = 10', 'worth_of_en_passant = 0'),
    ('a promotion is worth a queen', VALUE, 'worth_of_promotion = 80', 'worth_of_promotion = 90'),
    ('the leaf of ply 2 takes the ratio upside down', VALUE, 'ratio(material[c], material[other(c)])', 'ratio(material[other(c)], material[c])'),
    # --- the replies, the fold and the cut
    ('the capture slot is not dropped before a leaf', NODE, '        slot.from_file = no_move.from_file;\n        return false;', '        return false;'),
    ('a capture stores nothing', NODE, '            slots.aag_ddg[n] = stored;\n', ''),
    ('a quiet move stores nothing', NODE, '        slots.aa_dd[n] = m;\n', ''),
    ('pushes know the last-ply rule', NODE, '[n](Move m) { return try_quiet<us, test>(n, m, false); });\n    }\n}', '[n](Move m) { return try_quiet<us, test>(n, m, true); });\n    }\n}'),
    ('the test form knows the last-ply rule', NODE, '!search_reply<us>(n, m, !test)) {', '!search_reply<us>(n, m, true)) {'),
    ('a value on the cut does not cut', NODE, '(P::even ? v >= ply[n].cut_at : v <= ply[n].cut_at)', '(P::even ? v > ply[n].cut_at : v < ply[n].cut_at)'),
    ('the cut forgets the limit', NODE, 'std::min(limit, bounds.MAXcut[n]) : std::max(limit, -bounds.MAXcut[n])', 'limit : limit'),
    ('an equal value is taken in', NODE, 'P::even ? v > bound : v < bound', 'P::even ? v >= bound : v <= bound',
     'it puts the same value there, and clears X_D of a node whose bound stands at -16500 only for a child of -16500, which no child has'),
    ('stalemate is mate', NODE, 'ply[n].XEQUE_MATE ? mate : static_cast<float>(search.emp)', 'mate'),
    ('a node without an improving reply is mate', NODE, 'ply[n].X_D && tree.nd == n', 'ply[n].X_D'),
    ('castling in the tree weighs one step less', TABLE, '.lmr = 9, .amr = 9, .castling = 8},\n    {.ply = 5', '.lmr = 9, .amr = 9, .castling = 7},\n    {.ply = 5'),
    # --- ply 1
    ('Turbo rule 1 is narrower', WINDOWS, 'widest{33.0F, 33.0F}', 'widest{33.0F, 32.0F}'),
    ('Turbo rule 2 is narrower', WINDOWS, 'while_held{10.0F, 10.0F}', 'while_held{10.0F, 9.0F}'),
    ('Turbo rule 3 is narrower', WINDOWS, '{{15.0F, 9.0F}, -15.0F}', '{{15.0F, 8.0F}, -15.0F}'),
    ('Turbo rule 4 is narrower', WINDOWS, '{{5.0F, 5.0F}, -5.0F}', '{{5.0F, 4.0F}, -5.0F}'),
    ('Turbo rule 5 is narrower', WINDOWS, '{{0.0F, 3.0F}, 0.0F}', '{{0.0F, 2.0F}, 0.0F}'),
    ('Turbo rule 6 is wider', WINDOWS, 'width_with_many_men = 1.0F', 'width_with_many_men = 2.0F'),
    ('the windows know nothing of BETA1', WINDOWS, '    if (iid_ran) {\n        narrow_by_BETA1();\n    }\n', ''),
    ('the scout step is nothing', WINDOWS, 'scout_step = 0.001', 'scout_step = 0.0'),
    ('the scout width is a unit less', WINDOWS, 'scout_width = 5.0F', 'scout_width = 4.0F'),
    ('the root is not widened', ONE, '        bounds.alfa[0] -= widening;\n        search.E -= widening;\n', ''),
    ('the widened root starts ply 1 afresh', ONE, '    return start;\n', '    return start_of_beta;\n'),
    ('LMRtest is never set', ONE, '        root_move.LMRtest = 1;\n', ''),
    ('the scout pass settles at the limit of ply 2 only above it', ONE, 'v >= limit_of_ply_2', 'v > limit_of_ply_2'),
    ('kings count in the ratio', ONE, 'share_of_king = 100.0F', 'share_of_king = 0.0F'),
    ('stages take the bishop before the knight', REPLIES, '{no_piece, peao, bispo, cavalo, torre, dama}', '{no_piece, peao, cavalo, bispo, torre, dama}'),
    # --- filters
    ('score held from 4', FILTERS, 'held_score = 5.0F', 'held_score = 4.0F'),
    ('lost by 11', FILTERS, 'lost_margin = 10.0F', 'lost_margin = 11.0F'),
    ('the filter of plies 9 to 21 does not end nodes', FILTERS, '    if (search.deep == n && is_lost(n, S) && !gives_check<c>(n, m)) {\n        return end_with(n, S);\n    }\n', ''),
    ('the filter of plies 9 to 21 does not shorten', FILTERS, '        search.deep = n;\n    }\n    return false;\n}\n\ntemplate <Colour c, class P>\ninline bool filter_ply_7', '    }\n    return false;\n}\n\ntemplate <Colour c, class P>\ninline bool filter_ply_7'),
    ('the filter of ply 7 does not end its parent', FILTERS, '            if (bounds.alfa[k] - lost_margin >= S && bounds.alfa[k] < least_mate) {\n                end_parent(n);', '            if (bounds.alfa[k] - lost_margin >= S && bounds.alfa[k] < least_mate) {\n                ;'),
    ('the filter of ply 7 does not end the node', FILTERS, 'is_lost(n, S) && !gives_check<c>(n, m) &&\n           end_with(n, S)', 'is_lost(n, S) && !gives_check<c>(n, m) &&\n           false'),
    ('the filter of ply 23 does nothing', FILTERS, '            if (is_lost(n, S)) {\n                end_parent(n);\n            }\n            return false;', '            return false;'),
    ('no search extension', FILTERS, '        search.deep = n + 2;\n', ''),
    ('the time check does not stop the schedule', FILTERS, '    pass.corte_MAXcut = 1;\n', ''),
    ('the time check restores deep', FILTERS, '    saved_deep = n;\n', ''),
    ('the time check ends no node', FILTERS, '        bounds.corte_beta[n - 2] = 1;\n        bounds.beta[n] = bounds.alfa[n - 1];\n        return true;', '        bounds.corte_beta[n - 2] = 1;'),
    # --- score windows
    ('the positive auto window is wider', SCORE, 'auto_margins{wide_open, 100.0F, 90.0F, 90.0F}', 'auto_margins{wide_open, 101.0F, 90.0F, 90.0F}'),
    ('windows forget the last capture', SCORE, 'static_cast<float>(m + margin + p + L)', 'static_cast<float>(m + margin + L)'),
    ('windows forget the logarithm', SCORE, 'static_cast<float>(margin - m - L)', 'static_cast<float>(margin - m)'),
    ('an almost bare opponent changes nothing', SCORE, '    if (is_almost_bare(other(own))) {\n        set_limits(0, nearest_mate);', '    if (false) {\n        set_limits(0, nearest_mate);'),
    ('the full mode does not bound the root', SCORE, '        bounds.MAXcut[0] = lead.above(full_margin_of_root);\n', ''),
    # --- memories
    ('the chain of a shallow table is cut', SHALLOW, '    t.next[i] = *link;\n    *link = i;', '    t.next[i] = none;\n    *link = i;'),
    ('the newest shallow record wins', SHALLOW, 'while (*link != none && *link < i) {', 'while (false) {'),
    ('a shallow ring uses its last record', SHALLOW, 't.inc == shallow_records - 1', 't.inc == shallow_records'),
    ('a full ring is not told', NODE, '        search.FULL[n] = 1;\n', ''),
    ('the chain of the game-long memory is cut', GAME, '    memory.next[i] = *link;\n    *link = i + 1;', '    memory.next[i] = no_record;\n    *link = i + 1;'),
    ('the game-long memory answers a longer clock', GAME, 'demand.tempo <= x.mem_param.tempo && ', ''),
    ('the game-long memory answers a deeper search', GAME, ' && demand.deep <= x.mem_param.deep', ''),
    # --- rules of chess
    ('pinned men move freely', LEGALITY, '((node.pinned & set_of(from)) == 0 ||', '(true ||'),
    ('the king steps back along a ray', LEGALITY, 'node.sets.occupied() & ~set_of(from));', 'node.sets.occupied());'),
    ('en passant is legal by pins alone', LEGALITY, ' || is_en_passant<c>(node.tabd, node.jm_D, m)) {\n        return !king_attacked', ') {\n        return !king_attacked'),
    ('the crossed square may be attacked', CASTLING, 'trial.R = crossing_attacked || is_attacked', 'trial.R = is_attacked'),
    ('a rook loses its right on its corner only', APPLY, 'if (m.from_file == file_a) {', 'if (m.from_file == file_a && m.from_rank == relative_rank(c, 0)) {'),
    ('a move onto its own square moves nothing', APPLY, '    t[m.to()] = t[m.from()];\n    t[m.from()] = no_piece;', '    const auto x = t[m.from()];\n    t[m.from()] = no_piece;\n    t[m.to()] = x;'),
    ('a divisor of zero gives zero', NUMERIC, 'return std::copysign(std::numeric_limits<long double>::infinity(), x);', 'return 0;'),
    # --- judgement
    ('a positional sum may be negative', JUDGEMENT, '                          least_positional_sum);', '                          -1e9);'),
    ('points count once', WEIGHTS, 'weight_of_points = 2;', 'weight_of_points = 1;'),
    ('enemy hits weigh as own ones', WEIGHTS, 'weight_of_enemy_hits = 0.001;', 'weight_of_enemy_hits = 0.01;'),
    ('the base value is left out', STRATEGY, '    judgement.extraevalll = base_value(', '    judgement.extraevalll = 0 * base_value('),
    ('the queen attacks a bishop', STRATEGY, 'worth_of(on_bishop, pawns, knights + rooks + kings, undefended)', 'worth_of(on_bishop, pawns, knights + rooks + queens + kings, undefended)'),
    ('MATRIZ is scaled by four always', STRATEGY, 'const int lead = own > opp ? 1 : (own == opp ? 0 : -1);', 'const int lead = 0;'),
    ('late pawn moves are not pushed', TRIAL, 'tab[m.from()] == code(c, peao) && game_line.nb >= late_moves ? 1 : 0', '0'),
    ('the opening lasts a move longer', TRIAL, 'opening_moves = 30', 'opening_moves = 31'),
    ('Xr is filled by the material after the move', PREPARATION, '    apply_to_root();\n    prepare_what_stays();', '    apply_to_root();\n    count_material();\n    prepare_what_stays();'),
    ('advancement counts for the engine in the balance', PREPARATION, '    s += advance_per_man<Real>(opp);\n    s -= advance_per_man<Real>(me);', '    s += advance_per_man<Real>(me);\n    s -= advance_per_man<Real>(opp);'),
    ('a new game keeps the balance of the old one', POSITION, '    root = RootPosition{};\n', ''),
    ('the report forgets the draw offset', REPORT, 'search.emp == search.emppp ? draw_offset : 0', '0'),
]

# A wrong value in each column of the ply table: row, column text, broken text.
ROWS = [
    (2, '.leaf_deep = 1,', '.leaf_deep = 3,'), (4, '.leaf_deep = 3,', '.leaf_deep = 5,'), (10, '.gate = {9, 9},', ''),
    (12, '.gate = {0, 11},', '.gate = {0, 9},'), (13, '.gate = {0, 11},', '.gate = {0, 13},'),
    (9, '.order = MoveOrder::promotions_first,', ''), (2, '.answer = Answer::repetition,', ''),
    (5, '.answer = Answer::shallow_table,', ''), (4, '.scan_deep = 8,', '.scan_deep = 10,'),
    (2, '.null_move = {1, 7},', ''), (4, '.null_move = {2, 9},', '.null_move = {2, 7},'), (5, '.null_move = {2, 9},', '.null_move = {3, 9},'),
    (2, '.iid = true,', ''), (3, '.iid = true,', ''), (5, '.lmr = 9,', '.lmr = 11,'), (8, '.lmr = 11,', '.lmr = 9,'),
    (6, '.amr = 11,', '.amr = 9,'), (3, '.amr = 9,', '.amr = 11,'), (9, '.vertical = Vertical::plies_9_to_21,', ''),
    (7, '.vertical = Vertical::ply_7,', ''), (9, '.extension = {9, 9},', ''), (11, '.extension = {9, 11},', '.extension = {9, 9},'),
    (6, '.drops_capture_slot = true,', ''), (7, '.last_ply_cut = true,', ''), (9, '.last_ply_cut = true,', ''), (6, '.flag_cuts = true,', ''),
    (7, '.seventh_rank_moves = false,', ''), (7, '.time_deep = 8,', '.time_deep = 10,'), (3, '.castling = 9}', '.castling = 8}'),
]


def table_breaks():
    lines = open(os.path.join(ROOT, TABLE)).read().split('\n')
    for row, text, broken in ROWS:
        line = next(l for l in lines if l.strip().startswith('{.ply = %2d,' % row))
        yield ('row %d: %s' % (row, text.strip(',')), TABLE, line, line.replace(text, broken))


def pattern_of(text):
    """The text, however its lines are broken."""
    return re.compile(r'\s*'.join(re.escape(word) for word in re.findall(r'\w+|[^\w\s]', text)))


def run(command, seconds=None, env=None):
    try:
        return subprocess.run(command, cwd=COPY, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=seconds, env=env)
    except subprocess.TimeoutExpired:
        return None


def build(targets):
    done = run(['cmake', '--build', 'build', '-j', str(os.cpu_count() or 2), '--target', *targets])
    if done.returncode != 0:
        sys.exit('the broken tree does not build:\n' + done.stdout[-3000:])


def signature():
    done = run(['build/ondrel-bench', 'quick'], 120)
    if done is None:
        return 'no end'
    return done.stdout.strip().split('\n')[-1] if done.returncode == 0 else 'ended with %d' % done.returncode


def failing_test():
    """The first test that fails, of all those that need no second process; each processor runs a share."""
    command = ['build/tests/ondrel_tests', '--gtest_brief=1', '--gtest_fail_fast', '--gtest_filter=-*Process.*:Determinism.*']
    count = os.cpu_count() or 1
    shares = [subprocess.Popen(command, cwd=COPY, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                               env={**os.environ, 'GTEST_TOTAL_SHARDS': str(count), 'GTEST_SHARD_INDEX': str(k)})
              for k in range(count)]
    end = time.time() + TEST_SECONDS
    found = None
    for share in shares:
        try:
            text, _ = share.communicate(timeout=max(1, end - time.time()) if not found else 1)
        except subprocess.TimeoutExpired:
            share.kill()
            share.communicate()
            continue
        failed = [l for l in text.split('\n') if 'FAILED' in l and '.' in l]
        if share.returncode != 0 and not found:
            found = failed[0].split(']')[-1].split(',')[0].split('(')[0].strip() if failed else 'ended with %d' % share.returncode
    return found


def prepare(with_tests):
    os.makedirs(COPY, exist_ok=True)
    for name in ('src', 'tests', 'cmake', 'docs', 'fuzz', 'bench', 'CMakeLists.txt', 'README.md', 'CHANGELOG.md', 'tools'):
        source, target = os.path.join(ROOT, name), os.path.join(COPY, name)
        if os.path.isdir(source):
            shutil.rmtree(target, ignore_errors=True)
            shutil.copytree(source, target)
        elif os.path.exists(source):
            shutil.copy2(source, target)
    done = run(['cmake', '-S', '.', '-B', 'build', '-G', 'Ninja', '-DCMAKE_BUILD_TYPE=Release', '-DCMAKE_CXX_FLAGS_RELEASE=%s -DNDEBUG' % FLAGS,
                '-DONDREL_LTO=OFF'])
    if done.returncode != 0:
        sys.exit(done.stdout[-3000:])
    build(['ondrel-bench'] + (['ondrel_tests'] if with_tests else []))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--only', default='', help='breaks whose name matches this regular expression')
    parser.add_argument('--list', action='store_true', help='tell the breaks')
    parser.add_argument('--no-tests', action='store_true', help='ask the bench alone')
    options = parser.parse_args()
    breaks = [b for b in BREAKS + list(table_breaks()) if re.search(options.only, b[0])]
    for name, path, text, *rest in breaks:
        count = len(pattern_of(text).findall(open(os.path.join(ROOT, path)).read()))
        if count != 1:
            sys.exit('%s: the text stands %d times in %s:\n%s' % (name, count, path, text))
    if options.list:
        print('\n'.join(b[0] for b in breaks))
        return 0
    prepare(not options.no_tests)
    whole = signature()
    print('unbroken: %s' % whole, flush=True)
    noticed, survived, harmless = 0, [], 0
    for name, path, text, broken, *reason in breaks:
        start = time.time()
        target = os.path.join(COPY, path)
        source = open(target).read()
        open(target, 'w').write(pattern_of(text).sub(lambda _: broken, source))
        try:
            build(['ondrel-bench'])
            found = signature()
            by = None if found == whole else 'bench: ' + found.replace('Bench: ', '')
            if by is None and not options.no_tests:
                build(['ondrel_tests'])
                by = failing_test()
        finally:
            open(target, 'w').write(source)
        if reason:
            harmless += 1
            verdict = 'NOTICED, but was to change nothing (%s): %s' % (reason[0], by) if by else 'changes nothing: ' + reason[0]
            survived += [name] if by else []
        elif by:
            noticed += 1
            verdict = by
        else:
            survived.append(name)
            verdict = 'SURVIVED'
        print('%-62s %5.0f s  %s' % (name, time.time() - start, verdict), flush=True)
    print('%d noticed, %d change nothing, %d survived%s' % (noticed, harmless, len(survived), ''.join('\n  ' + s for s in survived)))
    return 1 if survived else 0


sys.exit(main())
