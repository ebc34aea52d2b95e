#pragma once

#include <QDialog>

class QPlainTextEdit;

// Shows what "Get" found out about the network, to be read or copied.
class frmProxyExtraInfo : public QDialog
{
    Q_OBJECT

public:
    explicit frmProxyExtraInfo(QWidget *parent = nullptr);
    void SetInfoText(const QString &strInfoTxt_p);

    // Shows the text modally.
    static void Show(QWidget *parent, const QString &strInfoTxt_p);

private:
    QPlainTextEdit *txtNetInfo = nullptr;
};
