#pragma once

#include "courseserver/CourseStore.h"

#include <QByteArray>
#include <QHash>

#include <functional>

struct ScriptSettings {
    /// How long a client may be silent before its session is lost. More than the three minutes between its
    /// reports.
    int nSessionSeconds = 300;
    /// How many courses may be open at once; 0 for any number.
    int nMaxOnline = 0;
    /// Milliseconds since 1970.
    std::function<qint64()> Now;
    /// A text that every request is answered with while it is not empty.
    std::function<QString()> Notice;
};

struct ScriptReply {
    QByteArray strOperation;
    bool bSuccessful = true;
    int nErrorCode = 0;
    QByteArray Body;
    /// For the log; 0 when the request names none.
    qint32 nCourseId = 0;

    /// The protocol's three headers.
    QByteArrayList Headers() const;
};

/// The operations of "ISAPI/CourseMgr.dll". Does not throw.
///
/// A client is known by its tag. CheckPassword makes it a client of the course; a report of type 264 or 8
/// opens the course for it, which no other client can do meanwhile; a report of type 520 ends both, so that
/// the password is asked for again. Both also end after the session's time without a report; a report of a
/// client whose open session ended that way is told that the session is lost.
class CCourseScript {
public:
    CCourseScript(CCourseStore& store, ScriptSettings settings);

    /// What stands behind "CourseMgr.dll?".
    ScriptReply Run(const QByteArray& query);

private:
    using Parameters = QHash<QByteArray, QByteArray>;
    struct Report;

    void Dispatch(const QByteArray& query, ScriptReply& reply);
    void RunOperation(const Parameters& parameters, const QByteArray& query, ScriptReply& reply);
    void List(const QByteArray& parameters, ScriptReply& reply);
    void Password(const Parameters& parameters, const QByteArray& query, bool bEdit, ScriptReply& reply);
    void Status(const Parameters& parameters, const QByteArray& query, ScriptReply& reply);
    void AcceptReport(const Report& report, CourseClient client);
    ServedCourse RequireCourse(const Parameters& parameters, ScriptReply& reply) const;
    bool UseToken(const QByteArray& token, const QByteArray& query);
    bool IsLive(const CourseClient& client) const;
    qint64 SessionLength() const { return qint64{m_settings.nSessionSeconds} * 1000; }

    CCourseStore& m_store;
    ScriptSettings m_settings;
};
