#include "tools/session/Person.h"

#include "platform/view/oscillograph/Oscillograph.h"
#include "tools/session/UiCall.h"
#include "tools/session/WidgetQuery.h"

#include <X11/keysym.h>
#include <gdk/gdkx.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>
#include <gtkmm/filechooserdialog.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/switch.h>
#include <gtkmm/window.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <thread>

using namespace std::chrono_literals;

namespace TavSession {

namespace {

Gtk::Widget& named(const std::string& text) {
    Gtk::Widget* widget = findByText(text);
    if (widget == nullptr)
        throw SessionError("nothing on screen reads \"" + text + "\"");
    return *widget;
}

bool hasClass(Gtk::Widget& w, const char* name) {
    return w.get_style_context()->has_class(name);
}

// The panel whose title bar reads `title`: the title's box and its content
// share the panel's box.
Gtk::Widget& panel(const std::string& title) {
    Gtk::Widget* titleBar = named(title).get_parent();
    if (titleBar == nullptr || titleBar->get_parent() == nullptr)
        throw SessionError("no panel titled \"" + title + "\"");
    return *titleBar->get_parent();
}

Point centreOf(Gtk::Widget& w) {
    return visibleRect(w).centre();
}

} // namespace

// Like a person, wait for a greyed-out target to come alive before clicking:
// panels stay insensitive while a file loads.
Point Person::aim(const std::string& what, const std::function<Gtk::Widget*()>& find,
                  const std::function<Point(Gtk::Widget&)>& spot) {
    std::optional<Point> target;
    waitUntil(what + " to take a click", [&] {
        Gtk::Widget* w = find();
        if (w != nullptr && w->is_sensitive())
            target = spot(*w);
        return target.has_value();
    });
    return *target;
}

TavView::Oscillograph& scopeWidget() {
    auto found = showingWidgets<TavView::Oscillograph>();
    if (found.empty())
        throw SessionError("no oscillograph on screen");
    return *found.front();
}

bool Person::sees(const std::string& text) {
    return onUi([&] { return findByText(text) != nullptr; });
}

Point Person::whereIs(const std::string& text) {
    return onUi([&] { return visibleRect(named(text)).centre(); });
}

Clock::time_point Person::click(const std::string& text) {
    return hands.click(aim(
        "\"" + text + "\"", [&] { return findByText(text); }, centreOf));
}

Clock::time_point Person::openThroughMenu(const std::string& path) {
    click("Файл");
    click("Открыть");
    // Keys reach the focused widget of the window under the pointer; sent
    // before that widget is realized, they are lost.
    waitUntil("the file chooser to take keys", [] {
        auto dialogs = showingWidgets<Gtk::FileChooserDialog>();
        if (dialogs.empty() || !dialogs.front()->get_mapped())
            return false;
        const Gtk::Widget* focus = dialogs.front()->get_focus();
        return focus == nullptr || focus->get_realized();
    });
    // Ctrl+L opens the chooser's location field, where a path can be typed.
    hands.moveTo(onUi(
        [] { return visibleRect(*showingWidgets<Gtk::FileChooserDialog>().front()).centre(); }));
    // Held as a person holds a shortcut: the field it opens takes keys only
    // once it is realized, and a release sent sooner reaches it unrealized.
    hands.key(XK_l, {XK_Control_L}, 100ms);
    typeLocation(path);
    // The button, not Enter: Enter would first take a completion the field
    // may still offer. The chooser enables it once it has checked the path.
    const auto openButton = []() -> Gtk::Widget* {
        auto found =
            showingWidgets<Gtk::Button>([](Gtk::Button& b) { return b.get_label() == "Открыть"; });
        return found.empty() ? nullptr : found.front();
    };
    const auto chosen = hands.click(aim("the chooser's \"Открыть\" button", openButton, centreOf));
    waitUntil("the file chooser to close",
              [] { return showingWidgets<Gtk::FileChooserDialog>().empty(); });
    return chosen;
}

// The location field completes names as they are typed, from folders it reads
// in the background. Like a person, type the next character the field still
// lacks, and take back one that landed after a late completion.
void Person::typeLocation(const std::string& path) {
    const auto focusedField = [] {
        auto fields = showingWidgets<Gtk::Entry>(
            [](Gtk::Entry& e) { return e.is_focus() && e.get_realized(); });
        return fields.empty() ? nullptr : fields.front();
    };
    waitUntil("the location field", [&] { return focusedField() != nullptr; });
    const auto fieldText = [&] {
        const Gtk::Entry* field = focusedField();
        return field == nullptr ? std::string() : std::string(field->get_text());
    };
    std::string field;
    for (std::size_t keys = 0; (field = onUi(fieldText)) != path; ++keys) {
        if (keys > 4 * path.size())
            throw SessionError("the file chooser's location field reads \"" + field + "\", not " +
                               path);
        if (path.compare(0, field.size(), field) == 0)
            hands.type(path.substr(field.size(), 1));
        else
            hands.key(XK_BackSpace);
        std::this_thread::sleep_for(20ms);
    }
}

bool Person::loading() {
    return onUi([] { return !showingWidgets<Gtk::ProgressBar>().empty(); });
}

void Person::waitForLoad(const std::string& text, std::chrono::milliseconds limit) {
    waitUntil(
        "the load to end with \"" + text + "\" on screen",
        [&] { return showingWidgets<Gtk::ProgressBar>().empty() && findByText(text) != nullptr; },
        limit);
}

std::vector<std::string> Person::streams() {
    return onUi([] {
        std::vector<std::string> names;
        for (auto* button :
             showingWidgets<Gtk::Button>([](Gtk::Button& b) { return hasClass(b, "stream"); }))
            names.push_back(button->get_label());
        return names;
    });
}

std::vector<std::string> Person::description() {
    return onUi([] {
        auto texts = textsUnder(panel("Описание"));
        texts.erase(texts.begin()); // the panel's title
        return texts;
    });
}

std::vector<std::string> Person::channels() {
    return onUi([] {
        std::vector<std::string> names;
        for (auto* box : showingWidgets<Gtk::CheckButton>())
            names.push_back(box->get_label());
        return names;
    });
}

int Person::channelBoxes() {
    return onUi([] {
        int n = 0;
        forEachWidget([&](Gtk::Widget& w) {
            if (dynamic_cast<Gtk::CheckButton*>(&w) != nullptr && w.get_visible())
                ++n;
        });
        return n;
    });
}

Clock::time_point Person::tick(const std::string& channel) {
    const auto box = [&]() -> Gtk::Widget* {
        auto boxes = showingWidgets<Gtk::CheckButton>(
            [&](Gtk::CheckButton& b) { return b.get_label() == channel; });
        return boxes.empty() ? nullptr : boxes.front();
    };
    // The box itself, at the left end of its caption.
    return hands.click(aim("the channel " + channel, box, [](Gtk::Widget& w) {
        const Rect r = visibleRect(w);
        return Point{r.x + r.height / 2, r.y + r.height / 2};
    }));
}

void Person::removeFile(const std::string& fileName) {
    const auto button = [&]() -> Gtk::Widget* {
        Gtk::Widget* nameButton = findByText(fileName);
        if (nameButton == nullptr)
            return nullptr;
        const Rect name = visibleRect(*nameButton);
        auto onRow = showingWidgets<Gtk::Button>([&](Gtk::Button& b) {
            const Rect r = visibleRect(b);
            return b.get_label().empty() && r.x >= name.x + name.width &&
                   std::abs(r.centre().y - name.centre().y) < name.height / 2;
        });
        return onRow.empty() ? nullptr : onRow.front();
    };
    hands.click(aim("the remove button of " + fileName, button, centreOf));
}

namespace {

Gtk::Button* cancelButton() {
    auto found = showingWidgets<Gtk::Button>(
        [](Gtk::Button& b) { return b.get_tooltip_text() == "Отменить загрузку"; });
    return found.empty() ? nullptr : found.front();
}

} // namespace

bool Person::cancelButtonShows() {
    return onUi([] { return cancelButton() != nullptr; });
}

void Person::cancelLoad() {
    hands.click(aim("the cancel button", cancelButton, centreOf));
}

void Person::switchMode() {
    const auto modeSwitch = []() -> Gtk::Widget* {
        auto switches = showingWidgets<Gtk::Switch>();
        return switches.empty() ? nullptr : switches.front();
    };
    hands.click(aim("the mode switch", modeSwitch, centreOf));
}

Rect Person::plot() {
    return onUi([] {
        auto& scope = scopeWidget();
        const Rect area = visibleRect(scope.plotArea());
        const auto& analog = scope.layout().analog;
        return Rect{area.x + static_cast<int>(std::ceil(analog.x)),
                    area.y + static_cast<int>(std::ceil(analog.y)),
                    static_cast<int>(analog.width) - 1, static_cast<int>(analog.height) - 1};
    });
}

std::pair<double, double> Person::timeWindow() {
    return onUi([] {
        double from = 0.0, to = 0.0;
        scopeWidget().getSeriesRange(from, to);
        return std::make_pair(from, to);
    });
}

int Person::pixelsInPlot(Rgb colour) {
    const Rect where = plot();
    return onUi([&] { return ScreenImage::grab(where).countNear(where, colour, 24); });
}

void Person::closeMainWindow() {
    hands.requestClose(onUi([] { return GDK_WINDOW_XID(largestWindow()->get_window()->gobj()); }));
}

void Person::screenshot(const std::string& name) {
    screenshot(name, onUi([] { return visibleRect(*largestWindow()); }));
}

void Person::screenshot(const std::string& name, Rect area) {
    const char* folder = std::getenv("TAVNA_SCREENSHOTS");
    if (folder == nullptr || *folder == '\0')
        return;
    // Let check marks and hover effects finish their transitions.
    std::this_thread::sleep_for(400ms);
    std::filesystem::create_directories(folder);
    const std::string path = (std::filesystem::path(folder) / (name + ".png")).string();
    onUi([&] { ScreenImage::grab(area).savePng(path); });
}

} // namespace TavSession
