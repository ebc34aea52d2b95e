#include "fileviews/ReplaceFileDialog.h"

#include "support/Hourglass.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

namespace {
constexpr long txtTitle = 19818, txtQuestion = 19819, txtReplace = 19820, txtSkip = 19821, txtRename = 19822,
               txtForAll = 19823;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}
} // namespace

ReplaceFileDialog::ReplaceFileDialog(QWidget *parent, const QString &strText_p) : QDialog(parent)
{
    setObjectName(QStringLiteral("ReplaceFileDialog"));
    setWindowTitle(L(txtTitle));
    auto *column = new QVBoxLayout(this);
    auto *text = new QLabel(strText_p, this);
    text->setWordWrap(true);
    column->addWidget(text);
    m_chkForAll = new QCheckBox(L(txtForAll), this);
    m_chkForAll->setObjectName(QStringLiteral("chkForAll"));
    column->addWidget(m_chkForAll);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    const std::pair<const char *, std::pair<long, long>> choices[] = {
        {"cmdReplace", {txtReplace, Replace}}, {"cmdSkip", {txtSkip, Skip}}, {"cmdRename", {txtRename, Rename}}};
    for (const auto &[name, choice] : choices) {
        auto *button = new QPushButton(L(choice.first), this);
        button->setObjectName(QString::fromLatin1(name));
        buttons->addWidget(button);
        const long answer = choice.second;
        connect(button, &QPushButton::clicked, this, [this, answer] {
            m_lAnswer = answer | (m_chkForAll->isChecked() ? long(ForAll) : 0L);
            accept();
        });
    }
    column->addLayout(buttons);
}

FileBatch::Existing ReplaceFileDialog::Choice(long lAnswer_p)
{
    switch (lAnswer_p & ~long(ForAll)) {
    case Replace: return FileBatch::Existing::Replace;
    case Skip: return FileBatch::Existing::Skip;
    case Rename: return FileBatch::Existing::Rename;
    default: return FileBatch::Existing::Cancel;
    }
}

FileBatch::ExistingFileQuestion ReplaceFileDialog::ForDownload(QWidget *parent)
{
    auto forAll = std::make_shared<std::optional<FileBatch::Existing>>();
    return [parent, forAll](const QString &strLocal_p, const QString &strFreeName_p) {
        if (*forAll)
            return **forAll;
        const QFileInfo local(strLocal_p);
        const QString text = L(txtQuestion).arg(local.fileName(), QDir::toNativeSeparators(local.path()),
                                                QFileInfo(strFreeName_p).fileName());
        const long answer = UserQuestions::RunDialog(QStringLiteral("ReplaceFileDialog"), text, [parent, &text] {
            const Hourglass::Arrow pointer;
            ReplaceFileDialog dialog(parent, text);
            dialog.exec();
            return dialog.m_lAnswer;
        });
        const FileBatch::Existing choice = Choice(answer);
        if ((answer & ForAll) != 0 && choice != FileBatch::Existing::Cancel)
            *forAll = choice;
        return choice;
    };
}
