#include "content/CustomTitlesCommand.h"

void RunCustomTitles(const CCoursePaths& paths, ITreeDialogs& dialogs, const CustomTitles::Rename& rename) {
    // A message of the tree's lets the program run on, and the course may close behind it.
    const QString strPath = paths.GetCustomTitlesPath();
    const qint32 nIntroduction = CustomTitles::ReadNodeId(strPath, CustomTitles::c_nIntroduction);
    const std::optional<QStringList> titles = dialogs.AskCustomTitles(
        CustomTitles::ReadTitles(strPath), nIntroduction != CustomTitles::c_nSwitchedOff);
    if (titles)
        CustomTitles::Apply(strPath, *titles, rename);
}
