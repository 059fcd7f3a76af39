#include "view/OscillographView.h"

namespace TavNA {

OscillographView::OscillographView() {
    set_hexpand(true);
    set_vexpand(true);
    show_all();
}

} // namespace TavNA
