#include "course/CoursePaths.h"

#include "foundation/Paths.h"

using namespace Qt::StringLiterals;
using namespace Torvane::File;

QString CCoursePaths::GetCourseFolder(bool bBackslash) const {
    return FolderForm(ParentFolder(m_strProjectPath), bBackslash);
}

QString CCoursePaths::GetDataFolder(bool bBackslash) const {
    return FolderForm(GetCourseFolder(true) + u"Data"_s, bBackslash);
}

QString CCoursePaths::GetNodeResourceFolder(bool bBackslash) const {
    return FolderForm(GetDataFolder(true) + u"Courseware\\NodeResource"_s, bBackslash);
}

QString CCoursePaths::GetNodeFolder(qint32 nId) const {
    return u"%1N%2\\"_s.arg(GetNodeResourceFolder(true), QString::number(nId));
}

QString CCoursePaths::GetDataInfoPath() const {
    return GetDataFolder(true) + u"DataInfo.dti"_s;
}

QString CCoursePaths::GetDatabasePath() const {
    return GetDataFolder(true) + u"DataBase\\VorelCourse.mdb"_s;
}

QString CCoursePaths::GetCustomTitlesPath() const {
    return GetDataFolder(true) + u"SelfDefineTitle.ini"_s;
}
