#include "app/StartupCourses.h"

#include "foundation/Paths.h"
#include "foundation/SysInfo.h"

QList<StartupCourse> ListStartupCourses() {
    QList<StartupCourse> courses;
    for (const QString& strPath : CSysInfo::Instance().GetRecentCourses())
        courses.append({Torvane::File::FileTitle(strPath), Torvane::File::ParentFolder(strPath)});
    return courses;
}

QString StartupCoursePath(const StartupCourse& course) {
    return course.strFolder + QLatin1Char('\\') + course.strTitle + QLatin1Char('.') +
           LoadResString(SharedText::c_nExtension);
}
