#pragma once

#include "server/ServerSession.h"
#include "tests/support/ScriptedPeople.h"

#include <vector>

/// A person who fills the session's dialogs by a script; a dialog that the script does not expect fails the
/// test and is cancelled.
class CScriptedDialogs : public ISessionDialogs {
public:
    std::deque<std::optional<QString>> Passwords;
    std::deque<std::optional<PasswordChange>> Changes;
    /// What the dialogs showed.
    std::vector<CCourseInfo> Infos;
    QStringList Prompts;

    ~CScriptedDialogs() override {
        if (!Passwords.empty() || !Changes.empty())
            ADD_FAILURE() << "a dialog never came";
    }
    std::optional<QString> AskPassword(const CCourseInfo& info) override {
        Infos.push_back(info);
        return NextAnswer(Passwords);
    }
    std::optional<PasswordChange> AskPasswordChange(const QString& strPrompt) override {
        Prompts.append(strPrompt);
        return NextAnswer(Changes);
    }
};
