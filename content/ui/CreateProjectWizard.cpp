#include "content/ui/CreateProjectWizard.h"

#include "content/Texts.h"
#include "content/ui/NewCoursePages.h"

#include <QAbstractButton>

CCreateProjectWizard::CCreateProjectWizard(Torvane::Dialog::MFC::IPeople& people, CServerSession& session,
                                           QWidget* pParent)
    : QWizard(pParent), m_people(people), m_choice(people, session) {
    setObjectName(QStringLiteral("CCreateProjectWizard"));
    setWindowTitle(ContentText::c_strWizard);
    setWizardStyle(ClassicStyle);
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
        button(entry.Button)->setObjectName(QString::fromLatin1(entry.pszName));
        button(entry.Button)->setAccessibleName(entry.strText);
    }
    resize(640, 520);
}

bool CCreateProjectWizard::Run() {
    if (!m_choice.Fetch())
        return false;
    addPage(new CGetCourseInfoPropertyPage(m_choice, m_record));
    addPage(new CSelectCourseFolderPropertyPage(m_people, m_record));
    addPage(new CSelectCourseTempletePropertyPage(m_people, m_record));
    addPage(new CShowUserSelectPropertyPage(m_record));
    return exec() == Accepted;
}
