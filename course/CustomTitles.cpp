#include "course/CustomTitles.h"

#include "foundation/IniFile.h"

using namespace Qt::StringLiterals;

namespace {

const QString& TitleSection() {
    static const QString strSection = u"Title"_s;
    return strSection;
}

} // namespace

const std::array<CustomTitles::Role, CustomTitles::c_nRoles>& CustomTitles::Roles() {
    static const QString strTeachers = u"主讲教师设置"_s;
    static const QString strVideos = u"授课录像"_s;
    // Keys and labels of the videos differ; both are fixed.
    static const std::array<Role, c_nRoles> roles{{
        {u"主讲教师一"_s, u"主讲教师一"_s, strTeachers},
        {u"主讲教师二"_s, u"主讲教师二"_s, strTeachers},
        {u"主讲教师三"_s, u"主讲教师三"_s, strTeachers},
        {u"主讲教师四"_s, u"主讲教师四"_s, strTeachers},
        {u"课程介绍"_s, u"课程介绍"_s, strVideos},
        {u"课程录像一"_s, u"教学录像一"_s, strVideos},
        {u"课程录像二"_s, u"教学录像二"_s, strVideos},
        {u"课程录像三"_s, u"教学录像三"_s, strVideos},
    }};
    return roles;
}

QStringList CustomTitles::ReadTitles(const QString& strPath) {
    QStringList titles;
    for (const Role& role : Roles())
        titles.append(ReadProfileString(TitleSection(), role.strKey, QString(), strPath));
    return titles;
}

qint32 CustomTitles::ReadNodeId(const QString& strPath, int nRole) {
    return ReadProfileInt(u"Id"_s, Roles().at(static_cast<std::size_t>(nRole)).strKey, 0, strPath);
}

void CustomTitles::Apply(const QString& strPath, const QStringList& titles, const Rename& rename) {
    for (int nRole = 0; nRole < c_nRoles; ++nRole) {
        const QString strTitle = titles.value(nRole);
        if (strTitle.isEmpty())
            continue;
        const qint32 nNodeId = ReadNodeId(strPath, nRole);
        if (nNodeId >= 1 && rename(nNodeId, strTitle))
            WriteProfileString(TitleSection(), Roles().at(static_cast<std::size_t>(nRole)).strKey, strTitle,
                               strPath);
    }
}
