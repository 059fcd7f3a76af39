#pragma once

namespace TavSession {

// Widgets need a display. Without one, runs this program again inside a
// private X server (xvfb-run) whose screen is `screen` (WxHxDepth), and so
// returns only where there is a display. Then pins what would make pixels and
// timings depend on the desktop: the theme, the accessibility bus, settings,
// the recent-files list.
void ensureDisplay(int argc, char** argv, const char* screen = "1600x1000x24");

} // namespace TavSession
