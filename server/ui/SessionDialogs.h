#pragma once

#include "server/ServerSession.h"

#include <QString>

class QWidget;

/// The session's dialogs as real windows.
class CSessionDialogs : public ISessionDialogs {
public:
    explicit CSessionDialogs(Torvane::Dialog::MFC::IPeople& people) : m_people(people) {}
    /// The window over which the dialogs stand, unless a modal one is open: then they stand over that.
    void SetParent(QWidget* pParent) { m_pParent = pParent; }

    std::optional<QString> AskPassword(const CCourseInfo& info) override;
    std::optional<PasswordChange> AskPasswordChange(const QString& strPrompt) override;

private:
    QWidget* Parent() const;

    Torvane::Dialog::MFC::IPeople& m_people;
    QWidget* m_pParent = nullptr;
};

/// The dialog "设置服务器地址": the tested address, or nothing when cancelled.
std::optional<QString> AskServerAddress(const QString& strStart, CServerSession& session,
                                        Torvane::Dialog::MFC::IPeople& people, QWidget* pParent);
