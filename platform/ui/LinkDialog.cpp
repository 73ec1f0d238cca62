#include "platform/ui/LinkDialog.h"

#include "platform/ui/DialogParts.h"
#include "platform/ui/Texts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

std::optional<QString> AskLinkAddress(QWidget* pParent, const QString& strPresent) {
    // The window over which it stands may go while it is open, and takes the dialog with it.
    const QPointer<QDialog> pDialog(new QDialog(pParent ? pParent->window() : nullptr));
    pDialog->setObjectName(QStringLiteral("linkDialog"));
    pDialog->setWindowTitle(UiTexts::c_strLinkTitle);
    auto* pLayout = new QVBoxLayout(pDialog);
    auto* pAddress = new QLineEdit(strPresent.isEmpty() ? QStringLiteral("http://") : strPresent, pDialog);
    DialogParts::SetNames(pAddress, "linkAddress", UiTexts::c_strLinkPrompt);
    pAddress->setMinimumWidth(360);
    pAddress->selectAll();
    pLayout->addWidget(DialogParts::LabelFor(UiTexts::c_strLinkPrompt, pAddress));
    pLayout->addWidget(pAddress);
    auto* pButtons = new QDialogButtonBox(pDialog);
    pButtons->addButton(UiTexts::c_strOk, QDialogButtonBox::AcceptRole)->setObjectName(QStringLiteral("ok"));
    pButtons->addButton(UiTexts::c_strCancel, QDialogButtonBox::RejectRole)
        ->setObjectName(QStringLiteral("cancel"));
    pLayout->addWidget(pButtons);
    QObject::connect(pButtons, &QDialogButtonBox::accepted, pDialog, &QDialog::accept);
    QObject::connect(pButtons, &QDialogButtonBox::rejected, pDialog, &QDialog::reject);
    const bool bAccepted = pDialog->exec() == QDialog::Accepted;
    if (!pDialog)
        return std::nullopt;
    const QString strAddress = pAddress->text().trimmed();
    delete pDialog;
    if (!bAccepted || strAddress.isEmpty() || strAddress == QLatin1String("http://"))
        return std::nullopt;
    return strAddress;
}
