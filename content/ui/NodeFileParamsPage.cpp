#include "content/ui/NodeFileParamsPage.h"

#include "content/Texts.h"
#include "platform/ui/DialogParts.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QWizard>

using namespace ContentText;

CCreateFileParamSetPropertyPage::CCreateFileParamSetPropertyPage(Torvane::Dialog::MFC::IPeople& people,
                                                                 const AskLink& askLink,
                                                                 CNodeFileParams& params)
    : CWizardPage(c_strParamsPage), m_people(people), m_params(params), m_pGroup(new QGroupBox(this)),
      m_pKinds(new QStackedWidget(m_pGroup)) {
    for (const ContentKinds::Row& row : ContentKinds::Rows()) {
        // From the top, however much room the tallest kind takes.
        auto* pPlace = new QWidget(m_pKinds);
        auto* pLayout = new QVBoxLayout(pPlace);
        pLayout->setContentsMargins(0, 0, 0, 0);
        pLayout->addWidget(MakeKindFields(row.Kind, people, askLink, pPlace));
        pLayout->addStretch();
        m_pKinds->addWidget(pPlace);
    }
    auto* pInGroup = new QVBoxLayout(m_pGroup);
    pInGroup->addWidget(m_pKinds);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pGroup, 1);
    pLayout->addWidget(OpenTypeGroup());
}

QGroupBox* CCreateFileParamSetPropertyPage::OpenTypeGroup() {
    auto* pGroup = new QGroupBox(c_strOpenTypeGroup, this);
    auto* pLayout = new QHBoxLayout(pGroup);
    m_pNewWindow = DialogParts::Named(new QCheckBox(c_strNewWindow, pGroup), "newWindow", c_strNewWindow);
    pLayout->addWidget(m_pNewWindow);
    m_pWindows = new QButtonGroup(this);
    for (const QString& strText : c_strWindows) {
        const int nType = static_cast<int>(m_pWindows->buttons().size()) + 1;
        auto* pWindow = new QRadioButton(strText, pGroup);
        DialogParts::SetNames(pWindow, qPrintable(QStringLiteral("window%1").arg(nType)), strText);
        pWindow->setEnabled(false);
        connect(m_pNewWindow, &QCheckBox::toggled, pWindow, &QWidget::setEnabled);
        m_pWindows->addButton(pWindow, nType);
        pLayout->addWidget(pWindow);
    }
    m_pWindows->button(1)->setChecked(true);
    pLayout->addStretch();
    // The open type is set when the content is there, by a command of its own.
    m_pNewWindow->setEnabled(false);
    return pGroup;
}

CKindFields& CCreateFileParamSetPropertyPage::Fields() const {
    return *m_pKinds->currentWidget()->findChild<CKindFields*>();
}

void CCreateFileParamSetPropertyPage::Activate() {
    m_pKinds->setCurrentIndex(static_cast<int>(m_params.Kind));
    m_pGroup->setTitle(ContentKinds::NameOf(m_params.Kind));
}

QWidget* CCreateFileParamSetPropertyPage::GetFirstField() const {
    QWidget* pFirst = Fields().GetFirstField();
    return pFirst != nullptr ? pFirst : wizard()->button(QWizard::FinishButton);
}

qint32 CCreateFileParamSetPropertyPage::OpenType() const {
    return m_pNewWindow->isEnabled() && m_pNewWindow->isChecked() ? m_pWindows->checkedId() : 0;
}

bool CCreateFileParamSetPropertyPage::validatePage() {
    CNodeFileParams params;
    params.Kind = m_params.Kind;
    params.OpenType = OpenType();
    Fields().Read(params);
    const auto refusal = ContentKinds::Check(params, Fields().IsFilterTyped());
    if (!refusal) {
        m_params = params;
        return true;
    }
    m_people.Notice(refusal->strMessage);
    if (QLineEdit* pField = Fields().GetField(refusal->Field)) {
        if (refusal->bEmptied)
            pField->clear();
        pField->setFocus();
    }
    return false;
}
