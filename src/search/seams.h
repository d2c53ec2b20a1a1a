// Single routines of the search by run-time ply and colour, for the tests: the search itself knows both by template.
// Squares are board indices. Built only where the probes are.
#pragma once

#include "base/types.h"

namespace ondrel {

void ordem_dos_lances_da_ply(int n, Cor c);                      // the move order of c on tabd<N>
void gerador_da_ply(int n, Cor c, int vitima, bool teste);       // gerador, geradortest
void analiselivre_da_ply(int n, Cor c, int origem, bool teste);  // analiselivre, analiselivretest
void analisepositive_peao_da_ply(int n, Cor c, int origem);      // promotions
void analisepositive_da_ply_1(Cor c, int K, int origem);         // staged captures; K = 0: the test form
void deep_da_ply(int n, Cor c, Lance m);                         // deep_<c><N>
void programa_da_raiz(Cor c);                                    // the schedule of one pass

}  // namespace ondrel
