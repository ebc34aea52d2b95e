#pragma once

// Settings the page engine needs before the application object exists.
class PageEngineEnvironment
{
public:
    // Call first thing in main(), before QApplication is built. Chromium's
    // sandbox refuses to run as root, and a machine without a GPU or a network
    // beyond the site must not make the engine stall on either; values the
    // user has set in the environment are kept.
    static void prepare();

    // True when Qt has somewhere to draw windows: an X or Wayland display, or a
    // platform chosen with QT_QPA_PLATFORM (offscreen in tests).
    static bool hasDisplay();

private:
    static void FindSpellingDictionaries();
};
