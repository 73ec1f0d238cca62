#pragma once

#include "companions/compiler/SitePlan.h"
#include "companions/docexport/AnchorMarks.h"
#include "companions/docexport/DocLinks.h"
#include "companions/docexport/DocProgress.h"
#include "companions/docexport/PrintedPage.h"
#include "companions/docexport/WordXml.h"

#include <QSet>
#include <QStringList>
#include <QTemporaryDir>

/// Takes a picture of the course (native path) into the document. mayGoOn is asked every few milliseconds in
/// what takes long: false ends it.
using PictureTaker =
    std::function<TakenPicture(const QString& strNativePath, const std::function<bool()>& mayGoOn)>;

/// The whole course as one text, in the form that the converter takes. Of the pages one at a time is in
/// memory.
class CCourseDocument {
public:
    /// The first two must outlive the object.
    CCourseDocument(const CSitePlan& plan, DocProgress& progress, const PictureTaker& takePicture);

    /// Where a part of the document begins that can be laid out by itself: with a new sheet.
    struct Layout {
        int FirstPiece = 0;
        qsizetype FirstHeading = 0;
    };
    struct Written {
        int Pieces = 0;
        /// One at least, in their order. Where there are more, a piece behind the last is none of the
        /// document: a heading on a sheet of its own, whose page tells how many sheets stand before it.
        QList<Layout> Layouts;
    };
    /// The document's title page, contents and nodes in tree order, in pieces of at most some hundred
    /// kilobytes, or one node. pathOf gives a piece's file (native); another beside the first is used
    /// meanwhile. Throws CDocCancelled, and Torvane::CRunException with a message when they can't be written.
    Written Write(const std::function<QString(int nPiece)>& pathOf);

    const QList<WordXml::Heading>& Headings() const { return m_headings; }
    int PictureCount() const { return int(m_pictures.size()); }
    /// The colours of its text, each a character style "Color RRGGBB".
    const QSet<QByteArray>& Colors() const { return m_colors; }
    /// What the teacher should know: what is missing, and what is only named.
    QStringList Notes() const;

private:
    bool HasHeading(int nNode) const;
    void FindHeadings();
    bool IsShort(int nNode) const;
    QByteArray Front() const;
    void WriteMarked(const QString& strPath);
    bool BeginsLayout(int nNode, qsizetype nBytes);
    void WriteNode(int nNode);
    void WriteContent(int nNode);
    void WritePage(int nNode, const QString& strSource);
    void WriteEmbedded(int nNode);
    bool WriteSlides(const QString& strFolder, qint32 nId);
    void WritePicture(int nNode);
    void WriteFile(int nNode);
    void WriteInSiteLink(int nNode);
    void WriteNamed(const char* szStyle, const QString& strLabel, const QString& strText,
                    const QString& strLink = {});
    void WriteHint(const QString& strText);
    QString LinkOf(const QString& strReference, const QString& strFolder);
    std::optional<ReadyPicture> PictureOf(const QString& strReference, const QString& strFolder);
    std::optional<ReadyPicture> Take(const QString& strSource);
    std::optional<ReadyPicture> TakeAddress(const QString& strAddress);
    std::optional<ReadyPicture> TakeBytes(const QByteArray& bytes, const QString& strEnding,
                                          const QString& strName);
    std::optional<ReadyPicture> TakeFile(const QString& strNativePath, const QString& strName);
    void Note(const QString& strNote);
    QString ShownName(int nNode) const;

    const CSitePlan& m_plan;
    const QList<SiteNode>& m_nodes;
    DocProgress& m_progress;
    PictureTaker m_takePicture;
    CDocLinks m_links;
    CAnchorMarks m_anchors;
    QList<WordXml::Heading> m_headings;
    /// Of the node that is being written.
    qsizetype m_nHeading = -1;
    QByteArray m_out;
    QString m_strTitle;
    QTemporaryDir m_drawings;
    /// How long the pictures of the node have taken already.
    qint64 m_nPictureMs = 0;
    QSet<QString> m_pictures;
    QSet<QByteArray> m_colors;
    QStringList m_notes;
    QSet<QString> m_noted;
    int m_nFiles = 0;
    int m_nSites = 0;
    int m_nVideos = 0;
    int m_nDeep = 0;
};
