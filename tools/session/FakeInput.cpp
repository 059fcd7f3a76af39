#include "tools/session/FakeInput.h"

#include "tools/session/UiCall.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <chrono>
#include <thread>

namespace TavSession {

namespace {
// Long enough for the toolkit to see separate events, short enough that two
// clicks meant as a double click are one.
constexpr auto Pause = std::chrono::milliseconds(15);
} // namespace

FakeInput::FakeInput() {
    display_ = XOpenDisplay(nullptr);
    if (display_ == nullptr)
        throw SessionError("cannot open the X display");
    int event = 0, error = 0, major = 0, minor = 0;
    if (!XTestQueryExtension(display_, &event, &error, &major, &minor)) {
        XCloseDisplay(display_);
        throw SessionError("the X server has no XTEST extension");
    }
}

FakeInput::~FakeInput() {
    XCloseDisplay(display_);
}

void FakeInput::settle() const {
    XSync(display_, False);
    std::this_thread::sleep_for(Pause);
}

void FakeInput::moveTo(Point p) {
    XTestFakeMotionEvent(display_, -1, p.x, p.y, CurrentTime);
    settle();
}

void FakeInput::button(unsigned number, bool down) {
    XTestFakeButtonEvent(display_, number, down ? True : False, CurrentTime);
    settle();
}

std::chrono::steady_clock::time_point FakeInput::click(Point p, unsigned number) {
    moveTo(p);
    button(number, true);
    const auto released = std::chrono::steady_clock::now();
    button(number, false);
    return released;
}

std::chrono::steady_clock::time_point FakeInput::doubleClick(Point p) {
    click(p);
    button(1, true);
    const auto released = std::chrono::steady_clock::now();
    button(1, false);
    return released;
}

void FakeInput::drag(Point from, Point to, int steps) {
    moveTo(from);
    button(1, true);
    for (int i = 1; i <= steps; ++i)
        moveTo({from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps});
    button(1, false);
}

void FakeInput::wheel(Point p, int steps, std::initializer_list<unsigned long> heldKeys) {
    moveTo(p);
    hold(heldKeys, true);
    const unsigned number = steps > 0 ? 4 : 5;
    for (int i = 0; i < (steps > 0 ? steps : -steps); ++i) {
        button(number, true);
        button(number, false);
    }
    hold(heldKeys, false);
}

unsigned FakeInput::keycodeOf(unsigned long keysym, bool& needsShift) const {
    const KeyCode code = XKeysymToKeycode(display_, keysym);
    if (code == 0)
        throw SessionError("the keymap has no key for keysym " + std::to_string(keysym));
    needsShift = XkbKeycodeToKeysym(display_, code, 0, 0) != keysym &&
                 XkbKeycodeToKeysym(display_, code, 0, 1) == keysym;
    return code;
}

void FakeInput::keyCode(unsigned keycode, bool down) {
    XTestFakeKeyEvent(display_, keycode, down ? True : False, CurrentTime);
    settle();
}

void FakeInput::hold(std::initializer_list<unsigned long> keysyms, bool down) {
    for (unsigned long keysym : keysyms) {
        bool shift = false;
        keyCode(keycodeOf(keysym, shift), down);
    }
}

void FakeInput::key(unsigned long keysym, std::initializer_list<unsigned long> heldKeys,
                    std::chrono::milliseconds holdFor) {
    bool shift = false;
    const unsigned code = keycodeOf(keysym, shift);
    hold(heldKeys, true);
    if (shift)
        hold({XK_Shift_L}, true);
    keyCode(code, true);
    std::this_thread::sleep_for(holdFor);
    keyCode(code, false);
    if (shift)
        hold({XK_Shift_L}, false);
    hold(heldKeys, false);
}

// Latin-1 keysyms equal their characters, which covers printable ASCII.
void FakeInput::type(const std::string& text) {
    for (unsigned char c : text) {
        if (c < 0x20 || c > 0x7e)
            throw SessionError("only printable ASCII can be typed");
        key(c);
    }
}

void FakeInput::requestClose(unsigned long window) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display_, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display_, "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display_, window, False, NoEventMask, &event);
    settle();
}

} // namespace TavSession
