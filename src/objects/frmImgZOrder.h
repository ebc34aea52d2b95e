#pragma once

#include <QDialog>

class QSpinBox;

// The height position (z-index) of a positioned picture. The lowest value
// of the box stands for no z-index at all, shown as "Not selected".
// Closing the window is an Abort.
class frmImgZOrder : public QDialog
{
    Q_OBJECT

public:
    explicit frmImgZOrder(QWidget *parent = nullptr);

    // "" (or a value that is no number) for none.
    void LetImgZOrder(const QString &strValue_p);
    // "" for none.
    QString GetImgZOrder() const;
    // 1 OK, -1 Abort.
    long Show();

private:
    QSpinBox *txtZOrder = nullptr;
};
