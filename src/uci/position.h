// From a position line to the root of a search.
#pragma once

#include "base/types.h"

namespace ondrel {

// New-game reset: everything but the settings, `deep` and the game-long memory, for a game with the engine as c.
void nova_partida(Cor c);

// Replays the position line `in` into tab, tabr1 and the root's flags, counts its moves in nb and leaves the side to
// search in joga_com_b. Nothing is validated: what the line says is played, what it leaves out is empty.
void le_posicao();

// Plays the four characters of `in` at o on tab. With `mais_lances` the next move follows at once: see init_tabuleiro.
void joga_lance_da_linha(bool mais_lances = false);

// Prepares the search of `minha` from the position replayed: key, tables, draw score, depth, working copies.
void prepara_busca(Cor minha);

}  // namespace ondrel
