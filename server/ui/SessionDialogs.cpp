#include "server/ui/SessionDialogs.h"

#include "server/ui/PasswordDialogs.h"
#include "server/ui/ServerAddressDialog.h"

std::optional<QString> CSessionDialogs::AskPassword(const CCourseInfo& info) {
    CPasswordDialog dialog(info, m_pParent);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.GetPassword();
}

std::optional<ISessionDialogs::PasswordChange> CSessionDialogs::AskPasswordChange(const QString& strPrompt) {
    CChangePasswordDialog dialog(strPrompt, m_people, m_pParent);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.GetChange();
}

std::optional<QString> AskServerAddress(const QString& strStart, CServerSession& session,
                                        Torvane::Dialog::MFC::IPeople& people, QWidget* pParent) {
    CServerAddressDialog dialog(strStart, session, people, pParent);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.GetAddress();
}
