#pragma once

#include "tools/session/FakeInput.h"
#include "tools/session/ScreenImage.h"

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Gtk {
class Widget;
}
namespace TavView {
class Oscillograph;
}

namespace TavSession {

using Clock = std::chrono::steady_clock;

// The person at the analyser's window: reads the screen (on the main thread)
// and acts through the X server. Each action names what it aims at by what is
// written on it, as a person would.
class Person {
public:
    FakeInput hands;

    bool sees(const std::string& text);
    Point whereIs(const std::string& text);
    // Waits for the target to take a click, as a person waits for a greyed-out
    // list; returns the moment the button went up.
    Clock::time_point click(const std::string& text);

    // "Файл" → "Открыть", the path typed into the file chooser, its
    // "Открыть" button. Returns when the chooser has gone, with the moment
    // the button was released: when the file was chosen.
    Clock::time_point openThroughMenu(const std::string& path);
    // Until the progress bar has gone and `text` shows.
    void waitForLoad(const std::string& text,
                     std::chrono::milliseconds limit = std::chrono::seconds(30));
    bool loading();

    // Stream entry captions, in list order.
    std::vector<std::string> streams();
    // Every text in the "Описание" panel.
    std::vector<std::string> description();
    // Captions of the channel check boxes on screen, and clicks on them.
    std::vector<std::string> channels();
    // Check boxes made so far, on screen or scrolled away: what a long list of
    // channels holds. Walks every widget on the main thread.
    int channelBoxes();
    // Returns the moment the check box was released.
    Clock::time_point tick(const std::string& channel);
    // The image button on the file's row in "Файлы".
    void removeFile(const std::string& fileName);
    // The status bar's cancel button, while a file loads; false when none shows.
    bool cancelButtonShows();
    void cancelLoad();
    // The status bar's mode switch: PCAP ↔ ETHERNET.
    void switchMode();

    // The plot's analogue area on screen, the shown time window (seconds from
    // the capture's start) and the time under a point of the plot.
    Rect plot();
    std::pair<double, double> timeWindow();
    // Pixels of `colour` inside the plot area now.
    int pixelsInPlot(Rgb colour);

    void closeMainWindow();
    // The module's window, for screenshots; saved only when the run asks for
    // them ($TAVNA_SCREENSHOTS names the folder).
    void screenshot(const std::string& name);
    void screenshot(const std::string& name, Rect area);

private:
    void typeLocation(const std::string& path);
    Point aim(const std::string& what, const std::function<Gtk::Widget*()>& find,
              const std::function<Point(Gtk::Widget&)>& spot);
};

// The oscillograph widget of the main window; main thread only.
TavView::Oscillograph& scopeWidget();

} // namespace TavSession
