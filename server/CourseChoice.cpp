#include "server/CourseChoice.h"

#include "foundation/Exceptions.h"
#include "foundation/Text.h"
#include "server/Protocol.h"
#include "server/Texts.h"

using Torvane::CRunException;
using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxIcon;
using Torvane::Net::CCancelledException;

CCourseChoice::CCourseChoice(Torvane::Dialog::MFC::IPeople& people, CServerSession& session)
    : m_people(people), m_session(session) {}

bool CCourseChoice::Fetch() {
    for (;;) {
        try {
            m_courses = m_session.FetchCourses();
            break;
        } catch (const CCancelledException&) {
            return false;
        } catch (const CRunException& exception) {
            if (!m_session.AskRetry(exception.GetMessage()))
                return false;
        }
    }
    if (m_courses.isEmpty()) {
        m_people.Ask(ServerText::c_strNoCourses, ServerText::c_strTitleError, BoxButtons::Ok,
                     BoxIcon::Warning);
        return false;
    }
    return true;
}

QString CCourseChoice::DetailsText(const CCourseInfo& info) {
    // One call, so that a name that holds "%2" stays as it is.
    return ServerText::c_strDetails.arg(QString::asprintf("%03d", info.Id), info.Name, info.TeacherName);
}

int CCourseChoice::FindByPrefix(const QString& strText) const {
    if (strText.isEmpty())
        return -1;
    for (int n = 0; n < m_courses.size(); ++n) {
        if (EqualsIgnoringCase(QStringView(m_courses[n].Name).left(strText.size()), strText))
            return n;
    }
    return -1;
}

CCourseChoice::ENext CCourseChoice::Next(int nIndex, const QString& strPassword) {
    if (nIndex < 0 || nIndex >= m_courses.size()) {
        m_people.Warn(ServerText::c_strSelectCourse);
        return ENext::Stay;
    }
    if (strPassword.isEmpty()) {
        m_people.Warn(ServerText::c_strEnterPassword);
        return ENext::StayOnPassword;
    }
    for (;;) {
        QString strFailure;
        try {
            return Verify(m_courses[nIndex], strPassword);
        } catch (const CCancelledException&) {
            return ENext::Stay;
        } catch (const CRunException& exception) {
            strFailure = exception.GetMessage();
        } catch (const CInvalidLogException&) {
            strFailure = ServerText::c_strServerError;
        }
        if (!m_session.AskRetry(strFailure))
            return ENext::Stay;
    }
}

CCourseChoice::ENext CCourseChoice::Verify(CCourseInfo info, const QString& strPassword) {
    qint32 nRights = 0;
    if (!m_session.Verify(info, strPassword, nRights)) {
        m_people.Ask(ServerText::c_strWrongPassword, ServerText::c_strTitleNotice, BoxButtons::Ok,
                     BoxIcon::Warning);
        return ENext::StayOnPassword;
    }
    if ((nRights & Protocol::c_nInitialPasswordRight) != 0 &&
        !m_session.ChangePassword(info, ServerText::c_strInitialPasswordPrompt))
        return ENext::Stay;
    m_chosen = info;
    return ENext::Go;
}
