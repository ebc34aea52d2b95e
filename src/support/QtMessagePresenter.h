#pragma once

// Shows the message boxes of UserQuestions as real Qt dialogs.
class QtMessagePresenter
{
public:
    static void install();
};
