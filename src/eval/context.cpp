#include "eval/context.h"

#include "base/options.h"
#include "board/game.h"

namespace ondrel {

void refresh_context(Colour own) {
    const Context now{own,           root.npecas,         root.materialmaior, root.regimen,
                      options.agres, options.agresprxrei, options.MOB,        options.PM};
    if (now != context.of) {
        context.of = now;
        ++context.stamp;
    }
}

}  // namespace ondrel
