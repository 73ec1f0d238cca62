#include "content/NodeInfo.h"

#include "content/Texts.h"
#include "course/BookDatabase.h"
#include "course/LinkedTree.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Text.h"

#include <algorithm>

namespace {

constexpr qsizetype c_nFields = 8;

[[noreturn]] void ThrowDamaged() {
    throw Torvane::CRunException(ContentText::c_strNodeInfoDamaged);
}

qint32 NumberOf(const QByteArray& field) {
    return ParseInt(QString::fromLatin1(field));
}

NodeInfoRecord ParseLine(const QByteArray& line) {
    const QByteArrayList fields = line.split(',');
    if (fields.size() < c_nFields)
        ThrowDamaged();
    return {NumberOf(fields[0]), NumberOf(fields[1]),         CodePage::Decode(fields[2]),
            NumberOf(fields[3]), CodePage::Decode(fields[4]), NumberOf(fields[5]),
            NumberOf(fields[6]), NumberOf(fields[7])};
}

/// Stays below the folder that it is read from. Names may hold what they like, but a slash separates them
/// here as well as a backslash does.
bool IsInside(const QString& strPath) {
    if (strPath.startsWith(u'\\') || strPath.startsWith(u'/') || strPath.indexOf(u':') == 1)
        return false;
    const QStringList parts = QString(strPath).replace(u'/', u'\\').split(u'\\');
    return !parts.contains(QLatin1String("..")) && !strPath.contains(QChar(0));
}

/// Names a node's folder otherwise than by the head that is replaced, so that it would be another node's. A
/// link may; whatever else shows in a node is its own. A bare name stays: titles with commas leave such.
bool IsOfAnotherNode(const QString& strPath, const QString& strOwnHead) {
    if (strPath.startsWith(strOwnHead + u'\\'))
        return false;
    const QStringList parts = QString(strPath).replace(u'/', u'\\').split(u'\\', Qt::SkipEmptyParts);
    const auto pFirst = std::ranges::find_if(parts, [](const QString& str) { return str != u"."; });
    if (pFirst == parts.end() || !LowerAscii(*pFirst).startsWith(u'n'))
        return false;
    bool bNumber = false;
    pFirst->mid(1).toInt(&bNumber);
    return bNumber;
}

} // namespace

QByteArray WriteNodeInfo(const QList<NodeInfoRecord>& records) {
    QByteArray bytes;
    for (const NodeInfoRecord& record : records) {
        const QByteArrayList fields{
            QByteArray::number(record.Number),     QByteArray::number(record.SourceId),
            CodePage::Encode(record.Title),        QByteArray::number(record.Type),
            CodePage::Encode(record.Path),         QByteArray::number(record.OpenType),
            QByteArray::number(record.FirstChild), QByteArray::number(record.NextSibling)};
        bytes += fields.join(',') + "\r\r\n";
    }
    return bytes;
}

QList<NodeInfoRecord> ParseNodeInfo(const QByteArray& bytes) {
    // No byte of a character is a comma or a line feed.
    QList<NodeInfoRecord> records;
    QByteArrayList lines = bytes.split('\n');
    while (!lines.isEmpty() && lines.last().trimmed().isEmpty())
        lines.removeLast();
    records.reserve(lines.size());
    for (const QByteArray& line : lines)
        records.append(ParseLine(line));
    return records;
}

QList<NodeInfoStep> PlanImport(const QList<NodeInfoRecord>& records) {
    if (records.isEmpty())
        return {};
    // A file begins with the record that nothing names: 0 leads nowhere.
    const auto place = [](qint32 nRecord) { return nRecord > 0 ? nRecord : -1; };
    QList<TreeLinks> lines;
    for (const NodeInfoRecord& record : records)
        lines.append({place(record.FirstChild), place(record.NextSibling)});
    QList<NodeInfoStep> steps{{0, -1}};
    const auto visit = [&](qint32 nRecord, qint32 nParent, std::optional<qint32>& below) {
        below = static_cast<qint32>(steps.size());
        steps.append({nRecord, nParent});
        return true;
    };
    if (!WalkLinkedTree(lines, lines.first().nFirstChild, 0, visit))
        ThrowDamaged();
    return steps;
}

QString ImportedPath(qint32 nType, const QString& strPath, qint32 nId) {
    const auto refuse = [&] { throw Torvane::CRunException(ContentText::c_strPathLeadsOut.arg(strPath)); };
    if (nType == NodeType::c_nEmpty)
        return strPath;
    if (nType == NodeType::c_nExternalLink) {
        // Without the mark of an address it is looked for below the nodes: "mailto:" leads nowhere there.
        if (!strPath.contains(QLatin1String("://")) && !IsInside(strPath))
            refuse();
        return strPath;
    }
    QString strImported = strPath;
    const qsizetype nHead = strPath.indexOf(u'\\');
    const QString strOwnHead = QStringLiteral("N%1").arg(nId);
    if (nHead > 0)
        strImported.replace(strPath.left(nHead), strOwnHead);
    // An in-site link may hold an address that a person typed.
    const bool bAddress = nType == NodeType::c_nInSiteLink && strImported.contains(QLatin1String("://"));
    const bool bOther = nType != NodeType::c_nInSiteLink && (strImported.contains(QLatin1String("://")) ||
                                                             IsOfAnotherNode(strImported, strOwnHead));
    if (bOther || (!bAddress && !IsInside(strImported)))
        refuse();
    return strImported;
}
