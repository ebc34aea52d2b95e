#include "objects/frmImgProperties.h"

#include "support/OkCancelButtons.h"
#include "support/MResources.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {
enum Text : long { txtTitle = 17807, txtName = 17833, txtAlt = 17811, txtBorder = 17812 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

const QString kName = QStringLiteral("name");
const QString kAlt = QStringLiteral("alt");
const QString kBorder = QStringLiteral("border");

// Keeps what the field held when it was filled, to tell a change.
const char *const kShown = "shownValue";

bool WriteText(QLineEdit *field, HtmlElement &img, const QString &attribute)
{
    const QString value = field->text();
    if (value == field->property(kShown).toString())
        return false;
    if (value.isEmpty())
        img.removeAttribute(attribute);
    else
        img.setAttribute(attribute, value);
    return true;
}
} // namespace

frmImgProperties::Fields frmImgProperties::BuildFields(QWidget *form)
{
    auto *layout = new QFormLayout(form);
    Fields fields;
    fields.txtImageName = new QLineEdit(form);
    fields.txtImageName->setObjectName(QStringLiteral("txtImageName"));
    fields.txtAltText = new QLineEdit(form);
    fields.txtAltText->setObjectName(QStringLiteral("txtAltText"));
    fields.txtBorderSize = new QSpinBox(form);
    fields.txtBorderSize->setObjectName(QStringLiteral("txtBorderSize"));
    fields.txtBorderSize->setRange(0, 999);
    layout->addRow(L(txtName), fields.txtImageName);
    layout->addRow(L(txtAlt), fields.txtAltText);
    layout->addRow(L(txtBorder), fields.txtBorderSize);
    return fields;
}

void frmImgProperties::ReadFields(const Fields &fields, const HtmlElement &img)
{
    fields.txtImageName->setText(img.getAttribute(kName).toString());
    fields.txtImageName->setProperty(kShown, fields.txtImageName->text());
    fields.txtAltText->setText(img.getAttribute(kAlt).toString());
    fields.txtAltText->setProperty(kShown, fields.txtAltText->text());
    fields.txtBorderSize->setValue(img.getAttribute(kBorder).toString().toInt());
    fields.txtBorderSize->setProperty(kShown, fields.txtBorderSize->value());
}

bool frmImgProperties::WriteFields(const Fields &fields, HtmlElement &img)
{
    bool changed = WriteText(fields.txtImageName, img, kName);
    changed = WriteText(fields.txtAltText, img, kAlt) || changed;
    if (fields.txtBorderSize->value() != fields.txtBorderSize->property(kShown).toInt()) {
        img.setAttribute(kBorder, QString::number(fields.txtBorderSize->value()));
        changed = true;
    }
    return changed;
}

frmImgProperties::frmImgProperties(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmImgProperties"));
    setWindowTitle(L(txtTitle));
    auto *layout = new QVBoxLayout(this);
    auto *form = new QWidget(this);
    m_fields = BuildFields(form);
    layout->addWidget(form);
    OkCancelButtons::Add(this, layout);
}

void frmImgProperties::Init(const HtmlElement &img)
{
    m_Img = img;
    ReadFields(m_fields, img);
}

long frmImgProperties::Show()
{
    if (exec() != QDialog::Accepted)
        return -1;
    return WriteFields(m_fields, m_Img) ? 1 : -1;
}
