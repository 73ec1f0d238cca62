#include "content/ui/CourseSummaryPage.h"

#include "content/Texts.h"
#include "platform/base/NativePath.h"
#include "platform/ui/DialogParts.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

CShowUserSelectPropertyPage::CShowUserSelectPropertyPage(CreateRecord& record)
    : CWizardPage(ContentText::c_strSummaryPage), m_record(record) {
    m_pSummary = DialogParts::Named(DialogParts::ReadOnlyText(this), "summary", ContentText::c_strSummary);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pSummary);
}

void CShowUserSelectPropertyPage::Activate() {
    m_pSummary->setPlainText(SummaryText(m_record, Platform::ToShown(m_record.Folder)));
}

QWidget* CShowUserSelectPropertyPage::GetFirstField() const {
    return m_pSummary;
}

bool CShowUserSelectPropertyPage::validatePage() {
    CompleteRecord(m_record);
    return true;
}
