#pragma once

// Shows the message boxes of UserQuestions and the error dialog of MError
// as real Qt dialogs.
class QtMessagePresenter
{
public:
    static void install();
};
