#include "view/CaptureBar.h"

#include <glibmm/markup.h>

namespace TavNA {

namespace {

const char* const startText = "Начать захват";
const char* const stopText = "Остановить захват";

} // namespace

CaptureBar::CaptureBar() : Gtk::Box(Gtk::ORIENTATION_HORIZONTAL, 8) {
    interfaces.set_tooltip_text("Сетевой интерфейс");
    interfaces.set_valign(Gtk::ALIGN_CENTER);
    startStop.set_label(startText);
    startStop.set_valign(Gtk::ALIGN_CENTER);
    for (Gtk::Label* label : {&counts, &lost}) {
        label->get_style_context()->add_class("status_label");
        label->set_valign(Gtk::ALIGN_CENTER);
    }
    pack_start(interfaces, Gtk::PACK_SHRINK);
    pack_start(startStop, Gtk::PACK_SHRINK);
    pack_start(counts, Gtk::PACK_SHRINK);
    pack_start(lost, Gtk::PACK_SHRINK);
    startStop.signal_clicked().connect([this] {
        if (capturing)
            signalStop.emit();
        else
            signalStart.emit();
    });
    show_all();
}

std::string CaptureBar::shownText(const InterfaceChoice& choice) {
    std::string text = choice.name;
    if (!choice.description.empty())
        text += " — " + choice.description;
    return text + (choice.up ? " (связь есть)" : " (нет связи)");
}

void CaptureBar::setInterfaces(const std::vector<InterfaceChoice>& choices) {
    const std::string before = chosen();
    interfaces.remove_all();
    bool stillThere = false;
    std::string firstUp;
    for (const InterfaceChoice& choice : choices) {
        interfaces.append(choice.name, shownText(choice));
        stillThere = stillThere || choice.name == before;
        if (firstUp.empty() && choice.up)
            firstUp = choice.name;
    }
    if (stillThere)
        interfaces.set_active_id(before);
    else if (!firstUp.empty())
        interfaces.set_active_id(firstUp);
    else if (!choices.empty())
        interfaces.set_active(0);
}

std::string CaptureBar::chosen() const {
    return interfaces.get_active_id();
}

void CaptureBar::setCapturing(bool now) {
    capturing = now;
    startStop.set_label(now ? stopText : startText);
    // The interface of a running capture stays what it was started on.
    interfaces.set_sensitive(!now);
}

void CaptureBar::setCounts(std::uint64_t captured, std::uint64_t perSecond,
                           std::uint64_t lostFrames) {
    counts.set_text("Кадров: " + std::to_string(captured) +
                    "   Кадров/с: " + std::to_string(perSecond));
    const std::string text = "Потеряно: " + std::to_string(lostFrames);
    lost.set_markup(lostFrames == 0 ? Glib::Markup::escape_text(text)
                                    : "<span foreground=\"red\">" +
                                          Glib::Markup::escape_text(text) + "</span>");
}

void CaptureBar::clearCounts() {
    counts.set_text("");
    lost.set_text("");
}

} // namespace TavNA
