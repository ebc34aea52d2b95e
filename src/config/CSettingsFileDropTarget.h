#pragma once

#include <QObject>

#include <functional>

class QDropEvent;
class QWidget;

// Makes a window take settings files dropped on it: on its own frame any
// drop is looked at (so the user learns why text or a mail attachment does
// nothing), and over its children (the page) only a settings file is taken
// while every other drop goes on to the child. A failure is shown to the
// user; when the user wants to go to the new site, navigate() is called.
class CSettingsFileDropTarget : public QObject
{
    Q_OBJECT

public:
    CSettingsFileDropTarget(QWidget *window, std::function<void(const QString &)> navigate);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Drop(QDropEvent *event);

    QWidget *m_window;
    std::function<void(const QString &)> m_navigate;
};
