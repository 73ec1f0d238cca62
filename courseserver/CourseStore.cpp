#include "courseserver/CourseStore.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace {

// The server answers one request at a time: whoever holds the file keeps everybody waiting.
constexpr int c_nBusyMilliseconds = 1000;

constexpr const char* c_szSchema = R"(
CREATE TABLE IF NOT EXISTS Course (
    Id INTEGER PRIMARY KEY,
    Province INTEGER NOT NULL,
    SchoolName TEXT NOT NULL,
    Name TEXT NOT NULL,
    Teacher TEXT NOT NULL,
    Password TEXT NOT NULL,
    InitialPassword INTEGER NOT NULL DEFAULT 1,
    Enabled INTEGER NOT NULL DEFAULT 1);
CREATE INDEX IF NOT EXISTS CourseBySchool ON Course (SchoolName, Province);
CREATE TABLE IF NOT EXISTS Client (
    CourseId INTEGER NOT NULL,
    Tag TEXT NOT NULL,
    Open INTEGER NOT NULL,
    Seen INTEGER NOT NULL,
    PRIMARY KEY (CourseId, Tag));
CREATE TABLE IF NOT EXISTS Figures (
    CourseId INTEGER PRIMARY KEY,
    Count INTEGER NOT NULL,
    Changed INTEGER NOT NULL,
    Size REAL NOT NULL,
    Time INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS Token (
    Token TEXT PRIMARY KEY,
    RequestDigest TEXT NOT NULL,
    Time INTEGER NOT NULL);
CREATE INDEX IF NOT EXISTS TokenByTime ON Token (Time);
)";

constexpr const char* c_szCourseColumns =
    "SELECT Id, Province, SchoolName, Name, Teacher, Password, InitialPassword, Enabled FROM Course ";

QString Text(const SQLite::Column& column) {
    return QString::fromUtf8(column.getText());
}

ServedCourse ReadCourse(const SQLite::Statement& row) {
    ServedCourse course;
    course.nId = row.getColumn(0).getInt();
    course.nProvince = row.getColumn(1).getInt();
    course.strSchoolName = Text(row.getColumn(2));
    course.strName = Text(row.getColumn(3));
    course.strTeacher = Text(row.getColumn(4));
    course.strPasswordDigest = row.getColumn(5).getText();
    course.bInitialPassword = row.getColumn(6).getInt() != 0;
    course.bEnabled = row.getColumn(7).getInt() != 0;
    return course;
}

} // namespace

CCourseStore::CCourseStore(const QString& strFile)
    : m_pDatabase(std::make_unique<SQLite::Database>(strFile.toUtf8().toStdString(),
                                                     SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE,
                                                     c_nBusyMilliseconds)) {
    m_pDatabase->exec("PRAGMA journal_mode = WAL");
    m_pDatabase->exec("PRAGMA synchronous = FULL");
    m_pDatabase->exec(c_szSchema);
}

CCourseStore::~CCourseStore() = default;

void CCourseStore::InTransaction(const std::function<void()>& steps) {
    SQLite::Transaction transaction(*m_pDatabase, SQLite::TransactionBehavior::IMMEDIATE);
    steps();
    transaction.commit();
}

bool CCourseStore::HasCourses() const {
    return m_pDatabase->execAndGet("SELECT EXISTS (SELECT 1 FROM Course)").getInt() != 0;
}

