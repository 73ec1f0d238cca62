#pragma once

#include <QString>

/// The pieces of HTML that the inserting commands put at the caret. Compiled courses serve them, so they are
/// fixed to the byte. Nothing is escaped but where it is said; paths and texts stand in them as they came.
namespace HtmlFragments {

QString Image(const QString& strPath);
QString Flash(const QString& strPath);
QString Media(const QString& strPath);
/// A link to a file beside the page, marked as such.
QString OtherFile(const QString& strUrl, const QString& strFileName);

struct TableParameters {
    int nRows = 2;
    int nColumns = 2;
    QString strWidth = QStringLiteral("50%");
    QString strBorder = QStringLiteral("1");
    QString strCellSpacing = QStringLiteral("0");
    QString strCellPadding = QStringLiteral("0");
    QString strBorderColour;
    QString strBackground;
};
QString Table(const TableParameters& parameters);

QString Marquee(const QString& strText);
QString LineBreak();
/// Double quotes of the help are escaped; strSelected is markup already.
QString FloatingHelp(const QString& strHelp, const QString& strSelected);
/// A link to a place inside the course, marked as such. Double quotes of the address are escaped; strSelected
/// is markup already.
QString InSiteLink(const QString& strUrl, const QString& strSelected);
/// strSysDataFolder without a trailing backslash.
QString HelpMark(const QString& strSysDataFolder, const QString& strHelp);

} // namespace HtmlFragments
