// What the engine wrote, without what is the clock's.
#pragma once

#include <string>
#include <vector>

namespace teste {

// The lines without their field "time N", and without the "info nps" lines.
std::vector<std::string> sem_relogio(const std::vector<std::string>& linhas);

// The same without the depths that the process has reached: the field "seldepth N" of every line, and the depth of the
// final line of a search, the only one without that field.
std::vector<std::string> sem_profundidades(const std::vector<std::string>& linhas);

}  // namespace teste
