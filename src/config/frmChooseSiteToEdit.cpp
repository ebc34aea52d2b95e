#include "config/frmChooseSiteToEdit.h"

#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr long kSettingsCaption = 19904;
}

frmChooseSiteToEdit::frmChooseSiteToEdit(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmChooseSiteToEdit"));
    setWindowTitle(MResources::LoadResourceString(13009));
    auto *column = new QVBoxLayout(this);
    m_lstSites = new QListWidget(this);
    column->addWidget(m_lstSites);
    auto *buttons = new QHBoxLayout;
    // The way to the settings dialog, for a site that is not in the list.
    auto *settings = new QPushButton(MResources::LoadResourceString(kSettingsCaption), this);
    settings->setObjectName(QStringLiteral("cmdSettings"));
    buttons->addWidget(settings);
    buttons->addStretch(1);
    auto *ok = new QPushButton(MResources::LoadResourceString(13011), this);
    auto *cancel = new QPushButton(MResources::LoadResourceString(13012), this);
    ok->setDefault(true);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    column->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &frmChooseSiteToEdit::cmdOK_Click);
    connect(m_lstSites, &QListWidget::itemDoubleClicked, this, &frmChooseSiteToEdit::cmdOK_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(settings, &QPushButton::clicked, this, [this] {
        m_lChosen = ToSettings;
        accept();
    });
}

void frmChooseSiteToEdit::SetSites(const QStringList &astrSites_p)
{
    m_lstSites->clear();
    m_lstSites->addItems(astrSites_p);
    m_lstSites->setCurrentRow(0);
}

void frmChooseSiteToEdit::cmdOK_Click()
{
    m_lChosen = m_lstSites->currentRow();
    accept();
}

long frmChooseSiteToEdit::Choose(const QStringList &astrSites_p, QString &strChosen_p, QWidget *parent)
{
    strChosen_p.clear();
    const long chosen = UserQuestions::RunDialog(QStringLiteral("frmChooseSiteToEdit"),
                                                 astrSites_p.join(QLatin1Char('\n')), [&] {
        frmChooseSiteToEdit form(parent);
        form.SetSites(astrSites_p);
        form.exec();
        return form.GetChosen();
    });
    if (chosen == ToSettings)
        return ToSettings;
    if (chosen < 0 || chosen >= astrSites_p.size())
        return -1;
    strChosen_p = astrSites_p.at(chosen);
    return chosen;
}
