#include "server/ServerSession.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"
#include "foundation/Text.h"
#include "server/Protocol.h"
#include "server/ServerWait.h"
#include "server/Texts.h"

using Torvane::CRunException;
using Torvane::Dialog::MFC::BoxAnswer;
using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxIcon;
using Torvane::Net::CCancelledException;

namespace {

constexpr qsizetype c_nMinPasswordBytes = 6;

} // namespace

CServerSession::CServerSession(Torvane::Dialog::MFC::IPeople& people, ISessionDialogs& dialogs)
    : m_people(people), m_dialogs(dialogs) {}

void CServerSession::Prepare(CCourseServer& server, const QString& strServerUrl, CServerWait& wait) {
    server.SetBaseUrl(strServerUrl);
    server.SetWaitStep([&wait] { return wait.Step(); });
}

bool CServerSession::AskRetry(const QString& strText) {
    return m_people.Ask(strText, ServerText::c_strTitleError, BoxButtons::RetryCancel, BoxIcon::Stop) ==
           BoxAnswer::Retry;
}

bool CServerSession::Verify(CCourseInfo& info, const QString& strPassword, qint32& nRights) {
    const auto pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(ServerText::c_strCheckingPassword);
    CServerWait wait(m_people, pStatus.get());
    CCourseServer server;
    Prepare(server, CSysInfo::Instance().GetServerURL(), wait);
    return server.CheckPassword(info, strPassword, nRights);
}

QList<CCourseInfo> CServerSession::FetchCourses() {
    const auto pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(ServerText::c_strFetchingCourses);
    const CSysInfo& settings = CSysInfo::Instance();
    CServerWait wait(m_people, pStatus.get());
    CCourseServer server;
    Prepare(server, settings.GetServerURL(), wait);
    return server.GetCourseList(settings.GetProvince(), settings.GetSchoolName());
}

bool CServerSession::SendReport(const CCourse& course, int nType, const CourseFigures& figures) {
    const CSysInfo& settings = CSysInfo::Instance();
    CServerWait wait(m_people, nType == StatusType::c_nHeartbeat ? nullptr : m_people.GetStatus(),
                     ServerText::c_strValidating);
    CCourseServer server;
    Prepare(server, settings.GetServerURL(), wait);
    return server.CheckCourseInfo(course.GetInfo(), settings.GetSchoolName(), nType, figures);
}

bool CServerSession::ReportStatus(CCourse& course, int nType, const CourseFigures& figures, bool bPrompt) {
    for (;;) {
        try {
            if (SendReport(course, nType, figures))
                return true;
            if (!bPrompt || !PromptPassword(course))
                return false;
        } catch (const CInvalidLogException&) {
            if (bPrompt)
                m_people.Error(ServerText::c_strSessionLost);
            return false;
        } catch (const CCancelledException& exception) {
            // Who gave up what she had begun has answered already. The heartbeat came unasked, and false
            // closes the course.
            if (!bPrompt || nType != StatusType::c_nHeartbeat || !AskRetry(exception.GetMessage()))
                return false;
        } catch (const CRunException& exception) {
            if (!bPrompt || !AskRetry(exception.GetMessage()))
                return false;
        }
    }
}

bool CServerSession::PromptPassword(CCourse& course) {
    for (;;) {
        const std::optional<QString> strPassword = m_dialogs.AskPassword(course.GetInfo());
        if (!strPassword)
            return false;
        try {
            CCourseInfo info = course.GetInfo();
            qint32 nRights = 0;
            if (!Verify(info, *strPassword, nRights)) {
                m_people.Error(ServerText::c_strWrongPassword);
                continue;
            }
            TakeIdentity(course, info);
            if ((nRights & Protocol::c_nInitialPasswordRight) != 0 &&
                m_people.Question(ServerText::c_strInitialPassword) == BoxAnswer::Ok)
                ChangePassword(course);
            return true;
        } catch (const CCancelledException&) {
            throw;
        } catch (const CRunException& exception) {
            if (!AskRetry(exception.GetMessage()))
                return false;
        }
    }
}

void CServerSession::TakeIdentity(CCourse& course, const CCourseInfo& info) {
    // An identity with an empty name could be written to the course, but never read back.
    if (info != course.GetInfo() && info.IsValid())
        course.TakeServerInfo(info);
}

bool CServerSession::ChangePassword(CCourse& course) {
    CCourseInfo info = course.GetInfo();
    if (!ChangePassword(info, ServerText::c_strChangePrompt))
        return false;
    TakeIdentity(course, info);
    return true;
}

bool CServerSession::ChangePassword(CCourseInfo& info, const QString& strPrompt) {
    for (;;) {
        const auto change = m_dialogs.AskPasswordChange(strPrompt);
        if (!change)
            return false;
        try {
            if (SendChange(info, *change)) {
                m_people.Notice(ServerText::c_strPasswordChanged);
                return true;
            }
            m_people.Ask(ServerText::c_strPasswordNotChanged, ServerText::c_strTitleNotice, BoxButtons::Ok,
                         BoxIcon::Stop);
        } catch (const CInvalidLogException&) {
            m_people.Error(ServerText::c_strSessionLost);
            return false;
        } catch (const CCancelledException&) {
            return false;
        } catch (const CRunException& exception) {
            if (!AskRetry(exception.GetMessage()))
                return false;
        }
    }
}

bool CServerSession::SendChange(CCourseInfo& info, const ISessionDialogs::PasswordChange& change) {
    const auto pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(ServerText::c_strChangingPassword);
    CServerWait wait(m_people, pStatus.get());
    CCourseServer server;
    Prepare(server, CSysInfo::Instance().GetServerURL(), wait);
    return server.EditPassword(info, change.strOld, change.strNew);
}

bool CServerSession::ValidateCourse(CCourse& course) {
    const auto pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(ServerText::c_strValidating);
    return ReportStatus(course, StatusType::c_nOpened, CourseFigures(), true);
}

void CServerSession::TestLink(const QString& strServerUrl) {
    const auto pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(ServerText::c_strTestingLink);
    const CSysInfo& settings = CSysInfo::Instance();
    CServerWait wait(m_people, pStatus.get());
    CCourseServer server;
    Prepare(server, strServerUrl, wait);
    server.TestLink(settings.GetProvince(), settings.GetSchoolName());
}

PasswordFault CheckPasswordChange(const QString& strOld, const QString& strNew, const QString& strConfirm) {
    if (strOld.isEmpty())
        return {EPasswordField::Old, ServerText::c_strOldMissing};
    if (strNew.isEmpty())
        return {EPasswordField::New, ServerText::c_strNewMissing};
    if (strConfirm.isEmpty())
        return {EPasswordField::Confirm, ServerText::c_strConfirmMissing};
    if (strNew != strConfirm)
        return {EPasswordField::Confirm, ServerText::c_strConfirmDiffers, true};
    if (CodePage::ByteLength(strNew) < c_nMinPasswordBytes)
        return {EPasswordField::New, ServerText::c_strPasswordTooShort.arg(c_nMinPasswordBytes)};
    return {};
}

AddressCheck CheckServerAddress(const QString& strText) {
    AddressCheck check;
    check.strAddress = strText.trimmed();
    if (check.strAddress.isEmpty()) {
        check.strMessage = ServerText::c_strAddressMissing;
        return check;
    }
    check.strAddress = LowerAscii(check.strAddress);
    if (!check.strAddress.startsWith(QStringLiteral("http://")))
        check.strMessage = ServerText::c_strAddressMalformed;
    return check;
}
