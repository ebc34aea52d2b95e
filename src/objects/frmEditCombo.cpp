#include "objects/frmEditCombo.h"

#include "support/MError.h"
#include "support/MResources.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

enum Text : long { txtOK = 13011, txtCancel = 13012, txtRemove = 17645, txtTitle = 18817, txtAdd = 18822,
                   lblText = 18828, lblValue = 18829 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QString Escaped(QString text, bool attribute)
{
    text.replace(QLatin1Char('&'), QLatin1String("&amp;")).replace(QLatin1Char('<'), QLatin1String("&lt;"));
    return attribute ? text.replace(QLatin1Char('"'), QLatin1String("&quot;")) : text.replace(QLatin1Char('>'), QLatin1String("&gt;"));
}

} // namespace

frmEditCombo::frmEditCombo(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmEditCombo"));
    setWindowTitle(L(txtTitle));
    auto *column = new QVBoxLayout(this);
    auto *grid = new QGridLayout;
    grid->addWidget(new QLabel(L(lblText), this), 0, 0);
    cmbText = new QComboBox(this);
    cmbText->setObjectName(QStringLiteral("cmbText"));
    cmbText->setEditable(true);
    cmbText->setInsertPolicy(QComboBox::NoInsert);
    grid->addWidget(cmbText, 0, 1);
    grid->addWidget(new QLabel(L(lblValue), this), 1, 0);
    txtValue = new QLineEdit(this);
    txtValue->setObjectName(QStringLiteral("txtValue"));
    grid->addWidget(txtValue, 1, 1);
    column->addLayout(grid);
    auto *buttons = new QHBoxLayout;
    auto *add = new QPushButton(L(txtAdd), this);
    add->setObjectName(QStringLiteral("cmdAdd"));
    auto *remove = new QPushButton(L(txtRemove), this);
    remove->setObjectName(QStringLiteral("fpBtn2"));
    auto *ok = new QPushButton(L(txtOK), this);
    ok->setObjectName(QStringLiteral("fpBtn1"));
    auto *cancel = new QPushButton(L(txtCancel), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addWidget(add);
    buttons->addWidget(remove);
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    column->addLayout(buttons);
    connect(cmbText, &QComboBox::currentIndexChanged, this, &frmEditCombo::cmbText_Click);
    connect(cmbText, &QComboBox::editTextChanged, this, &frmEditCombo::cmbText_Change);
    connect(txtValue, &QLineEdit::textEdited, this, &frmEditCombo::txtValue_Change);
    connect(add, &QPushButton::clicked, this, &frmEditCombo::cmdAdd_Click);
    connect(remove, &QPushButton::clicked, this, &frmEditCombo::fpBtn2_Click);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

long frmEditCombo::Init(const HtmlElement &HTMLHtmlElement_p, const HtmlDocument &HTMLDocument_p)
{
    m_Select = HTMLHtmlElement_p;
    m_Document = HTMLDocument_p;
    m_aEntries.clear();
    for (const HtmlElement &option : m_Select.all()) {
        if (option.tagName() != QLatin1String("OPTION"))
            continue;
        m_aEntries.append({option.innerText(), option.property(QStringLiteral("value")).toString()});
    }
    if (MError::ErrorNumber() != 0)
        return 0;
    m_boolFilling = true;
    cmbText->clear();
    for (const Entry &entry : m_aEntries)
        cmbText->addItem(entry.text);
    m_boolFilling = false;
    cmbText_Click(cmbText->currentIndex());
    return 1;
}

long frmEditCombo::Show()
{
    if (exec() != QDialog::Accepted)
        return -1;
    return WriteOptions();
}

void frmEditCombo::cmbText_Click(int index)
{
    if (m_boolFilling)
        return;
    txtValue->setText(index >= 0 && index < m_aEntries.size() ? m_aEntries[index].value : QString());
}

void frmEditCombo::cmbText_Change(const QString &text)
{
    const int index = cmbText->currentIndex();
    if (m_boolFilling || index < 0 || index >= m_aEntries.size())
        return;
    m_aEntries[index].text = text;
    m_boolFilling = true;
    cmbText->setItemText(index, text);
    m_boolFilling = false;
}

void frmEditCombo::txtValue_Change(const QString &value)
{
    const int index = cmbText->currentIndex();
    if (index >= 0 && index < m_aEntries.size())
        m_aEntries[index].value = value;
}

void frmEditCombo::cmdAdd_Click()
{
    m_aEntries.append({QStringLiteral("NewText"), QStringLiteral("NewValue")});
    cmbText->addItem(QStringLiteral("NewText"));
    cmbText->setCurrentIndex(cmbText->count() - 1);
    cmbText->setFocus();
    cmbText->lineEdit()->selectAll();
}

void frmEditCombo::fpBtn2_Click()
{
    const int index = cmbText->currentIndex();
    if (index < 0 || index >= m_aEntries.size())
        return;
    m_aEntries.removeAt(index);
    cmbText->removeItem(index);
    cmbText_Click(cmbText->currentIndex());
}

// The options are written as new ones in the entries' order, in one
// change of the element.
long frmEditCombo::WriteOptions()
{
    if (!m_Select.isConnected()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), QStringLiteral("frmEditCombo.fpBtn1_Click"));
        return 0;
    }
    QString options;
    for (const Entry &entry : m_aEntries)
        options += QStringLiteral("<option value=\"") + Escaped(entry.value, true) + QStringLiteral("\">")
                   + Escaped(entry.text, false) + QStringLiteral("</option>");
    m_Select.setInnerHTML(options);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}
