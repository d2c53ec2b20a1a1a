// The option lines.
#pragma once

namespace ondrel {

// Writes the line of every option.
void anuncia_opcoes();

// Tries the line `in` as an option line. An option is known by single characters at fixed positions and its value by
// one character; a line or value that hits none of them changes nothing. Writes the settings and their working copies,
// and runs the two buttons.
void le_opcao();

}  // namespace ondrel
