#pragma once

#include "companions/docexport/CourseDocument.h"
#include "companions/docexport/DocProgress.h"
#include "companions/docexport/WordXml.h"
#include "office/Converter.h"

#include <QHash>
#include <QString>

/// Makes a Word document of the course's text. Pandoc writes it; LibreOffice lays it out once, so that the
/// table of contents can say the pages. Both run in groups of their own, with bounds, and end at once on a
/// cancel.
class CWordConverter {
public:
    /// Throws Torvane::CRunException with a message where pandoc is missing or there is no place for the
    /// temporary files.
    explicit CWordConverter(DocProgress& progress);

    /// Where the pictures of the document shall lie, native.
    QString PictureFolder() const { return m_converter.Path(QStringLiteral("pictures")); }

    /// Where a piece of the course's text shall stand, as the converter takes it; native.
    QString PiecePath(int nPiece) const { return m_converter.Path(QStringLiteral("%1.html").arg(nPiece)); }

    struct Course {
        QString Name;
        QString Teacher;
        QList<WordXml::Heading> Headings;
        QSet<QByteArray> Colors;
        CCourseDocument::Written Text;
    };
    struct Result {
        /// Native; goes with the object.
        QString Path;
        bool HasPageNumbers = false;
    };
    /// Throws Torvane::CRunException with a message, and CDocCancelled.
    Result Make(const Course& course);

private:
    QString RunPandoc(int nPiece);
    void Join(const QStringList& pieces, const QString& strTo) const;
    void WriteDocument(const QString& strFrom, const QString& strTo, const Course& course,
                       const QHash<QString, int>& pages, bool bAskForNumbers) const;
    QHash<QString, int> FindPages(const Course& course, const QStringList& pieces);
    QList<int> LayOut(const QString& strDocument);
    void Check(Torvane::Office::EConversion eEnd) const;
    void WriteInput(const QString& strName, const QByteArray& bytes) const;

    DocProgress& m_progress;
    Torvane::Office::CConverter m_converter;
};
