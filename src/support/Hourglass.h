#pragma once

#include <QApplication>

// The busy pointer for the length of a scope; a question shown inside it
// sets the arrow back for its own length (Arrow).
struct Hourglass
{
    Hourglass() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Hourglass() { QApplication::restoreOverrideCursor(); }
    Hourglass(const Hourglass &) = delete;
    Hourglass &operator=(const Hourglass &) = delete;

    struct Arrow
    {
        Arrow() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
        ~Arrow() { QApplication::restoreOverrideCursor(); }
        Arrow(const Arrow &) = delete;
        Arrow &operator=(const Arrow &) = delete;
    };
};
