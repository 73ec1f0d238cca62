#include "content/ui/CreateProjectWizard.h"

#include "content/Texts.h"
#include "content/ui/CourseFolderPage.h"
#include "content/ui/CourseNodesPage.h"
#include "content/ui/CoursePage.h"
#include "content/ui/CourseSummaryPage.h"
#include "content/ui/CourseTemplatePage.h"

namespace {

constexpr QSize c_size(680, 540);

} // namespace

CCreateProjectWizard::CCreateProjectWizard(Torvane::Dialog::MFC::IPeople& people, CServerSession& session,
                                           QWidget* pParent)
    : CPagedWizard(ContentText::c_strWizard,
                   {ContentText::c_strBack, ContentText::c_strNext, ContentText::c_strFinish}, pParent),
      m_people(people), m_choice(people, session) {
    setObjectName(QStringLiteral("CCreateProjectWizard"));
    AddPages();
    resize(c_size);
}

CCreateProjectWizard::~CCreateProjectWizard() = default;

void CCreateProjectWizard::AddPages() {
    m_pCoursePage = new CGetCourseInfoPropertyPage(m_choice, m_record);
    addPage(m_pCoursePage);
    addPage(new CSelectCourseFolderPropertyPage(m_people, m_record));
    addPage(new CSelectCourseTempletePropertyPage(m_people, m_record));
    addPage(new CShowUserSelectPropertyPage(m_record));
    m_pNodesPage = std::make_unique<CSelectCourseNodePropertyPage>(m_people, m_record);
}

bool CCreateProjectWizard::Run() {
    return exec() == Accepted;
}

void CCreateProjectWizard::Begin() {
    if (!m_pCoursePage->FetchCourses())
        reject();
}
