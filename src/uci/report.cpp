#include "uci/report.h"

#include "base/clock.h"
#include "base/numeric.h"
#include "memory/shallow_tables.h"
#include "search/state.h"
#include "uci/command_line.h"
#include "uci/output.h"

#include <string>
#include <string_view>

namespace ondrel {
namespace {

constexpr double centipawns = 10.0;  // of a score unit
constexpr int draw_offset = 100;
constexpr float hidden_margin = 150.0F;  // centipawns below the material balance, without Full info
constexpr int mate_steps = 12;           // of the ladder, 15400 down to 3300
constexpr int per_mille_of_tables = 30;  // hashfull of the three tables of 10,000 records

// "info score mate <n> " for a score on the ladder, empty for any other. The two nearest own mates are both "mate 1".
std::string mate_text(float score) {
    for (int k = 1; k <= mate_steps; ++k) {
        const float step = mate_of_ply(2 * k);
        if (score == step) {
            return "info score mate " + std::to_string(k == 1 ? 1 : k - 1) + " ";
        }
        if (score == -step) {
            return "info score mate " + std::to_string(-k) + " ";
        }
    }
    return {};
}

// A pawn up or down by the parity of the depth, until the draw score has risen.
int offset_shown() {
    const int O = search.emp == search.emppp ? draw_offset : 0;
    return search.deep % 2 == 0 ? -O : O;
}

std::string centipawn_text(float score) {
    const auto shown = static_cast<std::int64_t>(to_int(static_cast<double>(score) * centipawns)) + offset_shown();
    return "info score cp " + std::to_string(shown);
}

std::string nodes_text() { return " nodes " + std::to_string(static_cast<std::int32_t>(search.nodes)); }

// Records in use of a ply's table, full or not; of the same three tables for both colours.
int records_in_use(int n, Colour c) { return search.FULL[n] ? shallow_records : next_shallow_record(n, c); }

int hashfull() {
    return (records_in_use(3, white) + records_in_use(4, black) + records_in_use(5, white)) / per_mille_of_tables;
}

std::string pv_text() {
    std::string text = " pv";
    for (const auto& move : root_move.A0_D7) {
        text += ' ';
        text.append(move.data(), move.size());
    }
    return text;
}

// Without Full info a move far below the material balance is not shown; a mate always is.
bool is_shown(float score) {
    const float S = score * static_cast<float>(centipawns);
    return options.FULL_inf || S + static_cast<float>(offset_shown()) >=
                                   root.materialflot0 * static_cast<float>(centipawns) - hidden_margin;
}

std::string root_move_text() {
    std::string text =
        " depth " + std::to_string(search.deep + 1) + " seldepth " + std::to_string(process.ddep + 1) + " currmove ";
    text.append(root_move.A0_D7[0].data(), root_move.A0_D7[0].size());
    text += " currmovenumber " + std::to_string(search.curr) + nodes_text() + " time " + std::to_string(time_used());
    if (search.HASHf) {
        text += " hashfull " + std::to_string(hashfull());
    }
    return text + pv_text();
}

}  // namespace

void info_deept() {
    const float score = bounds.beta[1];
    if (!search.EXTRA_EVAL) {
        process.ddep = search.deep;
    }
    search.fim = clock_ms();
    std::string start = mate_text(score);
    if (start.empty() && is_shown(score)) {
        start = centipawn_text(score);
    }
    if (!start.empty()) {
        write_line(start + root_move_text());
    }
    if (const int used = time_used(); used != 0) {
        const auto nps = static_cast<std::int64_t>(static_cast<std::int32_t>(search.nodes) / used) * 1000;
        write_line("info nps " + std::to_string(nps));
    }
    if (process.ddep > search.dddep) {
        search.dddep = process.ddep;
    }
}

void report_root_move() {
    if (pass.SCAN1 || pass.SCANT) {
        info_deept();
    }
}

void info_final() {
    if (!search.EXTRA_EVAL) {
        search.dddep = search.deep;
    }
    std::string text = mate_text(search.EP);
    if (text.empty()) {
        text = centipawn_text(search.EP);
    }
    text += " depth " + std::to_string(search.dddep + 1) + nodes_text() + " pv ";
    text.append(command.ABCD.data(), command.ABCD.size());
    write_line(text);
}

}  // namespace ondrel
