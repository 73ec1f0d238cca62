#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace SQLite {
class Database;
}

/// A course as the server knows it.
struct ServedCourse {
    qint32 nId = 0;
    qint32 nProvince = 0;
    QString strSchoolName;
    QString strName;
    QString strTeacher;
    /// 32 lower-case hexadecimal characters.
    QByteArray strPasswordDigest;
    bool bInitialPassword = true;
    bool bEnabled = true;
};

/// A client that has proven the password of a course.
struct CourseClient {
    QByteArray strTag;
    /// It has reported the course as open; until then it may do so.
    bool bOpen = false;
    /// When it was heard last, in milliseconds since 1970.
    qint64 nSeen = 0;
};

/// A token that has been used.
struct UsedToken {
    /// Of the request that brought it.
    QByteArray strRequestDigest;
    /// In milliseconds since 1970.
    qint64 nTime = 0;
};

/// The state of the server in one SQLite file, each step on the disk before it is answered. Throws
/// SQLite::Exception, also when another program holds the file for longer than a second.
class CCourseStore {
public:
    /// Native path; the file is made when it is missing.
    explicit CCourseStore(const QString& strFile);
    ~CCourseStore();
    CCourseStore(const CCourseStore&) = delete;
    CCourseStore& operator=(const CCourseStore&) = delete;

    /// Runs the steps as one: all of them are kept, or none.
    void InTransaction(const std::function<void()>& steps);

    bool HasCourses() const;
    /// An id of 0 takes the next free one.
    void AddCourse(const ServedCourse& course);
    /// The enabled courses of a school, by id.
    QList<ServedCourse> ListCourses(qint32 nProvince, const QString& strSchoolName) const;
    /// Nothing for a course that is unknown or not enabled.
    std::optional<ServedCourse> FindCourse(qint32 nId) const;

    /// The password is the teacher's own from now on, and clients that have not opened the course yet, other
    /// than this one, have to prove the new one.
    void SetPassword(qint32 nId, const QByteArray& digest, const QByteArray& tag);

    QList<CourseClient> ListClients(qint32 nCourseId) const;
    void PutClient(qint32 nCourseId, const CourseClient& client);
    void RemoveClient(qint32 nCourseId, const QByteArray& tag);
    /// Takes away clients not heard since then.
    void RemoveClientsBefore(qint64 nTime);
    /// How many courses other than this one are open and were heard within this time.
    int CountOpenCourses(qint64 nFrom, qint64 nTo, qint32 nExceptCourseId) const;

    std::optional<UsedToken> FindToken(const QByteArray& token) const;
    void PutToken(const QByteArray& token, const UsedToken& used);
    /// Forgets tokens used before then.
    void RemoveTokensBefore(qint64 nTime);

    void PutFigures(qint32 nCourseId, qint32 nCount, qint32 nChanged, double dSize, qint64 nTime);

private:
    std::unique_ptr<SQLite::Database> m_pDatabase;
};
