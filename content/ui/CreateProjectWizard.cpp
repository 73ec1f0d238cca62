#include "content/ui/CreateProjectWizard.h"

#include "content/Texts.h"
#include "content/ui/CourseFolderPage.h"
#include "content/ui/CourseNodesPage.h"
#include "content/ui/CoursePage.h"
#include "content/ui/CourseSummaryPage.h"
#include "content/ui/CourseTemplatePage.h"
#include "platform/ui/DialogParts.h"

#include <QAbstractButton>
#include <QEvent>
#include <QTimer>

namespace {

constexpr QSize c_size(680, 540);
constexpr int c_nActivationMilliseconds = 1000;

} // namespace

CCreateProjectWizard::CCreateProjectWizard(Torvane::Dialog::MFC::IPeople& people, CServerSession& session,
                                           QWidget* pParent)
    : QWizard(pParent), m_people(people), m_choice(people, session) {
    setObjectName(QStringLiteral("CCreateProjectWizard"));
    setWindowTitle(ContentText::c_strWizard);
    setWizardStyle(ClassicStyle);
    SetButtons();
    AddPages();
    connect(this, &QWizard::currentIdChanged, this, &CCreateProjectWizard::OnPage);
    resize(c_size);
}

CCreateProjectWizard::~CCreateProjectWizard() = default;

void CCreateProjectWizard::SetButtons() {
    const struct {
        WizardButton Button;
        const QString& strText;
        const char* pszName;
    } buttons[]{{BackButton, ContentText::c_strBack, "back"},
                {NextButton, ContentText::c_strNext, "next"},
                {FinishButton, ContentText::c_strFinish, "finish"},
                {CancelButton, ContentText::c_strCancel, "cancel"}};
    for (const auto& entry : buttons) {
        setButtonText(entry.Button, entry.strText);
        DialogParts::SetNames(button(entry.Button), entry.pszName, entry.strText);
    }
}

void CCreateProjectWizard::AddPages() {
    m_pCoursePage = new CGetCourseInfoPropertyPage(m_choice, m_record);
    addPage(m_pCoursePage);
    addPage(new CSelectCourseFolderPropertyPage(m_people, m_record));
    addPage(new CSelectCourseTempletePropertyPage(m_people, m_record));
    addPage(new CShowUserSelectPropertyPage(m_record));
    m_pNodesPage = std::make_unique<CSelectCourseNodePropertyPage>(m_people, m_record);
}

bool CCreateProjectWizard::Run() {
    // Where the desktop keeps the wizard from becoming active.
    QTimer::singleShot(c_nActivationMilliseconds, this, &CCreateProjectWizard::FetchCourses);
    return exec() == Accepted;
}

bool CCreateProjectWizard::event(QEvent* pEvent) {
    // Not before the wizard really stands there: it would come up over the status window of the fetch.
    if (pEvent->type() == QEvent::WindowActivate)
        QTimer::singleShot(0, this, &CCreateProjectWizard::FetchCourses);
    return QWizard::event(pEvent);
}

void CCreateProjectWizard::FetchCourses() {
    if (m_bFetching || !isVisible())
        return;
    m_bFetching = true;
    if (!m_pCoursePage->FetchCourses())
        reject();
}

void CCreateProjectWizard::OnPage() {
    auto* pPage = qobject_cast<CNewCoursePage*>(currentPage());
    if (pPage == nullptr)
        return;
    pPage->Activate();
    pPage->GetFirstField()->setFocus(Qt::TabFocusReason);
}
