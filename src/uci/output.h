// Standard output: whole lines only, each one insertion and one flush.
#pragma once

#include <string_view>

namespace ondrel {

// Makes every insertion a flush; called once, before anything is written.
void abre_saida();

// Writes the text and a line end.
void escreve_linha(std::string_view texto);

}  // namespace ondrel
