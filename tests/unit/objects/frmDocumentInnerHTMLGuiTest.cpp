// The source editor run for real: what is typed comes back with the line
// ends the source had, and only OK counts.

#include "objects/frmDocumentInnerHTML.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// Once the dialog is up, types text at the end of the box and presses the
// button with the given caption.
void typeAndPress(const QString &text, const QString &button)
{
    QTimer::singleShot(0, [=] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog) {
            typeAndPress(text, button);
            return;
        }
        auto *box = dialog->findChild<QPlainTextEdit *>(QStringLiteral("rtfInnerHTML"));
        box->moveCursor(QTextCursor::End);
        box->insertPlainText(text);
        for (QPushButton *b : dialog->findChildren<QPushButton *>()) {
            if (b->text() == button)
                b->click();
        }
    });
}

} // namespace

TEST(SourceEditor, TypedTextKeepsTheLineEndsAndOnlyOkCounts)
{
    UserQuestions::EndScript();
    frmDocumentInnerHTML form;
    form.Init(QStringLiteral("<%\r\nx = 1\r\n%>\r\n"), true, QStringLiteral("/page.asp"));
    EXPECT_EQ(form.windowTitle(), QStringLiteral("/page.asp"));
    typeAndPress(QStringLiteral("<p>new</p>\n"), QStringLiteral("OK"));
    EXPECT_EQ(form.Show(), 1);
    EXPECT_FALSE(form.Cancelled());
    EXPECT_EQ(form.Text(), QStringLiteral("<%\r\nx = 1\r\n%>\r\n<p>new</p>\r\n"));

    typeAndPress(QStringLiteral("more"), QStringLiteral("Cancel"));
    EXPECT_EQ(form.Show(), -1);
    EXPECT_TRUE(form.Cancelled());
}
