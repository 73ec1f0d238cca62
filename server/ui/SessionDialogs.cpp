#include "server/ui/SessionDialogs.h"

#include "server/ui/PasswordDialogs.h"
#include "server/ui/ServerAddressDialog.h"

#include <QApplication>

QWidget* CSessionDialogs::Parent() const {
    QWidget* pModal = QApplication::activeModalWidget();
    return pModal ? pModal : m_pParent;
}

std::optional<QString> CSessionDialogs::AskPassword(const CCourseInfo& info) {
    CPasswordDialog dialog(info, Parent());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.GetPassword();
}

std::optional<ISessionDialogs::PasswordChange> CSessionDialogs::AskPasswordChange(const QString& strPrompt) {
    CChangePasswordDialog dialog(strPrompt, m_people, Parent());
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
