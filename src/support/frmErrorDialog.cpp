#include "support/frmErrorDialog.h"

#include "platform/LocalFolders.h"
#include "support/EnvironmentSettings.h"
#include "support/ErrorReportSender.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "support/UserQuestions.h"
#include "support/frmSignature.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEvent>
#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStyle>
#include <QSysInfo>
#include <QUrl>
#include "platform/EngineProfile.h"

#include <QWebEngineProfile>

namespace {
QString text(long id)
{
    return MResources::LoadResourceString(id);
}

// A label that acts as a link: underlined, a hand over it, and a click calls
// the slot. Plain text, so that its caption reads as it stands in the table.
QLabel *linkLabel(QWidget *parent, const std::function<void()> &onClick)
{
    class ClickFilter : public QObject
    {
    public:
        ClickFilter(QObject *parent, std::function<void()> click)
            : QObject(parent), m_click(std::move(click)) {}
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::MouseButtonRelease)
                m_click();
            return false;
        }

    private:
        std::function<void()> m_click;
    };
    auto *label = new QLabel(parent);
    QFont font = label->font();
    font.setUnderline(true);
    label->setFont(font);
    label->setCursor(Qt::PointingHandCursor);
    label->installEventFilter(new ClickFilter(label, onClick));
    return label;
}

QLabel *iconLabel(QWidget *parent, QStyle::StandardPixmap icon)
{
    auto *label = new QLabel(parent);
    label->setPixmap(parent->style()->standardIcon(icon).pixmap(32, 32));
    label->setAlignment(Qt::AlignTop);
    return label;
}
} // namespace

