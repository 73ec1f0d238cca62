#pragma once

#include <QString>
#include <QStringList>

/// Where everything of a template lies. A calculator of paths: what doesn't exist shows when it is used. A
/// template or page name that would leave its folder (it holds a separator or is "." or "..") gives an empty
/// path.
class CTemplateStore {
public:
    explicit CTemplateStore(const QString& strTemplatesFolder);

    /// The names of all sub-folders, in the order of the listing.
    void ListTemplates(QStringList& list) const;
    /// The titles of all page templates.
    void ListPages(const QString& strTemplate, QStringList& list) const;

    QString GetTemplateFolder(const QString& strTemplate) const;
    QString GetIconPath(const QString& strTemplate) const;
    /// With a trailing backslash.
    QString GetPagesFolder(const QString& strTemplate) const;
    QString GetPagePath(const QString& strTemplate, const QString& strPage) const;
    /// The general page, "通用页面".
    QString GetDefaultPagePath(const QString& strTemplate) const;
    QString GetPagePreviewPath(const QString& strTemplate, const QString& strPage) const;
    QString GetPreviewPath(const QString& strTemplate) const;
    QString GetSkinFolder(const QString& strTemplate) const;
    QString GetInitialNodesPath(const QString& strTemplate) const;

    /// The tree's colour, red in the low byte, then green and blue; white when the file says none.
    quint32 GetBackColor(const QString& strTemplate) const;

    /// Whether both templates suggest the same tree, byte for byte but for one final CR LF.
    bool HasSameNodes(const QString& strA, const QString& strB) const;

private:
    QString Below(const QString& strTemplate, const QString& strTail) const;

    QString m_strFolder;
};

/// The colour of a "背景色.txt": "#" and three pairs of hexadecimal digits. White for any other text.
quint32 ReadBackColor(const QString& strPath);

/// The names of the folders directly in a template's skin; none when it has no skin. A name that a node's
/// folder could have is left out: copied into a course, it would take the place of the teacher's own content.
QStringList SkinFolders(const QString& strSkinFolder);
