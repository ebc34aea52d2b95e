#include "support/MError.h"

#include "support/ErrorLog.h"
#include "support/ErrorReport.h"
#include "support/UserQuestions.h"

#include <QDebug>

namespace {
struct PendingError
{
    long number = 0;
    QString description;
    QString position;
};

PendingError &pending()
{
    static PendingError error;
    return error;
}

MError::DialogPresenter &presenter()
{
    static MError::DialogPresenter installed;
    return installed;
}

// Shows the request through the door of all dialogs, so that tests read
// what would have been shown: the message in the short look, the report in
// the full one.
void present(const MError::DialogRequest &request)
{
    const QString shown = request.enableSendError ? request.report : request.message;
    UserQuestions::RunDialog(QStringLiteral("frmErrorDialog"), shown, [&request]() -> long {
        presenter()(request);
        return 0;
    });
}
} // namespace

void MError::SetError(long number, const QString &description, const QString &position)
{
    pending() = {number, description, position};
}

long MError::ErrorNumber()
{
    return pending().number;
}

QString MError::ErrorDescription()
{
    return pending().description;
}

QString MError::ErrorSource()
{
    return pending().position;
}

void MError::ClearError()
{
    pending() = {};
}

void MError::SetErrorIfClear(long number, const QString &description, const QString &position)
{
    if (pending().number == 0)
        SetError(number, description, position);
}

void MError::LogError()
{
    const PendingError error = pending();
    if (error.number != 1)
        ErrorLog::Append(error.number, error.description, error.position);
    ClearError();
}

void MError::ShowError()
{
    const PendingError error = pending();
    if (!presenter() && !UserQuestions::Scripted()) {
        qWarning().noquote() << "error" << error.number << error.description << error.position;
        LogError();
        return;
    }
    DialogRequest request{error.number, error.description, error.position, false, QString()};
    if (ErrorReport::IsShortLook(error.number)) {
        request.message = ErrorReport::ShortLookMessage(error.number, error.description);
    } else {
        request.enableSendError = true;
        request.report = ErrorReport::Build(error.number, error.description, error.position);
    }
    present(request);
    ClearError();
}

void MError::SetDialogPresenter(DialogPresenter presenter_)
{
    presenter() = std::move(presenter_);
}
