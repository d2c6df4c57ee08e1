#include "waypoints/conflict.h"

#include "core/num_text.h"
#include "core/platform.h"
#include "core/texts.h"
#include "waypoints/row_text.h"

namespace velkoro {

conflict_answer conflict_box(conflict_question& question)
{
    if (!question.incoming || question.old_index < 0 || question.old_index > store.wp_top)
        return conflict_answer::keep_old;
    const wayp_rec& old = store.wp[static_cast<std::size_t>(question.old_index)];
    const std::string apart =
        pic(hooks.distance(question.incoming->pos, old.pos), "#0.00") + " " + distance_unit();
    switch (say(2032, buttons::yes_no_cancel, icon::question, old.nam, apart)) {
    case answer::yes: return conflict_answer::take_new;
    case answer::no: return conflict_answer::keep_old;
    default: return conflict_answer::cancel_batch;
    }
}

void conflict_install()
{
    hooks.conflict_ask = conflict_box;
}

} // namespace velkoro
