// Option lines and go lines, which are both read by characters at fixed places: whatever stands there, a setting keeps
// to its scale, and the clock to its budgets.
#include "fuzzing.h"

#include "board/game.h"
#include "search/state.h"
#include "uci/command_line.h"
#include "uci/go.h"
#include "uci/options.h"

namespace {

using namespace ondrel;

void check_clock() {
    fuzz::require(search.tempo >= 10000 && search.tempo <= 10000000, "tempo");
    fuzz::require(soft_limit() > 0 && hard_limit() > soft_limit(), "limits");
    fuzz::require(search.deep >= 0 && search.deep <= no_depth_limit, "deep");
    fuzz::require(search.IIDS <= 1 && search.EXTRA_EVAL <= 1 && search.SEARCH_E <= 1, "flags of low time");
}

void read(const std::string& line) {
    command.in = line;
    if (in_at(0) == 'g' && in_at(1) == 'o') {
        search = {};
        read_clock();
        check_clock();
    } else {
        read_option();
    }
    fuzz::check_settings();
}

}  // namespace

// The first byte tells the men on the board.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ondrel::begin_process();
    if (size == 0) {
        return 0;
    }
    root.npecas = {data[0] % 16, data[0] / 16};
    for (const std::string& line : fuzz::lines_of(data + 1, size - 1)) {
        read(line);
    }
    return 0;
}
