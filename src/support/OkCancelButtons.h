#pragma once

#include <functional>

class QBoxLayout;
class QDialog;
class QDialogButtonBox;

// The OK and Cancel buttons of a dialog, in the desktop's order, named
// cmdOk and cmdAbort as the dialogs' drivers find them. Cancel rejects;
// OK accepts, or runs onOk where the dialog checks its fields first.
class OkCancelButtons
{
public:
    static QDialogButtonBox *Add(QDialog *dialog, QBoxLayout *layout, const std::function<void()> &onOk = {});
};
