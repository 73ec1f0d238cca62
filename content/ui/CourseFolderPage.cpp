#include "content/ui/CourseFolderPage.h"

#include "content/Texts.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"
#include "platform/ui/DialogParts.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace DialogParts;

CSelectCourseFolderPropertyPage::CSelectCourseFolderPropertyPage(Torvane::Dialog::MFC::IPeople& people,
                                                                 CreateRecord& record)
    : CWizardPage(ContentText::c_strFolderPage), m_people(people), m_record(record) {
    using namespace ContentText;
    m_pName = Named(new QLineEdit(this), "courseName", c_strCourseName);
    m_pFolder = Named(new QLineEdit(this), "courseFolder", c_strCourseFolder);
    auto* pBrowse = Named(new QPushButton(c_strBrowse, this), "browse", c_strBrowse);

    auto* pFolderLine = new QHBoxLayout;
    pFolderLine->addWidget(m_pFolder, 1);
    pFolderLine->addWidget(pBrowse);
    auto* pLayout = new QFormLayout(this);
    pLayout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    pLayout->addRow(LabelFor(c_strCourseName, m_pName), m_pName);
    pLayout->addRow(LabelFor(c_strCourseFolder, m_pFolder), pFolderLine);
    connect(pBrowse, &QPushButton::clicked, this, &CSelectCourseFolderPropertyPage::Browse);
}

void CSelectCourseFolderPropertyPage::Activate() {
    TakeFields();
    m_step.Enter(m_record.Info.Name);
    ShowFields();
}

QWidget* CSelectCourseFolderPropertyPage::GetFirstField() const {
    return m_pName;
}

void CSelectCourseFolderPropertyPage::TakeFields() {
    m_step.strName = m_pName->text();
    // A blank comes along with a copied path.
    m_step.strFolder = Platform::FromNative(m_pFolder->text().trimmed());
}

void CSelectCourseFolderPropertyPage::ShowFields() {
    m_pName->setText(m_step.strName);
    m_pFolder->setText(Platform::ToShown(m_step.strFolder));
}

void CSelectCourseFolderPropertyPage::Browse() {
    TakeFields();
    const std::optional<QString> folder = m_people.PickFolder(ContentText::c_strPickCourseFolder,
                                                              CSysInfo::Instance().GetProjectsFolder(false));
    if (!folder)
        return;
    m_step.TakePicked(*folder);
    ShowFields();
}

bool CSelectCourseFolderPropertyPage::validatePage() {
    TakeFields();
    const CCourseFolderStep::Fault fault = m_step.Next();
    if (!fault.strWarning.isEmpty()) {
        m_people.Warn(fault.strWarning);
        (fault.bName ? m_pName : m_pFolder)->setFocus();
        return false;
    }
    m_record.FileTitle = m_step.strName;
    m_record.Folder = m_step.strFolder;
    return true;
}
