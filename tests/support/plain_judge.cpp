#include "support/plain_judge.h"

#include "eval/judgement.h"
#include "eval/leaf.h"
#include "plain/eval.h"
#include "plain/node.h"

namespace tests {

namespace {

void tell_settings() {
    using ondrel::options;
    plain::Settings& s = plain::settings = {};
    s.CPU = options.CPU;
    s.deepp = options.deepp;
    s.TC = options.TC != 0;
    s.Tu = options.Tu;
    s.SEARCH_EE = options.SEARCH_EE != 0;
    s.PVS = options.PVS != 0;
    s.TURBO = options.TURBO != 0;
    s.Positive_filterp = options.Positive_filterp;
    s.positfilter = options.positfilter;
    s.Negative_filterp = options.Negative_filterp;
    s.negatfilter = options.negatfilter;
    s.VERTICAL_filt = options.VERTICAL_filt != 0;
    s.LMR = options.LMR != 0;
    s.NULL_MOVE = options.NULL_MOVE;
    s.Temperamento = options.Temperamento;
    s.agres = options.agres;
    s.agresprxrei = options.agresprxrei;
    s.agreschrei = options.agreschrei;
    s.empp = options.empp;
    s.matrix = options.matrix;
    s.EXTRA_EVALL = options.EXTRA_EVALL != 0;
    s.PM = options.PM;
    s.MOB = options.MOB;
    s.roque_v = options.roque_v;
    s.extradef = options.extradef != 0;
    s.MQ = options.MQ;
}

void tell_root() {
    using ondrel::root;
    plain::Root& r = plain::root = {};
    r.joga_com_b = to_plain(ondrel::side_to_search());
    r.nb = ondrel::game_line.nb;
    r.materialflot0 = root.materialflot0;
    r.regimen = root.regimen;
    r.extraevalll = ondrel::judgement.extraevalll;
    r.roque = ondrel::pass.roque;
    r.material_a = root.material_a;
    r.materialmaior = root.materialmaior;
    r.npecas = root.npecas;
    r.Xr = root.Xr;
    r.XP = root.XP;
    for (const Colour c : {ondrel::white, ondrel::black}) {
        r.p_x_R[c] = ondrel::file_of(ondrel::trial.p_xy_R[c]);
        r.p_y_R[c] = ondrel::rank_of(ondrel::trial.p_xy_R[c]);
    }
}

void tell_ply(int n) {
    const ondrel::Ply& from = ondrel::ply[n];
    plain::Ply& to = plain::tree.ply[n];
    to.tabd = from.tabd;
    to.material = from.material;
    to.X_D = from.X_D != 0;
    to.XEQUE_MATE = from.XEQUE_MATE != 0;
    for (const Colour c : {ondrel::white, ondrel::black}) {
        to.flags.R_jm[c] = from.jm_D.R_jm[c] != 0;
        to.flags.T_a_jm[c] = from.jm_D.T_a_jm[c] != 0;
        to.flags.T_h_jm[c] = from.jm_D.T_h_jm[c] != 0;
        for (std::size_t f = 0; f < 8; ++f) {
            to.flags.double_step[c][f] = from.jm_D.p_ah[c][f] != 0;
        }
    }
}

void tell_boards() {
    plain::tree = {};
    plain::tree.tab2 = ondrel::trial.tab2;
    tell_ply(0);
}

void tell_bounds() {
    using ondrel::bounds;
    plain::Tree& t = plain::tree;
    t.alfa = bounds.alfa;
    t.beta = bounds.beta;
    t.MAXcut = bounds.MAXcut;
    t.MAXcutt = bounds.MAXcutt;
    for (std::size_t k = 0; k < bounds.corte_alfa.size(); ++k) {
        t.corte_alfa[k] = bounds.corte_alfa[k] != 0;
        t.corte_beta[k] = bounds.corte_beta[k] != 0;
    }
}

void tell_search(int n) {
    plain::Tree& t = plain::tree;
    t.deep = ondrel::search.deep;
    t.DEEP = ondrel::pass.DEEP;
    t.nd = ondrel::tree.nd;
    t.EXTRA_EVAL = ondrel::search.EXTRA_EVAL != 0;
    t.SEARCH_E = ondrel::search.SEARCH_E != 0;
    t.quiet_slot[static_cast<std::size_t>(n)] = to_plain(ondrel::slots.aa_dd[n]);
    t.capture_slot[static_cast<std::size_t>(n)] = to_plain(ondrel::slots.aag_ddg[n]);
    plain::root.emp = ondrel::search.emp;
}

}  // namespace

void tell_plain() {
    tell_settings();
    tell_root();
    tell_boards();
    plain::fill_tables(plain::white);
    plain::fill_tables(plain::black);
}

PlainLeaf plain_leaf(Colour own, Colour stm) {
    tell_plain();
    own == stm ? plain::extra_eval(to_plain(own)) : plain::extra_evall(to_plain(own));
    return {plain::tree.extraeval, plain::tree.EMPAT};
}

float plain_base_value(Colour own) {
    tell_plain();
    plain::verifica_estrategia(to_plain(own));
    return plain::root.extraevalll;
}

PlainReplies plain_replies(int n) {
    tell_plain();
    tell_ply(n);
    tell_bounds();
    tell_search(n);
    plain::move_order(to_plain(side_on_ply()), n);
    return {plain::value_of(n), plain::move_loop_flag(n), plain::tree.nodes};
}

}  // namespace tests
