#pragma once

#include "tools/session/Geometry.h"

#include <chrono>
#include <initializer_list>
#include <string>

typedef struct _XDisplay Display;

namespace TavSession {

// A person's hands: pointer and keyboard events injected into the X server
// through XTEST, on a connection of its own. The server routes them as it
// routes real input, so grabs, focus and the toolkit's event handling all
// take part. Safe to use from a thread that is not the toolkit's.
class FakeInput {
public:
    FakeInput(); // the display named by $DISPLAY; throws SessionError without XTEST
    ~FakeInput();
    FakeInput(const FakeInput&) = delete;
    FakeInput& operator=(const FakeInput&) = delete;

    void moveTo(Point p);
    // Returns the moment the button went up, when a widget takes a click.
    std::chrono::steady_clock::time_point click(Point p, unsigned button = 1);
    // Returns the moment the second release was sent.
    std::chrono::steady_clock::time_point doubleClick(Point p);
    // Press at `from`, move in steps, release at `to`.
    void drag(Point from, Point to, int steps = 12);
    // Positive steps turn the wheel away from the user (up), negative towards.
    void wheel(Point p, int steps, std::initializer_list<unsigned long> heldKeys = {});
    // A key by its keysym, with modifier keysyms held down around it; the key
    // itself is held down `holdFor` longer than the shortest distinct press.
    void key(unsigned long keysym, std::initializer_list<unsigned long> heldKeys = {},
             std::chrono::milliseconds holdFor = std::chrono::milliseconds(0));
    // Printable ASCII, typed key by key with Shift where the keymap needs it.
    void type(const std::string& text);
    // What a window manager sends when the user clicks a window's close box.
    void requestClose(unsigned long window);

private:
    void button(unsigned button, bool down);
    void keyCode(unsigned keycode, bool down);
    void hold(std::initializer_list<unsigned long> keysyms, bool down);
    unsigned keycodeOf(unsigned long keysym, bool& needsShift) const;
    void settle() const;

    Display* display_ = nullptr;
};

} // namespace TavSession
