#include "server/ui/DialogParts.h"

#include "platform/ui/DialogParts.h"
#include "server/Texts.h"

#include <QLabel>

namespace {

constexpr int c_nFieldWidth = 280;

} // namespace

QLineEdit* AddField(QFormLayout* pLayout, const QString& strLabel, const QString& strName,
                    QLineEdit::EchoMode echo) {
    auto* pField = new QLineEdit;
    pField->setObjectName(strName);
    pField->setAccessibleName(DialogParts::NameOf(strLabel));
    pField->setEchoMode(echo);
    pField->setMinimumWidth(c_nFieldWidth);
    pLayout->addRow(strLabel, pField);
    return pField;
}

QDialogButtonBox* AddButtons(QDialog* pDialog, const std::function<void()>& onOk) {
    auto* pBox = new QDialogButtonBox;
    QPushButton* pOk = pBox->addButton(ServerText::c_strOk, QDialogButtonBox::AcceptRole);
    pOk->setObjectName(QStringLiteral("ok"));
    pOk->setDefault(true);
    QPushButton* pCancel = pBox->addButton(ServerText::c_strCancel, QDialogButtonBox::RejectRole);
    pCancel->setObjectName(QStringLiteral("cancel"));
    QObject::connect(pBox, &QDialogButtonBox::accepted, pDialog, onOk);
    QObject::connect(pBox, &QDialogButtonBox::rejected, pDialog, &QDialog::reject);
    pDialog->layout()->addWidget(pBox);
    return pBox;
}
