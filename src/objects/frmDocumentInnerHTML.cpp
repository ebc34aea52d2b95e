#include "objects/frmDocumentInnerHTML.h"

#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

enum Text : long { txtOK = 13011, txtCancel = 13012 };

QStringList &scriptedEdits()
{
    static QStringList edits;
    return edits;
}

} // namespace

frmDocumentInnerHTML::frmDocumentInnerHTML(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmDocumentInnerHTML"));
    auto *column = new QVBoxLayout(this);
    m_rtfInnerHTML = new QPlainTextEdit(this);
    m_rtfInnerHTML->setObjectName(QStringLiteral("rtfInnerHTML"));
    m_rtfInnerHTML->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_rtfInnerHTML->setLineWrapMode(QPlainTextEdit::NoWrap);
    column->addWidget(m_rtfInnerHTML);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto *ok = new QPushButton(MResources::LoadResourceString(txtOK), this);
    auto *cancel = new QPushButton(MResources::LoadResourceString(txtCancel), this);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    column->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &frmDocumentInnerHTML::cmdOK_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    resize(800, 600);
}

long frmDocumentInnerHTML::Init(const QString &HTMLCode_p, bool IsASP_p, const QString &strCaption_p)
{
    m_boolIsASP = IsASP_p;
    // The box works in plain line feeds; a source written with CR LF gets
    // them back in Text, so an unchanged line stays byte for byte.
    m_boolCRLF = HTMLCode_p.contains(QLatin1String("\r\n"));
    m_rtfInnerHTML->setPlainText(QString(HTMLCode_p).replace(QLatin1String("\r\n"), QLatin1String("\n")));
    setWindowTitle(strCaption_p);
    return 1;
}

// Closing the window any other way than by OK leaves the text unused.
long frmDocumentInnerHTML::Show()
{
    m_boolCancelled = true;
    const long answer = UserQuestions::RunDialog(objectName(), Text(), [this]() -> long {
        return exec() == QDialog::Accepted ? UserQuestions::vbOK : UserQuestions::vbCancel;
    });
    if (answer != UserQuestions::vbOK)
        return -1;
    if (UserQuestions::Scripted() && !scriptedEdits().isEmpty())
        m_rtfInnerHTML->setPlainText(scriptedEdits().takeFirst().replace(QLatin1String("\r\n"), QLatin1String("\n")));
    m_boolCancelled = false;
    return 1;
}

QString frmDocumentInnerHTML::Text() const
{
    QString text = m_rtfInnerHTML->toPlainText();
    if (m_boolCRLF)
        text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    return text;
}

void frmDocumentInnerHTML::ScriptEdits(const QStringList &texts)
{
    scriptedEdits() = texts;
}

void frmDocumentInnerHTML::cmdOK_Click()
{
    accept();
}

void frmDocumentInnerHTML::done(int result)
{
    m_boolCancelled = result != QDialog::Accepted;
    QDialog::done(result);
}
