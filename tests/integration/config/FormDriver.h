#pragma once

// A dialog's widgets found by name and used as a user uses them.

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace form_driver {

template <class T> T *child(QWidget *form, const char *name)
{
    T *found = form->findChild<T *>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

// Typed as a user types: the box's text selected, the new one over it.
inline void type(QWidget *form, const char *name, const QString &text)
{
    auto *box = child<QLineEdit>(form, name);
    box->setFocus();
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, text);
}

inline void click(QWidget *form, const char *name)
{
    QTest::mouseClick(child<QAbstractButton>(form, name), Qt::LeftButton);
}

} // namespace form_driver
