#pragma once

#include <QString>

class QWebEngineProfile;

// The page engine's profile of this program: named and kept on disk under
// the user's data folder ($XDG_DATA_HOME/keldacms/engine), so that the
// cookies of a site that needs a login survive a restart, as in a browser
// (a cookie the site gives only for the session still ends with it). Its
// cache stands under the cache folder. One process at a time may use it;
// the single-instance lock sees to that.
class EngineProfile
{
public:
    // Made on first use, after the application object.
    static QWebEngineProfile *Shared();
    // The folder that holds the profile: the key of the single-instance lock.
    static QString StoragePath();
    // The engine's own underlining of misspelt words in editable pages, on
    // or off, with every dictionary made for it at build time (a word is
    // right when any of them knows it: pages mix the user's languages).
    static void SetSpellCheck(bool on);
};
