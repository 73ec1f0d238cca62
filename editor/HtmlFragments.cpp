#include "editor/HtmlFragments.h"

namespace HtmlFragments {

namespace {

/// Around the selected content, with this text as the attribute that comes last.
QString BlueLink(const QString& strAttribute, const QString& strText, const QString& strSelected) {
    return QStringLiteral("<a ") + strAttribute + QStringLiteral("=\"") +
           QString(strText).replace(u'"', QStringLiteral("&quot;")) +
           QStringLiteral("\" style=\"{cursor:hand}\"><font \t\t\t\t\t\t\t\t\tcolor=\"#0000FF\">") +
           strSelected + QStringLiteral("</font></a>");
}

} // namespace

QString Image(const QString& strPath) {
    return QStringLiteral("<img src =\"") + strPath + QStringLiteral("\">");
}

QString Flash(const QString& strPath) {
    return QStringLiteral("<embed src=\"") + strPath +
           QStringLiteral("\" style=\"width:320px;height:240px;\" quality=\"high\" \t\t\t\t\t"
                          "pluginspage=\"http://www.macromedia.com/shockwave/download/index.cgi"
                          "?P1_Prod_Version=ShockwaveFlash\" \t\t\t\t\t"
                          "type=\"application/x-shockwave-flash\"></embed>");
}

QString Media(const QString& strPath) {
    return QStringLiteral("<embed src=\"") + strPath +
           QStringLiteral("\" width=\"320\" height=\"240\" autostart=\"false\" "
                          "controls=\"ImageWindow\"></embed>");
}

QString OtherFile(const QString& strUrl, const QString& strFileName) {
    return QStringLiteral("<a id=\"innerfile\" href=\"") + strUrl + QStringLiteral("\">") + strFileName +
           QStringLiteral("</a>");
}

QString Table(const TableParameters& parameters) {
    const auto attribute = [](QLatin1StringView strName, const QString& strValue) {
        return QString(strName + QStringLiteral("=\"") + strValue + u'"');
    };
    const QString strRow = QStringLiteral("<tr>") +
                           QStringLiteral("<td>&nbsp;</td>").repeated(parameters.nColumns) +
                           QStringLiteral("</tr>");
    return attribute(QLatin1StringView("<table width"), parameters.strWidth) +
           attribute(QLatin1StringView(" cellspacing"), parameters.strCellSpacing) +
           attribute(QLatin1StringView(" cellpadding"), parameters.strCellPadding) +
           attribute(QLatin1StringView(" bordercolor"), parameters.strBorderColour) +
           attribute(QLatin1StringView(" bgcolor"), parameters.strBackground) +
           attribute(QLatin1StringView(" border"), parameters.strBorder) + u'>' +
           strRow.repeated(parameters.nRows) + QStringLiteral("</table>");
}

QString Marquee(const QString& strText) {
    return QStringLiteral("<marquee>") + strText + QStringLiteral("</marquee>");
}

QString LineBreak() {
    return QStringLiteral("<BR>");
}

QString FloatingHelp(const QString& strHelp, const QString& strSelected) {
    return BlueLink(QStringLiteral("title"), strHelp, strSelected);
}

QString InSiteLink(const QString& strUrl, const QString& strSelected) {
    return BlueLink(QStringLiteral("id=\"innerlink\" href"), strUrl, strSelected);
}

QString HelpMark(const QString& strSysDataFolder, const QString& strHelp) {
    return QStringLiteral("<img src=\"") + strSysDataFolder +
           QStringLiteral("\\Images\\Help.gif\" style=\"{cursor:hand}\" alt=\"") + strHelp +
           QStringLiteral("\">");
}

} // namespace HtmlFragments
