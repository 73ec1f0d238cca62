#pragma once

#include "platform/base/People.h"
#include "server/ServerSession.h"

#include <QDialog>

class QLineEdit;

/// The dialog "验证密码".
class CPasswordDialog : public QDialog {
    Q_OBJECT
public:
    CPasswordDialog(const CCourseInfo& info, QWidget* pParent);

    QString GetPassword() const;

private:
    QLineEdit* m_pPassword;
};

/// The dialog "修改密码"; it closes with OK only when its fields pass their checks.
class CChangePasswordDialog : public QDialog {
    Q_OBJECT
public:
    CChangePasswordDialog(const QString& strPrompt, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent);

    ISessionDialogs::PasswordChange GetChange() const;

private:
    void OnOk();

    Torvane::Dialog::MFC::IPeople& m_people;
    QLineEdit* m_pOld;
    QLineEdit* m_pNew;
    QLineEdit* m_pConfirm;
};
