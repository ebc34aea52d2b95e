#include "objects/frmColorDropper.h"

#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QColorDialog>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Text : long { txtCancel = 13012, txtSet = 17618, txtTitle = 18818, txtHowTo = 18819, lblHex = 18820,
                   lblRed = 18823, txtRefused = 18830 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QLineEdit *ColorBox(QWidget *parent, const char *name)
{
    auto *box = new QLineEdit(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setValidator(new QIntValidator(0, 255, box));
    box->setMaximumWidth(60);
    return box;
}

} // namespace

frmColorDropper::frmColorDropper(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmColorDropper"));
    setWindowTitle(L(txtTitle));
    auto *column = new QVBoxLayout(this);
    auto *howTo = new QLabel(L(txtHowTo), this);
    howTo->setWordWrap(true);
    column->addWidget(howTo);
    auto *row = new QHBoxLayout;
    Picture2 = new QLabel(this);
    Picture2->setObjectName(QStringLiteral("Picture2"));
    Picture2->setFixedSize(40, 40);
    Picture2->setFrameStyle(QFrame::Panel | QFrame::Raised);
    Picture2->setCursor(Qt::CrossCursor);
    Picture2->setText(QStringLiteral("+"));
    Picture2->setAlignment(Qt::AlignCenter);
    Picture2->installEventFilter(this);
    Picture1 = new QLabel(this);
    Picture1->setObjectName(QStringLiteral("Picture1"));
    Picture1->setFixedSize(60, 40);
    Picture1->setAutoFillBackground(true);
    Picture1->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    row->addWidget(Picture2);
    row->addWidget(Picture1);
    auto *grid = new QGridLayout;
    const char *names[] = {"txtRed", "txtGreen", "txtBlue"};
    QLineEdit **boxes[] = {&txtRed, &txtGreen, &txtBlue};
    for (int i = 0; i < 3; ++i) {
        grid->addWidget(new QLabel(L(lblRed + i), this), i, 0);
        *boxes[i] = ColorBox(this, names[i]);
        grid->addWidget(*boxes[i], i, 1);
        connect(*boxes[i], &QLineEdit::textEdited, this, [this] { ShowColor(QColor(ColorText())); });
    }
    grid->addWidget(new QLabel(L(lblHex), this), 3, 0);
    txtHex = new QLineEdit(this);
    txtHex->setObjectName(QStringLiteral("txtHex"));
    txtHex->setReadOnly(true);
    grid->addWidget(txtHex, 3, 1);
    row->addLayout(grid);
    column->addLayout(row);
    auto *buttons = new QHBoxLayout;
    auto *set = new QPushButton(L(txtSet), this);
    set->setObjectName(QStringLiteral("cmdSetColor"));
    auto *cancel = new QPushButton(L(txtCancel), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addStretch(1);
    buttons->addWidget(set);
    buttons->addWidget(cancel);
    column->addLayout(buttons);
    connect(set, &QPushButton::clicked, this, &frmColorDropper::cmdSetColor_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    ShowColor(Qt::white);
}

long frmColorDropper::Init(const QString &strObjectProp_p, const HtmlElement &htmlobj_p)
{
    return InitEx(strObjectProp_p, htmlobj_p, false);
}

long frmColorDropper::InitEx(const QString &strObjectProp_p, const HtmlElement &htmlobj_p, bool BolSetStyle_p)
{
    m_strObjectProp = strObjectProp_p;
    m_Element = htmlobj_p;
    m_boolSetStyle = BolSetStyle_p;
    return 1;
}

long frmColorDropper::Show()
{
    m_boolApplied = false;
    exec();
    return m_boolApplied ? 1 : -1;
}

// Two hex digits a component, red, green, blue.
QString frmColorDropper::ColorText() const
{
    QString text = QStringLiteral("#");
    for (const QLineEdit *box : {txtRed, txtGreen, txtBlue})
        text += QStringLiteral("%1").arg(std::clamp(box->text().toInt(), 0, 255), 2, 16, QLatin1Char('0'));
    return text;
}

void frmColorDropper::ShowColor(const QColor &color)
{
    txtRed->setText(QString::number(color.red()));
    txtGreen->setText(QString::number(color.green()));
    txtBlue->setText(QString::number(color.blue()));
    txtHex->setText(ColorText().mid(1).toUpper());
    QPalette palette = Picture1->palette();
    palette.setColor(QPalette::Window, color);
    Picture1->setPalette(palette);
}

// The dialog has a name and is the toolkit's own, not the desktop's, so
// that it looks and answers the same on every desktop.
QString frmColorDropper::ChooseColor(QWidget *parent, const QString &strCurrent_p, const QString &strTitle_p)
{
    QColorDialog dialog(QColor(strCurrent_p.isEmpty() ? QStringLiteral("#000000") : strCurrent_p), parent);
    dialog.setObjectName(QStringLiteral("dlgChooseColor"));
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    dialog.setWindowTitle(strTitle_p);
    if (dialog.exec() != QDialog::Accepted || !dialog.selectedColor().isValid())
        return {};
    return dialog.selectedColor().name();
}

bool frmColorDropper::PickAt(const QPoint &at)
{
    QScreen *screen = QGuiApplication::screenAt(at);
    if (!screen)
        return false;
    const QPoint local = at - screen->geometry().topLeft();
    const QImage pixel = screen->grabWindow(0, local.x(), local.y(), 1, 1).toImage();
    if (pixel.isNull() || pixel.width() < 1)
        return false;
    ShowColor(pixel.pixelColor(0, 0));
    return true;
}

// Some desktops (Wayland sessions among them) give no program the pixels
// of the screen: the color is then chosen in the standard color dialog.
void frmColorDropper::AskInstead()
{
    UserQuestions::MsgBox(L(txtRefused), UserQuestions::vbInformation, L(txtTitle));
    const QColor color = QColorDialog::getColor(QColor(ColorText()), this, L(txtTitle));
    if (color.isValid())
        ShowColor(color);
}

bool frmColorDropper::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != Picture2)
        return QDialog::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        m_boolDragging = static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton;
        m_boolGrabRefused = false;
        return true;
    case QEvent::MouseMove:
        if (m_boolDragging && !m_boolGrabRefused)
            m_boolGrabRefused = !PickAt(static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
        return true;
    case QEvent::MouseButtonRelease:
        if (!m_boolDragging)
            return true;
        m_boolDragging = false;
        if (!m_boolGrabRefused)
            m_boolGrabRefused = !PickAt(static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
        if (m_boolGrabRefused)
            AskInstead();
        return true;
    default:
        return QDialog::eventFilter(watched, event);
    }
}

void frmColorDropper::cmdSetColor_Click()
{
    if (ApplyColor() == 0) {
        MError::ShowError();
        return;
    }
    m_boolApplied = true;
    accept();
}

long frmColorDropper::ApplyColor()
{
    if (m_Element.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"),
                                QStringLiteral("frmColorDropper.cmdSetColor_Click"));
        return 0;
    }
    const QString color = ColorText();
    if (!m_boolSetStyle)
        m_Element.setAttribute(m_strObjectProp, color);
    else if (m_strObjectProp.compare(QLatin1String("bgColor"), Qt::CaseInsensitive) == 0)
        m_Element.setStyleValue(QStringLiteral("backgroundColor"), color);
    else if (m_strObjectProp.compare(QLatin1String("borderColor"), Qt::CaseInsensitive) == 0)
        m_Element.setStyleValue(QStringLiteral("borderColor"), color);
    else
        m_Element.setStyleValue(m_strObjectProp, color);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}
