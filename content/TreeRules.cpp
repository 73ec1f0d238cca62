#include "content/TreeRules.h"

#include "content/Texts.h"

bool IsHeadItem(ETreeLine line) {
    return line == ETreeLine::None || line == ETreeLine::School || line == ETreeLine::Course;
}

bool IsFixedItem(ETreeLine line) {
    return IsHeadItem(line) || line == ETreeLine::Root;
}

int TreeImage::Of(ETreeLine line, bool bHasChildren, bool bExpanded) {
    switch (line) {
    case ETreeLine::School:
        return c_nSchool;
    case ETreeLine::Course:
        return c_nCourse;
    case ETreeLine::Root:
        return c_nRoot;
    case ETreeLine::None:
    case ETreeLine::Node:
        break;
    }
    if (!bHasChildren)
        return c_nLeaf;
    return bExpanded ? c_nExpanded : c_nCollapsed;
}

QString OneLine(const QString& strTitle) {
    QString strLine = strTitle;
    for (QChar& c : strLine) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return strLine;
}

QString NewTitle(const TitleTaken& taken) {
    QString strTitle = ContentText::c_strNewTitle;
    for (int nNumber = 2; taken(strTitle); ++nNumber)
        strTitle = ContentText::c_strNewTitle + QString::number(nNumber);
    return strTitle;
}

QStringList SplitTitles(const QString& strInput) {
    QString strText = strInput;
    strText.replace(u'，', u',');
    QStringList titles;
    for (const QString& strPiece : strText.split(u',')) {
        const QString strTitle = strPiece.trimmed();
        if (!strTitle.isEmpty())
            titles.append(strTitle);
    }
    return titles;
}

namespace {

/// As much of a title as a box can show: a pasted text without commas is one title of any length.
QString Beginning(const QString& strTitle) {
    constexpr int c_nShown = 200;
    if (strTitle.size() <= c_nShown)
        return strTitle;
    const int nCut = strTitle[c_nShown - 1].isHighSurrogate() ? c_nShown - 1 : c_nShown;
    return strTitle.left(nCut) + u'…';
}

} // namespace

QString CheckNewTitle(const QString& strTitle, const TitleTaken& taken) {
    if (strTitle.size() > c_nMaxTitleLength)
        return ContentText::c_strNewTitleTooLong.arg(QString::number(c_nMaxTitleLength), Beginning(strTitle));
    if (taken(strTitle))
        return ContentText::c_strNewTitleTaken.arg(strTitle);
    return {};
}

RenameCheck CheckRename(const QString& strNew, const QString& strPresent, const TitleTaken& taken) {
    if (strNew.isEmpty() || strNew == strPresent)
        return {};
    if (taken(strNew))
        return {false, ContentText::c_strTitleTaken};
    if (strNew.size() > c_nMaxTitleLength)
        return {false, ContentText::c_strTitleTooLong.arg(c_nMaxTitleLength)};
    return {true, {}};
}

QString FolderNameOf(const QString& strTitle) {
    QString strName = OneLine(strTitle).trimmed();
    strName.replace(u'/', u'_').replace(u'\\', u'_');
    // One that begins with a dot is hidden.
    if (strName.isEmpty() || strName.startsWith(u'.'))
        strName.prepend(u'_');
    return strName;
}

QString DeletionListText(const QList<NodeHeader>& descendants) {
    if (descendants.isEmpty())
        return ContentText::c_strNoDescendants;
    QString strText;
    for (const NodeHeader& header : descendants)
        strText += header.Title + QStringLiteral("\r\n");
    return strText;
}
