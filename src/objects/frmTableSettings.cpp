#include "objects/frmTableSettings.h"

#include "support/MResources.h"
#include "support/OkCancelButtons.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QVBoxLayout>

namespace {

enum Text : long { txtBorderFrame = 18006, txtRowsCols = 18007, txtBorderWidth = 18008, txtRows = 18009,
                   txtCols = 18010, txtDisposition = 18011, txtPadding = 18012, txtSpacing = 18013,
                   txtUnevenNote = 18014, txtPosition = 18211, txtRight = 18216, txtCenter = 18217,
                   txtLeft = 18218, txtNotSet = 18205 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QLineEdit *Box(QWidget *parent, const char *name)
{
    auto *box = new QLineEdit(parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

QGroupBox *Frame(QWidget *parent, long caption, QFormLayout *&rows)
{
    auto *frame = new QGroupBox(L(caption), parent);
    rows = new QFormLayout(frame);
    return frame;
}

} // namespace

frmTableSettings::frmTableSettings(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmTableSettings"));
    auto *layout = new QVBoxLayout(this);
    QFormLayout *rows = nullptr;
    layout->addWidget(Frame(this, txtBorderFrame, rows));
    txtBorderSize = Box(this, "txtBorderSize");
    rows->addRow(L(txtBorderWidth), txtBorderSize);
    layout->addWidget(Frame(this, txtRowsCols, rows));
    txtNumRows = Box(this, "txtNumRows");
    txtNumCols = Box(this, "txtNumCols");
    rows->addRow(L(txtRows), txtNumRows);
    rows->addRow(L(txtCols), txtNumCols);

    frmLayout = Frame(this, txtDisposition, rows);
    frmLayout->setObjectName(QStringLiteral("frmLayout"));
    txtCellSpacing = Box(frmLayout, "txtCellSpacing");
    txtCellPadding = Box(frmLayout, "txtCellPadding");
    cmbAlignment = new QComboBox(frmLayout);
    cmbAlignment->setObjectName(QStringLiteral("cmbAlignment"));
    cmbAlignment->addItems({L(txtRight), L(txtCenter), L(txtLeft), L(txtNotSet)});
    rows->addRow(L(txtPadding), txtCellPadding);
    rows->addRow(L(txtSpacing), txtCellSpacing);
    rows->addRow(L(txtPosition), cmbAlignment);
    layout->addWidget(frmLayout);

    auto *note = new QHBoxLayout;
    imgWarningTableWidth = new QLabel(this);
    imgWarningTableWidth->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(24));
    lblTableWidthWarning = new QLabel(L(txtUnevenNote), this);
    lblTableWidthWarning->setObjectName(QStringLiteral("lblTableWidthWarning"));
    lblTableWidthWarning->setWordWrap(true);
    note->addWidget(imgWarningTableWidth);
    note->addWidget(lblTableWidthWarning, 1);
    layout->addLayout(note);

    OkCancelButtons::Add(this, layout);
}

void frmTableSettings::HideLayout()
{
    frmLayout->hide();
    lblTableWidthWarning->hide();
    imgWarningTableWidth->hide();
    adjustSize();
}

void frmTableSettings::Show()
{
    m_boolCancelled = exec() != QDialog::Accepted;
}
