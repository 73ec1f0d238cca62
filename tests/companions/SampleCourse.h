#pragma once

#include "course/BookDatabase.h"
#include "tests/support/TempFolder.h"

#include <QString>

/// A course on disk, made through the course's own store, for the compiler to read. Its program folder lies
/// beside it.
class CSampleCourse {
public:
    CSampleCourse();

    /// Adds a node with content; the path is given below the node's own folder unless it is an address or
    /// begins with "\". Its Id.
    qint32 Add(qint32 nParent, const QString& strTitle, qint32 nType = NodeType::c_nEmpty,
               const QString& strPath = QString(), int nOpenType = 0);
    /// An editor page.
    qint32 AddPage(qint32 nParent, const QString& strTitle, const QString& strHtml, int nOpenType = 0);
    void SetContent(qint32 nId, const NodeContent& content);
    /// Writes below the node resource folder.
    void WriteResource(const QString& strBelow, const QByteArray& bytes) const;
    /// Runs a statement on the store, as no program of the system would.
    void Damage(const char* szStatement) const;

    QString ProjectPath() const { return m_folder.Path(QStringLiteral("课程\\课程.vcp")); }
    /// Below the course's folder, for CTempFolder's calls.
    static QString Below(const QString& strName) { return QStringLiteral("课程\\") + strName; }
    static QString Site(const QString& strName) { return Below(QStringLiteral("课程网站\\") + strName); }
    const CTempFolder& Folder() const { return m_folder; }
    QString SiteNative() const { return m_folder.Native(Below(QStringLiteral("课程网站"))); }
    /// A file of the site, as text.
    QString Text(const QString& strName) const { return QString::fromUtf8(m_folder.Read(Site(strName))); }

private:
    QString DatabasePath() const;
    CTempFolder m_folder;
};
