#pragma once

#include "platform/base/People.h"
#include "server/ServerSession.h"

#include <QDialog>

class QLineEdit;

/// The dialog "设置服务器地址"; it closes with OK only when a server answers at the address.
class CServerAddressDialog : public QDialog {
    Q_OBJECT
public:
    CServerAddressDialog(const QString& strStart, CServerSession& session,
                         Torvane::Dialog::MFC::IPeople& people, QWidget* pParent);

    QString GetAddress() const;

private:
    void OnOk();

    CServerSession& m_session;
    Torvane::Dialog::MFC::IPeople& m_people;
    QLineEdit* m_pAddress;
};
