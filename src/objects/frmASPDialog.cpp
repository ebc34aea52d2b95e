#include "objects/frmASPDialog.h"

#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextCursor>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

enum Text : long { txtCancel = 14625, txtTitle = 17001, txtSave = 17002, txtHelp = 17003, txtSaveLater = 17004 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

const QString kCancelled = QStringLiteral("-1");

// Two characters of the box in blue, from the position on.
void Blue(QTextEdit *box, int position)
{
    QTextCursor cursor(box->document());
    cursor.setPosition(position);
    cursor.setPosition(position + 2, QTextCursor::KeepAnchor);
    QTextCharFormat blue;
    blue.setForeground(QColor(0, 0, 255));
    cursor.mergeCharFormat(blue);
}

} // namespace

frmASPDialog::frmASPDialog(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmASPDialog"));
    setWindowTitle(L(txtTitle));
    auto *column = new QVBoxLayout(this);
    auto *help = new QLabel(L(txtHelp), this);
    help->setWordWrap(true);
    column->addWidget(help);
    rtfASP = new QTextEdit(this);
    rtfASP->setObjectName(QStringLiteral("rtfASP"));
    rtfASP->setAcceptRichText(false);
    rtfASP->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    rtfASP->setLineWrapMode(QTextEdit::NoWrap);
    rtfASP->setTabChangesFocus(false);
    column->addWidget(rtfASP, 1);
    auto *buttons = new QHBoxLayout;
    cmdOk = new QPushButton(L(txtSave), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAbort = new QPushButton(L(txtCancel), this);
    cmdAbort->setObjectName(QStringLiteral("cmdAbort"));
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdAbort);
    column->addLayout(buttons);
    connect(rtfASP, &QTextEdit::textChanged, this, [this] { cmdOk->setEnabled(!rtfASP->document()->isEmpty()); });
    connect(cmdOk, &QPushButton::clicked, this, &frmASPDialog::cmdOk_Click);
    connect(cmdAbort, &QPushButton::clicked, this, &frmASPDialog::cmdAbort_Click);
    resize(560, 360);
}

// The box shows the block with plain line ends; the ones it had come back
// at Save.
void frmASPDialog::SetASP(const QString &strASP_p)
{
    m_boolCRLF = strASP_p.contains(QLatin1String("\r\n"));
    rtfASP->setPlainText(QString(strASP_p).replace(QLatin1String("\r\n"), QLatin1String("\n")));
    SetColors();
}

void frmASPDialog::SetColors()
{
    const QString text = rtfASP->toPlainText();
    if (text.endsWith(QLatin1String("%>")))
        Blue(rtfASP, int(text.size()) - 2);
    if (text.startsWith(QLatin1String("<%")))
        Blue(rtfASP, 0);
    QTextCursor start(rtfASP->document());
    rtfASP->setTextCursor(start);
}

// Only Save changes ASP(): Cancel, Escape and the close box leave "-1".
void frmASPDialog::Show()
{
    m_strASP = kCancelled;
    exec();
}

void frmASPDialog::cmdOk_Click()
{
    UserQuestions::MsgBox(L(txtSaveLater), UserQuestions::vbInformation, windowTitle());
    m_strASP = rtfASP->toPlainText();
    if (m_boolCRLF)
        m_strASP.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    hide();
    accept();
}

void frmASPDialog::cmdAbort_Click()
{
    reject();
}
