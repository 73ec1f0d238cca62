#pragma once

#include "course/Course.h"
#include "course/CourseInfo.h"
#include "platform/base/People.h"
#include "server/CourseServer.h"

#include <QString>

#include <optional>

class CServerWait;

/// What the session asks the person, as windows of server/ui do it.
class ISessionDialogs {
public:
    virtual ~ISessionDialogs() = default;
    /// The dialog "验证密码": the password, or nothing when cancelled.
    virtual std::optional<QString> AskPassword(const CCourseInfo& info) = 0;

    struct PasswordChange {
        QString strOld;
        QString strNew;
    };
    /// The dialog "修改密码" with its own checks done; nothing when cancelled.
    virtual std::optional<PasswordChange> AskPasswordChange(const QString& strPrompt) = 0;
};

/// The life of a course with the course server: status reports, the password prompt, the change of password.
/// Every call can be given up by the person; that counts as the Cancel of the box which a failure would show.
class CServerSession : public ICourseSession {
public:
    CServerSession(Torvane::Dialog::MFC::IPeople& people, ISessionDialogs& dialogs);

    bool ReportStatus(CCourse& course, int nType, const CourseFigures& figures, bool bPrompt) override;

    /// True when the password was accepted. Throws CInvalidLogException when the server has lost the session,
    /// and CCancelledException when the person gave up the wait for its answer.
    bool PromptPassword(CCourse& course);
    /// True when the password was changed. Takes over what the server says of the course's names into info.
    bool ChangePassword(CCourseInfo& info, const QString& strPrompt);
    /// The same for an open course, under the dialog's own prompt.
    bool ChangePassword(CCourse& course);

    /// The validate step of the compile commands: status "正在验证课程...", a report of type 264 with empty
    /// figures.
    bool ValidateCourse(CCourse& course);

    /// One request to the server at this address that needs no course. Throws Torvane::CRunException, and
    /// CCancelledException of that family when the person gave up.
    void TestLink(const QString& strServerUrl);

    /// One request each under a status window, with the settings' address. Throw Torvane::CRunException,
    /// CCancelledException of that family when the person gave up, and Verify CInvalidLogException.
    bool Verify(CCourseInfo& info, const QString& strPassword, qint32& nRights);
    QList<CCourseInfo> FetchCourses();

    /// A failure's text with Retry and Cancel; true for Retry.
    bool AskRetry(const QString& strText);

private:
    static void Prepare(CCourseServer& server, const QString& strServerUrl, CServerWait& wait);
    bool SendReport(const CCourse& course, int nType, const CourseFigures& figures);
    void TakeIdentity(CCourse& course, const CCourseInfo& info);
    bool SendChange(CCourseInfo& info, const ISessionDialogs::PasswordChange& change);

    Torvane::Dialog::MFC::IPeople& m_people;
    ISessionDialogs& m_dialogs;
};

/// What the change of password says of its fields, in the order of the checks.
enum class EPasswordField { None, Old, New, Confirm };
struct PasswordFault {
    EPasswordField Field = EPasswordField::None;
    QString strMessage;
    bool bEmptyConfirm = false;
};
PasswordFault CheckPasswordChange(const QString& strOld, const QString& strNew, const QString& strConfirm);

/// The server address as a person typed it: trimmed and in lower case, with a message when it can't be one.
struct AddressCheck {
    QString strAddress;
    QString strMessage;
};
AddressCheck CheckServerAddress(const QString& strText);
