#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

// The box that asks for a signature to put in the subject of an error
// report, so that a report can be tracked down when the user has been in
// touch with the maker.
class frmSignature : public QDialog
{
    Q_OBJECT

public:
    explicit frmSignature(QWidget *parent = nullptr);

    QString GetSignature() const;

    QLabel *lblSignature = nullptr;
    QLineEdit *txtSignature = nullptr;
    QPushButton *cmdOk = nullptr;
};
