#pragma once

#include <QDialog>

// The word that a site is ready: one text and an OK button.
class frmActivateSuccess : public QDialog
{
    Q_OBJECT

public:
    explicit frmActivateSuccess(QWidget *parent = nullptr);

    // Shown modally through UserQuestions, so that tests see its text.
    static void Tell(QWidget *parent);
};
