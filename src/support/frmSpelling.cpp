#include "support/frmSpelling.h"

#include "support/MResources.h"
#include "support/SpellingSession.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
constexpr long txtSpelling = 20806, txtNotInDictionary = 20807, txtChangeToCaption = 20808, txtSuggestions = 20809,
               txtIgnore = 20810, txtIgnoreAll = 20811, txtAdd = 20812, txtChange = 20813, txtChangeAll = 20814,
               txtCancel = 20815, txtNoSuggestions = 20816;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}
} // namespace

frmSpelling::frmSpelling(SpellingSession &session, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
{
    setObjectName(QStringLiteral("frmSpelling"));
    setWindowTitle(L(txtSpelling));
    setModal(true);
    Build();
    ShowWord();
}

void frmSpelling::Build()
{
    auto *columns = new QHBoxLayout(this);
    auto *left = new QVBoxLayout;
    left->addWidget(new QLabel(L(txtNotInDictionary), this));
    txtSentence = new QTextEdit(this);
    txtSentence->setObjectName(QStringLiteral("txtSentence"));
    txtSentence->setReadOnly(true);
    txtSentence->setMaximumHeight(fontMetrics().lineSpacing() * 5);
    left->addWidget(txtSentence);
    auto *changeLabel = new QLabel(L(txtChangeToCaption), this);
    txtChangeTo = new QLineEdit(this);
    txtChangeTo->setObjectName(QStringLiteral("txtChangeTo"));
    changeLabel->setBuddy(txtChangeTo);
    left->addWidget(changeLabel);
    left->addWidget(txtChangeTo);
    auto *suggestionLabel = new QLabel(L(txtSuggestions), this);
    lstSuggestions = new QListWidget(this);
    lstSuggestions->setObjectName(QStringLiteral("lstSuggestions"));
    suggestionLabel->setBuddy(lstSuggestions);
    left->addWidget(suggestionLabel);
    left->addWidget(lstSuggestions);
    columns->addLayout(left, 1);

    auto *buttons = new QVBoxLayout;
    columns->addLayout(buttons);
    auto add = [&](const QString &name, long text, void (frmSpelling::*slot)()) {
        auto *button = new QPushButton(L(text), this);
        button->setObjectName(name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, slot);
        buttons->addWidget(button);
        return button;
    };
    add(QStringLiteral("cmdIgnore"), txtIgnore, &frmSpelling::cmdIgnore_Click);
    add(QStringLiteral("cmdIgnoreAll"), txtIgnoreAll, &frmSpelling::cmdIgnoreAll_Click);
    add(QStringLiteral("cmdAdd"), txtAdd, &frmSpelling::cmdAdd_Click);
    cmdChange = add(QStringLiteral("cmdChange"), txtChange, &frmSpelling::cmdChange_Click);
    add(QStringLiteral("cmdChangeAll"), txtChangeAll, &frmSpelling::cmdChangeAll_Click);
    add(QStringLiteral("cmdCancel"), txtCancel, &frmSpelling::reject);
    buttons->addStretch();
    cmdChange->setDefault(true);

    connect(lstSuggestions, &QListWidget::currentTextChanged, this, [this](const QString &text) {
        if (lstSuggestions->currentItem() && (lstSuggestions->currentItem()->flags() & Qt::ItemIsSelectable))
            txtChangeTo->setText(text);
    });
    connect(lstSuggestions, &QListWidget::itemDoubleClicked, this, &frmSpelling::cmdChange_Click);
    resize(fontMetrics().averageCharWidth() * 70, sizeHint().height());
}

// The word stands out in red in its sentence; the first suggestion is
// offered in the box, as the word itself is when there is none.
void frmSpelling::ShowWord()
{
    qsizetype at = 0;
    const QString sentence = m_session.Sentence(at);
    const QString word = m_session.Word();
    txtSentence->setHtml(sentence.left(at).toHtmlEscaped() + QStringLiteral("<b><font color=\"#c00000\">")
                         + word.toHtmlEscaped() + QStringLiteral("</font></b>")
                         + sentence.mid(at + word.size()).toHtmlEscaped());
    lstSuggestions->clear();
    const QStringList suggestions = m_session.Suggestions();
    for (const QString &suggestion : suggestions)
        lstSuggestions->addItem(suggestion);
    if (suggestions.isEmpty()) {
        auto *none = new QListWidgetItem(L(txtNoSuggestions), lstSuggestions);
        none->setFlags(Qt::NoItemFlags);
        txtChangeTo->setText(word);
    } else {
        lstSuggestions->setCurrentRow(0);
        txtChangeTo->setText(suggestions.first());
    }
    txtChangeTo->setFocus();
    txtChangeTo->selectAll();
}

void frmSpelling::GoOn()
{
    if (m_session.Next())
        ShowWord();
    else
        accept();
}

void frmSpelling::cmdIgnore_Click()
{
    GoOn();
}

void frmSpelling::cmdIgnoreAll_Click()
{
    m_session.IgnoreAll();
    GoOn();
}

void frmSpelling::cmdAdd_Click()
{
    m_session.AddToDictionary();
    GoOn();
}

void frmSpelling::cmdChange_Click()
{
    m_session.Change(txtChangeTo->text());
    GoOn();
}

void frmSpelling::cmdChangeAll_Click()
{
    m_session.ChangeAll(txtChangeTo->text());
    GoOn();
}
