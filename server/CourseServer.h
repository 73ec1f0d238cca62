#pragma once

#include "course/CourseInfo.h"
#include "server/HttpClient.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// Speaks the course server's protocol: GET requests to one server script, answered with three response
/// headers and a body of lines. Made for one operation and dropped after it. Throws Torvane::CRunException
/// with a finished message, CCancelledException of that family when the wait step answered false, and
/// CInvalidLogException when the server has lost the session.
class CCourseServer {
public:
    CCourseServer();

    /// "http://" goes in front unless the text begins with exactly that; "/" goes behind unless it is there.
    void SetBaseUrl(const QString& strUrl);
    void SetWaitStep(Torvane::Net::CHttpClient::WaitStep step);
    /// Who the client says it is, instead of the person at this machine.
    void SetIdentity(const QByteArray& identity);

    QList<CCourseInfo> GetCourseList(qint32 nProvince, const QString& strSchoolName);

    /// The request of the course list for its failure alone, whose reason comes out as it stands.
    void TestLink(qint32 nProvince, const QString& strSchoolName);

    /// True when the password is accepted. Name and teacher of info become the server's, also when it is not.
    bool CheckPassword(CCourseInfo& info, const QString& strPassword, qint32& nRights);
    bool EditPassword(CCourseInfo& info, const QString& strOldPassword, const QString& strNewPassword);
    bool CheckCourseInfo(const CCourseInfo& info, const QString& strSchoolName, int nType,
                         const CourseFigures& figures);

private:
    QByteArray RequestScript(const QByteArray& query);

    QByteArray m_baseUrl;
    Torvane::Net::CHttpClient m_client;
    QByteArray m_identity;
    QByteArray m_keyOne;
    QByteArray m_keyTwo;
};
