#pragma once

#include "companions/docexport/PrintedPage.h"

#include <QHash>
#include <QString>

#include <functional>
#include <optional>

/// Brings the course's pictures into forms and sizes that a document can hold. Any thread may use it, one at
/// a time; it shows nothing.
class CPictureFiles {
public:
    /// Where the pictures are put; native.
    explicit CPictureFiles(const QString& strFolder) : m_strFolder(strFolder) {}

    /// The picture of a file (native path), under a name of its own in the folder; the same one for the same
    /// file. Drawings (SVG) are drawn, by rsvg-convert, as long as mayGoOn says so. Nothing for a file that
    /// is no picture, is broken, or has a form that word processors don't show. Throws Torvane::CRunException
    /// with a message when the picture can't be written.
    TakenPicture Take(const QString& strPath, const std::function<bool()>& mayGoOn);

private:
    TakenPicture Make(const QString& strPath, const QString& strName,
                      const std::function<bool()>& mayGoOn) const;
    TakenPicture MakeDrawing(const QString& strPath, const QString& strName,
                             const std::function<bool()>& mayGoOn) const;

    QString m_strFolder;
    QHash<QString, TakenPicture> m_taken;
};