void CCourseStore::AddCourse(const ServedCourse& course) {
    SQLite::Statement insert(*m_pDatabase, "INSERT INTO Course VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
    if (course.nId != 0)
        insert.bind(1, course.nId);
    insert.bind(2, course.nProvince);
    insert.bind(3, course.strSchoolName.toStdString());
    insert.bind(4, course.strName.toStdString());
    insert.bind(5, course.strTeacher.toStdString());
    insert.bind(6, course.strPasswordDigest.toStdString());
    insert.bind(7, course.bInitialPassword ? 1 : 0);
    insert.bind(8, course.bEnabled ? 1 : 0);
    insert.exec();
}

QList<ServedCourse> CCourseStore::ListCourses(qint32 nProvince, const QString& strSchoolName) const {
    SQLite::Statement query(*m_pDatabase,
                            std::string(c_szCourseColumns) +
                                "WHERE Province = ? AND SchoolName = ? AND Enabled <> 0 ORDER BY Id");
    query.bind(1, nProvince);
    query.bind(2, strSchoolName.toStdString());
    QList<ServedCourse> courses;
    while (query.executeStep())
        courses.append(ReadCourse(query));
    return courses;
}

std::optional<ServedCourse> CCourseStore::FindCourse(qint32 nId) const {
    SQLite::Statement query(*m_pDatabase, std::string(c_szCourseColumns) + "WHERE Id = ? AND Enabled <> 0");
    query.bind(1, nId);
    if (!query.executeStep())
        return std::nullopt;
    return ReadCourse(query);
}

void CCourseStore::SetPassword(qint32 nId, const QByteArray& digest, const QByteArray& tag) {
    SQLite::Statement update(*m_pDatabase,
                             "UPDATE Course SET Password = ?, InitialPassword = 0 WHERE Id = ?");
    update.bind(1, digest.toStdString());
    update.bind(2, nId);
    update.exec();
    SQLite::Statement clean(*m_pDatabase, "DELETE FROM Client WHERE CourseId = ? AND Open = 0 AND Tag <> ?");
    clean.bind(1, nId);
    clean.bind(2, tag.toStdString());
    clean.exec();
}

QList<CourseClient> CCourseStore::ListClients(qint32 nCourseId) const {
    SQLite::Statement query(*m_pDatabase, "SELECT Tag, Open, Seen FROM Client WHERE CourseId = ?");
    query.bind(1, nCourseId);
    QList<CourseClient> clients;
    while (query.executeStep()) {
        clients.append(
            {query.getColumn(0).getText(), query.getColumn(1).getInt() != 0, query.getColumn(2).getInt64()});
    }
    return clients;
}

void CCourseStore::PutClient(qint32 nCourseId, const CourseClient& client) {
    SQLite::Statement replace(*m_pDatabase, "INSERT OR REPLACE INTO Client VALUES (?, ?, ?, ?)");
    replace.bind(1, nCourseId);
    replace.bind(2, client.strTag.toStdString());
    replace.bind(3, client.bOpen ? 1 : 0);
    replace.bind(4, static_cast<int64_t>(client.nSeen));
    replace.exec();
}

void CCourseStore::RemoveClient(qint32 nCourseId, const QByteArray& tag) {
    SQLite::Statement remove(*m_pDatabase, "DELETE FROM Client WHERE CourseId = ? AND Tag = ?");
    remove.bind(1, nCourseId);
    remove.bind(2, tag.toStdString());
    remove.exec();
}

void CCourseStore::RemoveClientsBefore(qint64 nTime) {
    SQLite::Statement remove(*m_pDatabase, "DELETE FROM Client WHERE Seen < ?");
    remove.bind(1, static_cast<int64_t>(nTime));
    remove.exec();
}

int CCourseStore::CountOpenCourses(qint64 nFrom, qint64 nTo, qint32 nExceptCourseId) const {
    SQLite::Statement query(*m_pDatabase, "SELECT COUNT(DISTINCT CourseId) FROM Client "
                                          "WHERE Open <> 0 AND Seen BETWEEN ? AND ? AND CourseId <> ?");
    query.bind(1, static_cast<int64_t>(nFrom));
    query.bind(2, static_cast<int64_t>(nTo));
    query.bind(3, nExceptCourseId);
    query.executeStep();
    return query.getColumn(0).getInt();
}

std::optional<UsedToken> CCourseStore::FindToken(const QByteArray& token) const {
    SQLite::Statement query(*m_pDatabase, "SELECT RequestDigest, Time FROM Token WHERE Token = ?");
    query.bind(1, token.toStdString());
    if (!query.executeStep())
        return std::nullopt;
    return UsedToken{query.getColumn(0).getText(), query.getColumn(1).getInt64()};
}

void CCourseStore::PutToken(const QByteArray& token, const UsedToken& used) {
    SQLite::Statement insert(*m_pDatabase, "INSERT INTO Token VALUES (?, ?, ?)");
    insert.bind(1, token.toStdString());
    insert.bind(2, used.strRequestDigest.toStdString());
    insert.bind(3, static_cast<int64_t>(used.nTime));
    insert.exec();
}

void CCourseStore::RemoveTokensBefore(qint64 nTime) {
    SQLite::Statement remove(*m_pDatabase, "DELETE FROM Token WHERE Time < ?");
    remove.bind(1, static_cast<int64_t>(nTime));
    remove.exec();
}

void CCourseStore::PutFigures(qint32 nCourseId, qint32 nCount, qint32 nChanged, double dSize, qint64 nTime) {
    SQLite::Statement replace(*m_pDatabase, "INSERT OR REPLACE INTO Figures VALUES (?, ?, ?, ?, ?)");
    replace.bind(1, nCourseId);
    replace.bind(2, nCount);
    replace.bind(3, nChanged);
    replace.bind(4, dSize);
    replace.bind(5, static_cast<int64_t>(nTime));
    replace.exec();
}
