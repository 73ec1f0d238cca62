#include "app/ui/OptionsDialog.h"

#include "app/Texts.h"
#include "foundation/SysInfo.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

COptionsDialog::COptionsDialog(QWidget* pParent) : QDialog(pParent) {
    setObjectName(QStringLiteral("COptionsDialog"));
    setWindowTitle(AppTexts::c_strOptionsTitle);
    const CSysInfo& settings = CSysInfo::Instance();
    m_pNew = new QRadioButton(AppTexts::c_strOptionNew, this);
    m_pNew->setObjectName(QStringLiteral("startWithNew"));
    m_pLast = new QRadioButton(AppTexts::c_strOptionLast, this);
    m_pLast->setObjectName(QStringLiteral("startWithLast"));
    m_pOffice = new QCheckBox(AppTexts::c_strOptionOffice, this);
    m_pOffice->setObjectName(QStringLiteral("askOffice"));
    QRadioButton* const pPresent = settings.GetShowStartupDlg() ? m_pNew : m_pLast;
    pPresent->setChecked(true);
    pPresent->setFocus();
    m_pOffice->setChecked(settings.GetQueryUserSaveOfficeAsHtml());

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    pButtons->button(QDialogButtonBox::Ok)->setText(AppTexts::c_strOk);
    pButtons->button(QDialogButtonBox::Cancel)->setText(AppTexts::c_strCancel);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pNew);
    pLayout->addWidget(m_pLast);
    pLayout->addSpacing(8);
    pLayout->addWidget(m_pOffice);
    pLayout->addStretch();
    pLayout->addWidget(pButtons);
}

void COptionsDialog::Store() const {
    CSysInfo& settings = CSysInfo::Instance();
    settings.SetShowStartupDlg(m_pNew->isChecked());
    settings.SetQueryUserSaveOfficeAsHtml(m_pOffice->isChecked());
}
