// Commands that change nothing: the no-ops, those that only consume a number, and comments.
#include "interpreter/handlers.h"
#include "interpreter/hpgl_read.h"

namespace qm::handlers {

// Parameters stay in the input, where the main loop ignores what is no letter.
void Ignore(HPGLRead& /*reader*/) {}

void SkipOne(HPGLRead& reader) { reader.GetShortParam(); }

// CO "text". Quirk: a first byte that is no double quote is consumed, and nothing more.
void Comment(HPGLRead& reader) {
    InputReader& input = reader.input;
    if (input.GetCooked() != '"') return;
    while (!input.Over() && input.GetCooked() != '"') {
    }
}

}  // namespace qm::handlers
