/// The language window: one row per language of the text table. Shown at the first start.
#pragma once

#include "core/window.h"

namespace velkoro {

struct sellang_window {
    window form{"sellang", "Sprache / Language", "7310"};
    control sprachen{form, kind::list, "sprachen", {.tag = "0 7926"}};
    control OKButton{form, kind::button, "OKButton", {.caption = "OK", .tag = "7312 7927"}};
    sellang_window();
};
extern sellang_window sellang;

} // namespace velkoro
