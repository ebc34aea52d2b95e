#include "support/QtMessagePresenter.h"

#include "support/MError.h"
#include "support/MResources.h"
#include "support/frmErrorDialog.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>

namespace {
QMessageBox::StandardButton buttonFor(long answer)
{
    switch (answer) {
    case UserQuestions::vbCancel: return QMessageBox::Cancel;
    case UserQuestions::vbAbort: return QMessageBox::Abort;
    case UserQuestions::vbRetry: return QMessageBox::Retry;
    case UserQuestions::vbIgnore: return QMessageBox::Ignore;
    case UserQuestions::vbYes: return QMessageBox::Yes;
    case UserQuestions::vbNo: return QMessageBox::No;
    default: return QMessageBox::Ok;
    }
}

QMessageBox::Icon iconFor(long style)
{
    switch (style & 0x70) {
    case UserQuestions::vbCritical: return QMessageBox::Critical;
    case UserQuestions::vbQuestion: return QMessageBox::Question;
    case UserQuestions::vbExclamation: return QMessageBox::Warning;
    case UserQuestions::vbInformation: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

long show(const QString &prompt, long style, const QString &title)
{
    QMessageBox box(iconFor(style),
                    title.isEmpty() ? MResources::LoadResourceString(1) : title, prompt,
                    QMessageBox::NoButton, QApplication::activeWindow());
    const QList<long> answers = UserQuestions::Buttons(style);
    for (long answer : answers)
        box.addButton(buttonFor(answer));
    box.setDefaultButton(buttonFor(UserQuestions::DefaultAnswer(style)));
    const int clicked = box.exec();
    for (long answer : answers) {
        if (clicked == buttonFor(answer))
            return answer;
    }
    // Closed with Escape or the window's close box: Cancel where the box
    // offers it, else what the default button means.
    return answers.contains(UserQuestions::vbCancel) ? long(UserQuestions::vbCancel)
                                                     : UserQuestions::DefaultAnswer(style);
}

long ask(const QString &prompt, const QString &title, bool secret, QString &text)
{
    bool ok = false;
    const QString typed = QInputDialog::getText(QApplication::activeWindow(),
                                                title.isEmpty() ? MResources::LoadResourceString(1) : title, prompt,
                                                secret ? QLineEdit::Password : QLineEdit::Normal, text, &ok);
    if (!ok)
        return UserQuestions::vbCancel;
    text = typed;
    return UserQuestions::vbOK;
}

void showErrorDialog(const MError::DialogRequest &request)
{
    frmErrorDialog dialog(QApplication::activeWindow());
    dialog.init(request.number, request.message, request.position, request.enableSendError, request.report);
    dialog.exec();
}
} // namespace

void QtMessagePresenter::install()
{
    UserQuestions::SetPresenter(show);
    UserQuestions::SetInputPresenter(ask);
    MError::SetDialogPresenter(showErrorDialog);
}
