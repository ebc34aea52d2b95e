#pragma once

#include <QString>
#include <QStringView>

// Character references as a browser reads them: named ones, decimal and
// hexadecimal numbers (128-159 taken as windows-1252, as browsers do).
class HtmlEntities
{
public:
    static QString Decode(QStringView text);
};
