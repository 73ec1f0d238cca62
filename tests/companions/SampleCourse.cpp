#include "tests/companions/SampleCourse.h"

#include "foundation/CodePage.h"
#include "foundation/SysInfo.h"

#include <SQLiteCpp/SQLiteCpp.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 c_nCourseId = 77;

const char c_szTable[] =
    "CREATE TABLE Book (Id INTEGER PRIMARY KEY AUTOINCREMENT, ParentId INTEGER NOT NULL DEFAULT 0, "
    "[Index] INTEGER NOT NULL DEFAULT 0, Title VARCHAR(2048) NOT NULL DEFAULT '', "
    "Type INTEGER NOT NULL DEFAULT -1, Path VARCHAR(2048) NOT NULL DEFAULT '', "
    "OpenType INTEGER NOT NULL DEFAULT 0, FileName VARCHAR(260) NOT NULL DEFAULT '', "
    "Comment TEXT NOT NULL DEFAULT '', [Size] DOUBLE NOT NULL DEFAULT 0, TimeLastModified DATETIME);"
    "INSERT INTO Book (Id, [Index]) VALUES (1, 1), (2, 2), (3, 3);";

} // namespace

CSampleCourse::CSampleCourse() {
    m_folder.Write(u"程序\\AppInfo.ini"_s,
                   CodePage::Encode(u"[System]\r\nProvince=11\r\nSchoolName=测试大学\r\n"));
    CSysInfo::Reset(m_folder.Path(u"程序\\Vorel"_s));
    m_folder.Write(Below(u"课程.vcp"_s),
                   CodePage::Encode(u"[Course]\r\nId=77\r\nName=<高等>数学\r\nTeacherName=李老师\r\n"
                                    "[Template]\r\nName=t\r\n"));
    m_folder.MakeFolder(Below(u"Data\\DataBase"_s));
    m_folder.MakeFolder(Below(u"Data\\Courseware\\NodeResource"_s));
    SQLite::Database database(Platform::ToNative(DatabasePath()).toStdString(),
                              SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec(c_szTable);
    CBookDatabase store(DatabasePath(), c_nCourseId);
    store.Open();
    store.SetSeedTitles(u"测试大学"_s, u"<高等>数学"_s, u"李老师"_s);
}

QString CSampleCourse::DatabasePath() const {
    return m_folder.Path(Below(u"Data\\DataBase\\VorelCourse.mdb"_s));
}

qint32 CSampleCourse::Add(qint32 nParent, const QString& strTitle, qint32 nType, const QString& strPath,
                          int nOpenType) {
    CBookDatabase store(DatabasePath(), c_nCourseId);
    store.Open();
    const qint32 nId = store.AddNode(nParent, strTitle);
    const bool bOwn = !strPath.isEmpty() && !strPath.contains("://"_L1) && !strPath.startsWith(u'\\');
    QString strStored = strPath.startsWith(u'\\') ? strPath.mid(1) : strPath;
    if (bOwn)
        strStored = u"N%1\\"_s.arg(nId) + strPath;
    store.SetContent(nId, {nType, strStored, nOpenType, QString(), QString()});
    return nId;
}

qint32 CSampleCourse::AddPage(qint32 nParent, const QString& strTitle, const QString& strHtml,
                              int nOpenType) {
    const qint32 nId = Add(nParent, strTitle, NodeType::c_nEditorPage, u"Content.htm"_s, nOpenType);
    WriteResource(u"N%1\\Content.htm"_s.arg(nId), CodePage::Encode(strHtml));
    return nId;
}

void CSampleCourse::SetContent(qint32 nId, const NodeContent& content) {
    CBookDatabase store(DatabasePath(), c_nCourseId);
    store.Open();
    store.SetContent(nId, content);
}

void CSampleCourse::WriteResource(const QString& strBelow, const QByteArray& bytes) const {
    m_folder.Write(Below(u"Data\\Courseware\\NodeResource\\"_s + strBelow), bytes);
}

void CSampleCourse::Damage(const char* szStatement) const {
    SQLite::Database database(Platform::ToNative(DatabasePath()).toStdString(), SQLite::OPEN_READWRITE);
    database.exec(szStatement);
}
