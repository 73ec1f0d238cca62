#include "companions/compiler/SourceTree.h"

#include "foundation/Text.h"

#include <QDirIterator>

using namespace Qt::StringLiterals;

CSourceTree::CSourceTree(const QString& strNativeFolder) : m_strFolder(strNativeFolder) {
    QStringList found;
    QDirIterator walk(m_strFolder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        walk.next();
        const QString strName = walk.filePath().mid(m_strFolder.size() + 1);
        found.append(walk.fileInfo().isDir() ? strName + u'/' : strName);
    }
    // Sorted, so that which of two like names keeps its own does not hang on the disk's order.
    found.sort();
    for (const QString& strName : found)
        Add(strName.endsWith(u'/') ? strName.chopped(1) : strName, strName.endsWith(u'/'));
}

void CSourceTree::Add(const QString& strName, bool bFolder) {
    const QString strKey = LowerAscii(strName);
    if (bFolder) {
        if (!m_folders.contains(strKey))
            m_folders.insert(strKey, strName);
        if (!strName.contains(u'/'))
            m_topFolders.append(strName);
        return;
    }
    m_exact.insert(strName);
    const qsizetype nTop = strName.indexOf(u'/');
    if (nTop > 0)
        m_below[strName.left(nTop)].append(strName);
    if (m_files.contains(strKey)) {
        const QString strFree = FreeName(strName);
        m_renamed.insert(strName, strFree);
        m_files.insert(LowerAscii(strFree), strName);
        return;
    }
    m_files.insert(strKey, strName);
}

QString CSourceTree::FreeName(const QString& strName) const {
    const qsizetype nDot = strName.lastIndexOf(u'.');
    const qsizetype nStem = nDot > strName.lastIndexOf(u'/') ? nDot : strName.size();
    for (int n = 2;; ++n) {
        const QString strFree = strName.left(nStem) + u'~' + QString::number(n) + strName.mid(nStem);
        if (!m_files.contains(LowerAscii(strFree)))
            return strFree;
    }
}

QString CSourceTree::Join(const QString& strFolder, const QString& strName) {
    QStringList parts = strFolder.split(u'/', Qt::SkipEmptyParts);
    const QStringList more = strName.split(u'/', Qt::SkipEmptyParts);
    for (const QString& strPart : more) {
        if (strPart == "."_L1)
            continue;
        if (strPart != ".."_L1)
            parts.append(strPart);
        else if (parts.isEmpty())
            return QString();
        else
            parts.removeLast();
    }
    return parts.join(u'/');
}

QString CSourceTree::FindFile(const QString& strName) const {
    const QString strPlain = Join(QString(), strName);
    return m_exact.contains(strPlain) ? strPlain : m_files.value(LowerAscii(strPlain));
}

QString CSourceTree::FindFolder(const QString& strName) const {
    return m_folders.value(LowerAscii(Join(QString(), strName)));
}

QStringList CSourceTree::FilesBelow(const QString& strFolder) const {
    const qsizetype nTop = strFolder.indexOf(u'/');
    const QStringList all = m_below.value(nTop < 0 ? strFolder : strFolder.left(nTop));
    if (nTop < 0)
        return all;
    QStringList list;
    for (const QString& strName : all) {
        if (strName.startsWith(strFolder + u'/'))
            list.append(strName);
    }
    return list;
}

QStringList CSourceTree::TopFolders() const {
    return m_topFolders;
}
