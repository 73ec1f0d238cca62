#include "video/Outline.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/PageText.h"
#include "foundation/TextFile.h"

using namespace Qt::StringLiterals;

namespace {

const QString c_strMark = u"g_arrOutlineName[ g_arrOutlineName.length ]"_s;

/// A line with no quotes, or a single one, names nothing.
QString NameIn(QStringView line) {
    const qsizetype nFirst = line.indexOf(u'"');
    const qsizetype nLast = line.lastIndexOf(u'"');
    return nLast > nFirst ? line.sliced(nFirst + 1, nLast - nFirst - 1).toString().replace(u"\\\""_s, u"\""_s)
                          : QString();
}

/// A few names in UTF-8 are too little to be sure of, but hardly ever right in the code page too.
QString TextOf(const QByteArray& bytes) {
    const QString strText = PageText::Decode(bytes).Text;
    return strText.contains(QChar::ReplacementCharacter) && bytes.isValidUtf8() ? QString::fromUtf8(bytes)
                                                                                : strText;
}

/// What a script and ReadOutline both read as the name. A backslash they would read in two ways.
QString Quoted(QString strName) {
    return strName.replace(u'\\', u'＼').replace(u'\r', u' ').replace(u'\n', u' ').replace(u'"', u"\\\""_s);
}

} // namespace

QString OutlineFileBelow() {
    return u"\\CourseInfo\\Outline.js"_s;
}

bool ReadOutline(const QString& strPath, QStringList& names) {
    names.clear();
    QByteArray bytes;
    try {
        bytes = ReadFileBytes(strPath, c_nMaxOutlineBytes + 1);
    } catch (const Torvane::CRunException&) {
        return false;
    }
    if (bytes.size() > c_nMaxOutlineBytes)
        return false;
    const QString strText = TextOf(bytes);
    for (const QStringView line : QStringView(strText).split(u'\n')) {
        if (line.contains(c_strMark))
            names.append(NameIn(line));
    }
    return true;
}

QByteArray MakeOutline(const QStringList& names) {
    QString strText = u"var g_arrOutlineName = new Array();\r\n"_s;
    for (const QString& strName : names)
        strText += c_strMark + u" = \""_s + Quoted(strName) + u"\";\r\n"_s;
    return CodePage::Encode(strText);
}
