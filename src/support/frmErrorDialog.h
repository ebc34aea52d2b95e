#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

// The error dialog. The short look names a fault the user can act on and
// has only a Close button; the full look explains that an error occurred
// and offers to send a report, to read it first and to sign it.
class frmErrorDialog : public QDialog
{
    Q_OBJECT

public:
    explicit frmErrorDialog(QWidget *parent = nullptr);
    ~frmErrorDialog() override;

    // Prepares the dialog before it is shown modally. Returns 1.
    long init(long strErrorNum_p, const QString &strErrorMessage_p, const QString &strPosition_p,
              bool boolEnableSendError_p = false, const QString &report = QString());

    QString Report() const { return m_strReport; }
    QString Signature() const { return m_strSignature; }

    // The report is written here for the user to read.
    static QString AttachmentPath();

    // The page engine, described for the report as sent.
    static QString BrowserDescription();

    void lblAddSignature_Click();
    void lblShowMessage_Click();
    void cmdOKButton_Click();

    QLabel *lblErrorMsg = nullptr;
    QLabel *lblErrorMsgLabel = nullptr;
    QLabel *lblExplanation = nullptr;
    QLabel *lblSendErrorInfo = nullptr;
    QLabel *lblShowMessage = nullptr;
    QLabel *lblAddSignature = nullptr;
    QLabel *imgError1 = nullptr;
    QLabel *imgError2 = nullptr;
    QPushButton *cmdOKButton = nullptr;
    QPushButton *cmdCancelButton = nullptr;

private:
    void Form_Load();
    void showShortLook();
    void showFullLook();

    long m_lErrorNum = 0;
    QString m_strMessage;
    QString m_strPosition;
    bool m_boolEnableSendError = false;
    QString m_strSignature;
    QString m_strReport;
};
