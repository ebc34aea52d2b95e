#pragma once

#include "config/frmMessageBoxOnce.h"

// A question with Yes and No and the same "don't show again" box; the
// buttons leave vbYes (6) or vbNo (7) as the answer.
class frmMessageBoxYesNoOnce : public frmMessageBoxOnce
{
    Q_OBJECT

public:
    explicit frmMessageBoxYesNoOnce(QWidget *parent = nullptr);

    // Asks unless the question was silenced. Returns vbYes or vbNo, or 0
    // when it was not asked.
    static long Show(const QString &strMessage_p, const QString &strMessageBoxTitle_p,
                     const QString &strMessageBoxName_p, QWidget *parent = nullptr);
};