frmErrorDialog::frmErrorDialog(QWidget *parent)
    : QDialog(parent)
{
    auto *grid = new QGridLayout(this);
    imgError1 = iconLabel(this, QStyle::SP_MessageBoxCritical);
    imgError2 = iconLabel(this, QStyle::SP_MessageBoxWarning);
    lblExplanation = new QLabel(this);
    lblErrorMsgLabel = new QLabel(this);
    lblErrorMsg = new QLabel(this);
    lblSendErrorInfo = new QLabel(this);
    lblAddSignature = linkLabel(this, [this] { lblAddSignature_Click(); });
    lblShowMessage = linkLabel(this, [this] { lblShowMessage_Click(); });
    for (QLabel *label : {lblExplanation, lblErrorMsg, lblSendErrorInfo})
        label->setWordWrap(true);
    lblErrorMsg->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cmdOKButton = new QPushButton(this);
    cmdCancelButton = new QPushButton(this);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOKButton);
    buttons->addWidget(cmdCancelButton);

    grid->addWidget(imgError1, 0, 0, 2, 1);
    grid->addWidget(imgError2, 0, 0, 2, 1);
    int row = 0;
    for (QWidget *widget : std::initializer_list<QWidget *>{lblExplanation, lblErrorMsgLabel, lblErrorMsg,
                                                            lblSendErrorInfo, lblAddSignature, lblShowMessage})
        grid->addWidget(widget, row++, 1);
    grid->addLayout(buttons, row, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    setMinimumWidth(460);
    QFont bold = lblExplanation->font();
    bold.setBold(true);
    lblExplanation->setFont(bold);
    lblErrorMsg->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    connect(cmdOKButton, &QPushButton::clicked, this, &frmErrorDialog::cmdOKButton_Click);
    connect(cmdCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    Form_Load();
}

frmErrorDialog::~frmErrorDialog()
{
    // The report written for the viewer goes when the dialog does: the
    // desktop's opener returns before the viewer has read the file, so it
    // can't be removed right after the start.
    QFile::remove(AttachmentPath());
}

void frmErrorDialog::Form_Load()
{
    setWindowTitle(text(StringIds::ErrorDialogTitle));
    lblExplanation->setText(text(StringIds::ErrorExplanation));
    lblErrorMsgLabel->setText(text(StringIds::ErrorMessageLabel));
    lblAddSignature->setText(text(StringIds::AddSignatureLink));
    lblSendErrorInfo->setText(text(StringIds::SendErrorInfo));
    lblShowMessage->setText(text(StringIds::ShowMessageLink));
    cmdOKButton->setText(text(StringIds::SendReportButton));
    cmdCancelButton->setText(text(StringIds::DoNotSendButton));
    imgError2->hide();
}

long frmErrorDialog::init(long strErrorNum_p, const QString &strErrorMessage_p, const QString &strPosition_p,
                          bool boolEnableSendError_p, const QString &report)
{
    m_lErrorNum = strErrorNum_p;
    m_strMessage = strErrorMessage_p;
    m_strPosition = strPosition_p;
    m_boolEnableSendError = boolEnableSendError_p;
    lblErrorMsg->setText(strErrorMessage_p);
    QApplication::beep();
    if (boolEnableSendError_p) {
        m_strReport = report;
        showFullLook();
    } else {
        showShortLook();
    }
    return 1;
}

void frmErrorDialog::showShortLook()
{
    cmdOKButton->hide();
    imgError1->hide();
    imgError2->show();
    cmdCancelButton->setText(text(StringIds::CloseButton));
    lblErrorMsg->setMinimumHeight(97); // room for a message of several lines
    lblSendErrorInfo->hide();
    lblShowMessage->hide();
    lblAddSignature->hide();
    lblExplanation->setText(text(StringIds::ProblemExplanation));
    setWindowTitle(text(StringIds::ProblemTitle));
}

void frmErrorDialog::showFullLook()
{
    for (QWidget *widget : std::initializer_list<QWidget *>{cmdOKButton, imgError1, lblAddSignature,
                                                            lblSendErrorInfo, lblShowMessage})
        widget->show();
    imgError2->hide();
    // The dialog reads the language itself, so a language just chosen in
    // the settings already shows here; other values keep the table's texts.
    switch (EnvironmentSettings::Lang()) {
    case 1053:
        lblExplanation->setText(QStringLiteral("Ett fel har inträffat..."));
        setWindowTitle(QStringLiteral("Ett fel inträffade"));
        break;
    case 1033:
        lblExplanation->setText(QStringLiteral("An error has occurred..."));
        setWindowTitle(QStringLiteral("An error occurred"));
        break;
    default:
        break;
    }
}

QString frmErrorDialog::AttachmentPath()
{
    return LocalFolders::tempFolder() + QStringLiteral("/errorattachment.log");
}

void frmErrorDialog::lblAddSignature_Click()
{
    frmSignature box(this);
    UserQuestions::RunDialog(QStringLiteral("frmSignature"), box.lblSignature->text(),
                             [&box]() -> long { return box.exec(); });
    m_strSignature = box.GetSignature();
}

// The report opens in the desktop's viewer for text files (through the
// desktop's opener, xdg-open): $VISUAL and $EDITOR name terminal editors as
// often as not, which would have no terminal to run in here.
void frmErrorDialog::lblShowMessage_Click()
{
    QFile attachment(AttachmentPath());
    if (!attachment.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    attachment.write(m_strReport.toUtf8());
    attachment.close();
    QDesktopServices::openUrl(QUrl::fromLocalFile(AttachmentPath()));
}

void frmErrorDialog::cmdOKButton_Click()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const long status = ErrorReportSender::Send(m_strReport, m_strPosition, m_strSignature, BrowserDescription());
    QApplication::restoreOverrideCursor();
    if (status != 1) {
        MError::SetErrorIfClear(-1, QStringLiteral("The error report could not be sent."),
                                QStringLiteral("frmErrorDialog.OKButton_Click"));
        MError::ShowError();
        return;
    }
    UserQuestions::MsgBox(text(StringIds::ThankYouMessage), UserQuestions::vbInformation,
                          text(StringIds::ThankYouTitle));
    accept();
}

// The page engine has no page of its own to ask here; its user agent tells
// the same as the page's navigator would.
QString frmErrorDialog::BrowserDescription()
{
    const QString agent = EngineProfile::Shared()->httpUserAgent();
    const QString crlf = QStringLiteral("\r\n");
    const qsizetype slash = agent.indexOf(QLatin1Char('/'));
    return QStringLiteral("Browser CodeName: ") + agent.left(slash) + crlf
           + QStringLiteral("Major version: ") + agent.mid(slash + 1) + crlf
           + QStringLiteral("Minor version: ") + crlf
           + QStringLiteral("Name: Netscape") + crlf
           + QStringLiteral("Platform: ") + QSysInfo::kernelType() + QLatin1Char(' ')
           + QSysInfo::currentCpuArchitecture() + crlf
           + QStringLiteral("SysLang: ") + QLocale::system().bcp47Name() + crlf;
}
