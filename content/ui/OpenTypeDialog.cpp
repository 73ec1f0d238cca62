#include "content/ui/OpenTypeDialog.h"

#include "content/Texts.h"
#include "platform/ui/DialogParts.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QVBoxLayout>

COpenTypeDialog::COpenTypeDialog(qint32 nPresent, QWidget* pParent)
    : QDialog(pParent), m_pTypes(new QButtonGroup(this)) {
    setObjectName(QStringLiteral("COpenTypeDialog"));
    setWindowTitle(ContentText::c_strOpenTypeDialog);
    auto* pLayout = new QVBoxLayout(this);
    for (const QString& strText : ContentText::c_strOpenTypes) {
        const int nType = static_cast<int>(m_pTypes->buttons().size());
        auto* pButton = new QRadioButton(strText, this);
        DialogParts::SetNames(pButton, qPrintable(QStringLiteral("openType%1").arg(nType)), strText);
        m_pTypes->addButton(pButton, nType);
        pLayout->addWidget(pButton);
    }
    pLayout->addSpacing(8);
    pLayout->addStretch();
    DialogParts::AddOkAndCancel(*this, *pLayout);
    QAbstractButton* pPresent = m_pTypes->button(nPresent);
    if (pPresent == nullptr)
        pPresent = m_pTypes->button(0);
    pPresent->setChecked(true);
    pPresent->setFocus();
}

qint32 COpenTypeDialog::GetOpenType() const {
    return m_pTypes->checkedId();
}
