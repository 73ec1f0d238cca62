#include "server/ui/ServerAddressDialog.h"

#include "foundation/Exceptions.h"
#include "server/Texts.h"
#include "server/ui/DialogParts.h"

using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxIcon;

CServerAddressDialog::CServerAddressDialog(const QString& strStart, CServerSession& session,
                                           Torvane::Dialog::MFC::IPeople& people, QWidget* pParent)
    : QDialog(pParent), m_session(session), m_people(people) {
    setObjectName(QStringLiteral("CServerAddressDialog"));
    setWindowTitle(ServerText::c_strAddressTitle);
    auto* pLayout = new QVBoxLayout(this);
    auto* pForm = new QFormLayout;
    pLayout->addLayout(pForm);
    m_pAddress = AddField(pForm, ServerText::c_strAddressLabel, QStringLiteral("address"));
    m_pAddress->setText(strStart);
    AddButtons(this, [this] { OnOk(); });
    m_pAddress->setFocus();
    // A dialog selects its first field when it shows; whoever types on after "http://" would lose that.
    QMetaObject::invokeMethod(
        m_pAddress, [this] { m_pAddress->end(false); }, Qt::QueuedConnection);
}

QString CServerAddressDialog::GetAddress() const {
    return m_pAddress->text();
}

void CServerAddressDialog::OnOk() {
    const AddressCheck check = CheckServerAddress(m_pAddress->text());
    if (!check.strAddress.isEmpty())
        m_pAddress->setText(check.strAddress);
    if (!check.strMessage.isEmpty()) {
        m_people.Notice(check.strMessage);
        m_pAddress->setFocus();
        return;
    }
    try {
        m_session.TestLink(check.strAddress);
        accept();
    } catch (const Torvane::Net::CCancelledException&) {
        m_pAddress->setFocus();
    } catch (const Torvane::CRunException& exception) {
        m_people.Ask(exception.GetMessage(), ServerText::c_strTitleNotice, BoxButtons::Ok, BoxIcon::Warning);
        m_pAddress->setFocus();
    }
}
