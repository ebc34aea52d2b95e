#include "support/UserQuestions.h"

#include <QDebug>

namespace {
struct State
{
    UserQuestions::MsgBoxPresenter presenter;
    UserQuestions::InputPresenter inputPresenter;
    QStringList texts;
    bool scripted = false;
    QList<long> answers;
    QList<UserQuestions::Shown> shown;
    int unanswered = 0;
};

State &state()
{
    static State s;
    return s;
}
} // namespace

QList<long> UserQuestions::Buttons(long style)
{
    using Q = UserQuestions;
    switch (style & 7) {
    case Q::vbOKCancel: return {Q::vbOK, Q::vbCancel};
    case Q::vbAbortRetryIgnore: return {Q::vbAbort, Q::vbRetry, Q::vbIgnore};
    case Q::vbYesNoCancel: return {Q::vbYes, Q::vbNo, Q::vbCancel};
    case Q::vbYesNo: return {Q::vbYes, Q::vbNo};
    case Q::vbRetryCancel: return {Q::vbRetry, Q::vbCancel};
    default: return {Q::vbOK};
    }
}

long UserQuestions::MsgBox(const QString &prompt, long style, const QString &title)
{
    State &s = state();
    if (s.scripted) {
        s.shown.append({QStringLiteral("MsgBox"), title, prompt, style});
        return NextScripted(DefaultAnswer(style));
    }
    if (s.presenter)
        return s.presenter(prompt, style, title);
    // No window to ask in (a tool or a test without a script): say it on the
    // console and take the default, which is what Enter would have chosen.
    qWarning().noquote() << "message:" << title << prompt;
    return DefaultAnswer(style);
}

long UserQuestions::InputBox(const QString &prompt, const QString &title, bool secret, QString &text)
{
    State &s = state();
    if (s.scripted) {
        s.shown.append({QStringLiteral("InputBox"), title, prompt, 0});
        const long answer = NextScripted(vbCancel);
        if (answer == vbOK)
            text = s.texts.isEmpty() ? QString() : s.texts.takeFirst();
        return answer;
    }
    if (s.inputPresenter)
        return s.inputPresenter(prompt, title, secret, text);
    // Nobody to type the text: the question counts as cancelled.
    qWarning().noquote() << "question:" << title << prompt;
    return vbCancel;
}

long UserQuestions::RunDialog(const QString &name, const QString &text, const std::function<long()> &show)
{
    State &s = state();
    if (!s.scripted)
        return show();
    s.shown.append({name, QString(), text, 0});
    return NextScripted(0);
}

void UserQuestions::SetPresenter(MsgBoxPresenter presenter)
{
    state().presenter = std::move(presenter);
}

void UserQuestions::SetInputPresenter(InputPresenter presenter)
{
    state().inputPresenter = std::move(presenter);
}

void UserQuestions::ScriptTexts(const QStringList &texts)
{
    state().texts = texts;
}

void UserQuestions::Script(const QList<long> &answers)
{
    State &s = state();
    s.scripted = true;
    s.answers = answers;
    s.shown.clear();
    s.unanswered = 0;
}

void UserQuestions::EndScript()
{
    state().scripted = false;
    state().answers.clear();
    state().texts.clear();
}

bool UserQuestions::Scripted()
{
    return state().scripted;
}

QList<UserQuestions::Shown> UserQuestions::ShownSoFar()
{
    return state().shown;
}

int UserQuestions::Unanswered()
{
    return state().unanswered;
}

long UserQuestions::DefaultAnswer(long style)
{
    const QList<long> buttons = Buttons(style);
    const int index = (style & vbDefaultButton3) ? 2 : (style & vbDefaultButton2) ? 1 : 0;
    return buttons.value(index, buttons.first());
}

long UserQuestions::NextScripted(long fallback)
{
    State &s = state();
    if (s.answers.isEmpty()) {
        ++s.unanswered;
        return fallback;
    }
    return s.answers.takeFirst();
}
