#include "support/MError.h"

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
