#pragma once

#include <QObject>

// Keys the window takes away from the page while a page is edited: F5
// would reload the page and lose the edit, unless one of the trees has the
// focus and wants it for itself; F11 would toggle full screen, always.
class PageKeyFilter : public QObject
{
    Q_OBJECT

public:
    static constexpr int KeyF5 = 116;
    static constexpr int KeyF11 = 122;

    using QObject::QObject;

    void setEditing(bool on) { m_editing = on; }
    void setSiteTreeFocus(bool on) { m_siteTreeFocus = on; }
    void setLocalTreeFocus(bool on) { m_localTreeFocus = on; }
    bool editing() const { return m_editing; }

    // True when the key (a virtual key code) must not reach its target.
    bool swallows(int keyCode) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_editing = false;
    bool m_siteTreeFocus = false;
    bool m_localTreeFocus = false;
};
